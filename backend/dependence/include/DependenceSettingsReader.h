#pragma once
#include <string>
#include <vector>

#include "DependenceSettings.h"
#include "ParserMessage.h"

class CommandDescriptor;
class CommandSpec;
class ProcedureDataSource;
class SubComObj;

// Reads the parsed command into the run's settings: checks what the grammar
// cannot (one test, one missing-data rule, combinations of options, scale
// variables), reports each problem through the host and fetches the case
// data of every named variable.
class DependenceSettingsReader {
public:
    DependenceSettingsReader(const CommandSpec& spec, const CommandDescriptor& descriptor, ProcedureDataSource& source);

    // 0 when the settings are complete; 1 after a problem was reported.
    unsigned start(DependenceSettings& settings);

private:
    bool readLists(DependenceSettings& settings);
    bool readList(const SubComObj& global, const std::string& keyword, std::vector<DependenceVariable>& out,
                  std::vector<int>& indices);
    bool readCriteria(DependenceSettings& settings);
    bool readTest(DependenceSettings& settings);
    bool readMissing(DependenceSettings& settings);
    bool checkCombinations(const DependenceSettings& settings);
    bool fail(const std::string& text) const;

    const CommandSpec& spec_;
    const CommandDescriptor& descriptor_;
    ProcedureDataSource& source_;
    ParserMessage message_;
};
