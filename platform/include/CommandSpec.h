#pragma once
#include <memory>
#include <string>

#include "SubComObj.h"

// The parsed command.
class CommandSpec {
public:
    CommandSpec();
    CommandSpec(const CommandSpec&) = delete;
    CommandSpec& operator=(const CommandSpec&) = delete;
    ~CommandSpec();

    // Null when the subcommand was not given. The global part has the empty name.
    const SubComObj* getSubComObj(const std::string& name) const;

    struct Impl;
    Impl& impl();
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
