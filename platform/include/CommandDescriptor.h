#pragma once
#include <memory>
#include <string>

#include "SubComDescriptor.h"

// Grammar of one command, filled by the procedure before parsing.
class CommandDescriptor {
public:
    explicit CommandDescriptor(const std::string& commandName);
    CommandDescriptor(const CommandDescriptor&) = delete;
    CommandDescriptor& operator=(const CommandDescriptor&) = delete;
    ~CommandDescriptor();

    void addSubComDesc(const SubComDescriptor& subcommand);
    // Null when the command has no subcommand of this name.
    const SubComDescriptor* getSubComDesc(const std::string& name) const;
    std::string getCommandName() const;

    struct Impl;
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
