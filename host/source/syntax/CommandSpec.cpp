#include "CommandSpec.h"

#include "syntax/CommandSpecImpl.h"
#include "syntax/SubComObjImpl.h"
#include "syntax/TextCase.h"

CommandSpec::CommandSpec() : impl_(std::make_unique<Impl>()) {}
CommandSpec::~CommandSpec() = default;

const SubComObj* CommandSpec::getSubComObj(const std::string& name) const {
    for (const auto& s : impl_->subcommands)
        if (host::syntax::equalsIgnoreCase(s.impl().name, name)) return &s;
    return nullptr;
}

CommandSpec::Impl& CommandSpec::impl() { return *impl_; }
const CommandSpec::Impl& CommandSpec::impl() const { return *impl_; }
