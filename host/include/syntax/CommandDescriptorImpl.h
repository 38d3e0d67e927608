#pragma once
#include <string>
#include <vector>

#include "CommandDescriptor.h"

// The grammar of one command: its name and its subcommands in the order given.
struct CommandDescriptor::Impl {
    std::string name;  // upper case, words separated by one blank
    std::vector<SubComDescriptor> subcommands;
};
