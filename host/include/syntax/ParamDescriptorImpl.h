#pragma once
#include <string>
#include <vector>

#include "ParamDescriptor.h"

// What the procedure described for one keyword or qualifier. The two flags
// are kept as given; the reference parser does not read them.
struct ParamDescriptor::Impl {
    std::string name;
    UPSpecTypes::ParamSpec spec = UPSpecTypes::ParamBareKeyword;
    bool flag1 = false;
    bool flag2 = false;
    UPSpecTypes::BracketOptions brackets = UPSpecTypes::BracketsNone;
    std::vector<std::string> allowedValues;   // upper case, in the order given
    std::vector<ParamDescriptor> qualifiers;  // in the order given
    bool hasQualifOption = false;
    UPSpecTypes::QualifOptions qualifOption = UPSpecTypes::QualifParenthesised;
    UPSpecTypes::LowerBdryOptions lowerOption = UPSpecTypes::LowerNone;
    double lower = 0.0;
    UPSpecTypes::UpperBdryOptions upperOption = UPSpecTypes::UpperNone;
    double upper = 0.0;

    // Null when no qualifier of that name (any letter case) was described.
    const ParamDescriptor* findQualifier(const std::string& qualifierName) const;
};
