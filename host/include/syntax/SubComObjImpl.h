#pragma once
#include <string>
#include <vector>

#include "SubComObj.h"

// One subcommand as the parser found it, with its keywords in written order.
struct SubComObj::Impl {
    std::string name;     // the described name; empty for the global part
    std::string extName;  // the name shown to the user
    std::vector<ParamObj> params;
    int line = 0;
    int column = 0;
};
