#include "VELA_TokenSequence.h"

#include "HostSession.h"
#include "syntax/VELA_TokenSequenceImpl.h"

VELA_TokenSequence::VELA_TokenSequence(bool currentCommand) : impl_(std::make_unique<Impl>()) {
    if (currentCommand) {
        const host::CommandText& command = host::HostSession::instance().command();
        impl_->load(command.text, command.firstLine, command.sourceName);
    } else {
        impl_->load("", 1, "");
    }
}

VELA_TokenSequence::~VELA_TokenSequence() = default;

VELA_TokenSequence::Impl& VELA_TokenSequence::impl() { return *impl_; }
const VELA_TokenSequence::Impl& VELA_TokenSequence::impl() const { return *impl_; }

void VELA_TokenSequence::Impl::load(std::string text, int firstLine, const std::string& source) {
    tokens = std::make_unique<host::syntax::TokenStream>(std::move(text), firstLine);
    sourceName = source;
}
