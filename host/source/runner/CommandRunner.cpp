#include "runner/CommandRunner.h"

#include <exception>
#include <new>
#include <sstream>

#include "HostSession.h"
#include "runner/CommandProgress.h"
#include "runner/StandardErrorTee.h"
#include "syntax/MessageText.h"

namespace host {

namespace {

std::string firstWord(const std::string& text) {
    std::istringstream words(text);
    std::string first;
    words >> first;
    return first;
}

std::string place(const std::string& sourceName, int line) { return sourceName + ", line " + std::to_string(line); }

}  // namespace

CommandOutcome CommandRunner::run(const SyntaxCommand& command, const std::string& sourceName) {
    HostSession& session = HostSession::instance();
    session.beginCommand({command.text, sourceName, command.firstLine});
    bool procedureWrote = false;
    const ProcedureInfo* procedure = registry_.match(command.text);
    if (procedure == nullptr) {
        session.addMessage(MessageLevel::Error, "",
                           "Unknown command " + syntax::quotedText(firstWord(command.text)) + " (" +
                               place(sourceName, command.firstLine) + ").");
    } else {
        const std::string& name = procedure->command;
        session.setCommandName(name);
        if (tee_ != nullptr) tee_->resetProcedureWrote();
        callProcedure(*procedure, name + " (" + place(sourceName, command.firstLine) + ")");
        procedureWrote = tee_ != nullptr && tee_->procedureWrote();
        if (session.messages().empty() && session.outputDocument() == nullptr)
            session.addMessage(MessageLevel::Note, name, name + " produced no output.");
    }
    CommandOutcome outcome;
    outcome.failed = session.hasErrors() || procedureWrote;
    outcome.record = takeRunRecord(command.text);
    return outcome;
}

void CommandRunner::callProcedure(const ProcedureInfo& procedure, const std::string& label) {
    if (progress_ != nullptr) progress_->beginCommand(label);
    std::string problem;
    try {
        registry_.run(procedure);
    } catch (const ProcedureLoadError& e) {
        problem = e.what();
    } catch (const std::bad_alloc&) {
        problem = "The procedure ran out of memory.";
    } catch (const std::exception& e) {
        problem = std::string("The procedure stopped with an unexpected error: ") + e.what();
    } catch (...) {
        problem = "The procedure stopped with an unexpected error.";
    }
    // The live line goes before any message is shown.
    if (progress_ != nullptr) progress_->endCommand();
    if (!problem.empty()) HostSession::instance().addMessage(MessageLevel::Error, procedure.command, problem);
}

}  // namespace host
