#pragma once
// Shared set-up of the command-syntax tests: a small data set with a known
// dictionary, and a helper that runs the host parser on a command text with
// the procedure's real grammar.
#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DataSet.h"
#include "DistanceCorrCommandDescriber.h"
#include "HostSession.h"
#include "UniversalParser.h"
#include "VELA_TokenSequence.h"

namespace syntaxtest {

// A dictionary-only data set; findVariable ignores letter case like the host's.
class FakeDataSet : public host::DataSet {
public:
    void add(const std::string& name, int type = 0, int level = 3) {
        host::VariableInfo info;
        info.name = name;
        info.type = type;
        info.measurementLevel = level;
        vars_.push_back(info);
    }
    std::string label() const override { return ""; }
    int variableCount() const override { return static_cast<int>(vars_.size()); }
    const host::VariableInfo& variable(int index) const override { return vars_.at(static_cast<std::size_t>(index)); }
    int findVariable(const std::string& name) const override {
        for (std::size_t i = 0; i < vars_.size(); ++i)
            if (upper(vars_[i].name) == upper(name)) return static_cast<int>(i);
        return -1;
    }
    std::size_t caseCount() const override { return 0; }
    double numericValue(std::size_t, int) const override { return 0.0; }
    std::string textValue(std::size_t, int) const override { return ""; }

private:
    static std::string upper(std::string s) {
        for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        return s;
    }
    std::vector<host::VariableInfo> vars_;
};

// Dictionary order: x1 x2 x3 x4 x5 Solar.R my_var Name(text) grp(nominal) rank(ordinal) id.
inline std::shared_ptr<FakeDataSet> standardData() {
    auto data = std::make_shared<FakeDataSet>();
    for (const char* n : {"x1", "x2", "x3", "x4", "x5", "Solar.R", "my_var"}) data->add(n);
    data->add("Name", 8, 1);
    data->add("grp", 0, 1);
    data->add("rank", 0, 2);
    data->add("id");
    return data;
}

// Makes the text the session's current command, over the given data set.
inline void beginCommand(const std::string& text, std::shared_ptr<host::DataSet> data = standardData(),
                         const std::string& source = "command line", int firstLine = 1) {
    host::HostSession& session = host::HostSession::instance();
    session.setQuiet(true);
    session.setActiveDataSet(std::move(data));
    session.beginCommand({text, source, firstLine});
}

// One run of the parser, as the procedure's entry does it.
struct ParseRun {
    unsigned status = 1;
    std::unique_ptr<CommandDescriptor> descriptor;
    std::unique_ptr<CommandSpec> spec;

    const std::vector<host::HostMessage>& messages() const { return host::HostSession::instance().messages(); }
    // The one error text, or a note that there was not exactly one.
    std::string error() const {
        const auto& m = messages();
        if (m.size() != 1) return "<" + std::to_string(m.size()) + " messages>";
        return m[0].level == host::MessageLevel::Error ? m[0].text : "<not an error>";
    }
    const SubComObj* sub(const std::string& name) const { return spec->getSubComObj(name); }
    const ParamObj* param(const std::string& subcommand, const std::string& name) const {
        const SubComObj* s = sub(subcommand);
        return s == nullptr ? nullptr : s->getParamObj(name);
    }
};

inline ParseRun parse(const std::string& text, std::shared_ptr<host::DataSet> data = standardData(),
                      const std::string& source = "command line", int firstLine = 1) {
    beginCommand(text, std::move(data), source, firstLine);
    ParseRun run;
    run.descriptor = std::make_unique<CommandDescriptor>("DISTANCE CORRELATION");
    DistanceCorrCommandDescriber describer(*run.descriptor);
    if (describer.start() != 0) return run;
    run.spec = std::make_unique<CommandSpec>();
    VELA_TokenSequence tokens(true);
    UniversalParser parser(tokens, *run.spec, *run.descriptor);
    run.status = parser.getCommandSpecifications();
    return run;
}

// The command name and a valid global part, so that a test line 2 holds what it checks.
inline std::string withVariables(const std::string& rest) { return "DISTANCE CORRELATION VARIABLE=x1 x2\n" + rest; }

}  // namespace syntaxtest
