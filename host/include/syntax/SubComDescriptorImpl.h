#pragma once
#include <string>
#include <vector>

#include "SubComDescriptor.h"

// What the procedure described for one subcommand. The spec number and the
// two flags are kept as given; both spec numbers are parsed the same way.
struct SubComDescriptor::Impl {
    std::string name;  // upper case; empty for the global part
    UPSpecTypes::SubComSpec spec = UPSpecTypes::SubComPlain;
    bool flag1 = false;
    bool flag2 = false;
    std::vector<ParamDescriptor> params;  // in the order given
};
