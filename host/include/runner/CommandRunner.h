#pragma once
#include <string>

#include "output/Report.h"
#include "runner/CommandSplitter.h"
#include "runner/ProcedureRegistry.h"

namespace host {

class CommandProgress;
class StandardErrorTee;

// What one command left behind and whether it failed: it reported an error,
// its procedure ended it early with a stage-failure line on standard error,
// or the procedure could not be run.
struct CommandOutcome {
    RunRecord record;
    bool failed = false;
};

// Runs the commands of a syntax text one at a time through the registry.
// With a tee it learns whether the procedure wrote text of its own to
// standard error; with a progress display it shows the live line while the
// command runs. No exception of a procedure leaves run().
class CommandRunner {
public:
    CommandRunner(ProcedureRegistry& registry, StandardErrorTee* tee, CommandProgress* progress)
        : registry_(registry), tee_(tee), progress_(progress) {}

    CommandOutcome run(const SyntaxCommand& command, const std::string& sourceName);

private:
    void callProcedure(const ProcedureInfo& procedure, const std::string& label);

    ProcedureRegistry& registry_;
    StandardErrorTee* tee_;
    CommandProgress* progress_;
};

}  // namespace host
