#pragma once
#include <memory>
#include <string>

#include "ParamDescriptor.h"
#include "UPSpecTypes.h"

// Grammar of one subcommand.
class SubComDescriptor {
public:
    SubComDescriptor(std::string name, UPSpecTypes::SubComSpec spec, bool flag1, bool flag2);
    SubComDescriptor(const SubComDescriptor& other);
    SubComDescriptor& operator=(const SubComDescriptor& other);
    ~SubComDescriptor();

    void addParamDesc(const ParamDescriptor& param);
    // Null when the subcommand has no parameter of this name.
    const ParamDescriptor* getParamDesc(const std::string& name) const;
    std::string getName() const;

    struct Impl;
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
