#include "UniversalParser.h"

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "HostSession.h"
#include "VELA_TokenSequence.h"
#include "syntax/CommandParser.h"
#include "syntax/SyntaxError.h"
#include "syntax/VELA_TokenSequenceImpl.h"

UniversalParser::UniversalParser(VELA_TokenSequence& tokens, CommandSpec& spec, const CommandDescriptor& desc)
    : tokens_(tokens), spec_(spec), desc_(desc) {}

UniversalParser::~UniversalParser() = default;

unsigned UniversalParser::getCommandSpecifications() {
    host::HostSession& session = host::HostSession::instance();
    VELA_TokenSequence::Impl& tokens = tokens_.impl();
    spec_.impl() = CommandSpec::Impl{};
    try {
        host::syntax::CommandParser parser(*tokens.tokens, desc_, session.activeDataSet());
        spec_.impl() = parser.parse();
        return 0;
    } catch (const host::syntax::SyntaxError& error) {
        // One message for the first problem; the command is not run.
        session.addMessage(host::MessageLevel::Error, desc_.getCommandName(), error.format(tokens.sourceName));
        return 1;
    }
}
