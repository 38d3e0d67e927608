#pragma once
#include <memory>
#include <string>

#include "UPSpecTypes.h"

// Grammar of one keyword (parameter) or qualifier.
class ParamDescriptor {
public:
    ParamDescriptor(std::string name, UPSpecTypes::ParamSpec spec, bool flag1, bool flag2,
                    UPSpecTypes::BracketOptions brackets);
    ParamDescriptor(const ParamDescriptor& other);
    ParamDescriptor& operator=(const ParamDescriptor& other);
    ~ParamDescriptor();

    void addStringValue(const std::string& value);
    void addQualifDesc(const ParamDescriptor& qualifier);
    void setQualifOption(UPSpecTypes::QualifOptions option);
    void setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option);
    void setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option);

    std::string getName() const;

    struct Impl;
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
