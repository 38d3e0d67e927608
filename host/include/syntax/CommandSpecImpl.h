#pragma once
#include <vector>

#include "CommandSpec.h"

// The parsed command: the subcommands that were written, in written order.
struct CommandSpec::Impl {
    std::vector<SubComObj> subcommands;
};
