#include "CommandDescriptor.h"

#include <sstream>

#include "syntax/CommandDescriptorImpl.h"
#include "syntax/TextCase.h"

CommandDescriptor::CommandDescriptor(const std::string& commandName) : impl_(std::make_unique<Impl>()) {
    // "distance   correlation" and "DISTANCE CORRELATION" name the same command.
    std::istringstream words(commandName);
    std::string word;
    while (words >> word) {
        if (!impl_->name.empty()) impl_->name += ' ';
        impl_->name += host::syntax::upperCase(word);
    }
}

CommandDescriptor::~CommandDescriptor() = default;

void CommandDescriptor::addSubComDesc(const SubComDescriptor& subcommand) {
    // Describing a subcommand again replaces the earlier description.
    for (auto& known : impl_->subcommands) {
        if (host::syntax::equalsIgnoreCase(known.getName(), subcommand.getName())) {
            known = subcommand;
            return;
        }
    }
    impl_->subcommands.push_back(subcommand);
}

const SubComDescriptor* CommandDescriptor::getSubComDesc(const std::string& name) const {
    for (const auto& s : impl_->subcommands)
        if (host::syntax::equalsIgnoreCase(s.getName(), name)) return &s;
    return nullptr;
}

std::string CommandDescriptor::getCommandName() const { return impl_->name; }

const CommandDescriptor::Impl& CommandDescriptor::impl() const { return *impl_; }
