// distcorr: runs DISTANCE CORRELATION commands on a CSV data set through the
// reference host, and shows the output as text, JSON and HTML.
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "DataSet.h"
#include "HostSession.h"
#include "data/CsvDataLoader.h"
#include "output/Report.h"
#include "runner/CommandSplitter.h"
#include "runner/ProcedureRegistry.h"
#include "syntax/MessageText.h"

namespace {

constexpr int kExitOk = 0;
constexpr int kExitCommandError = 1;
constexpr int kExitUsage = 2;
constexpr int kExitData = 3;

const char* kDescription =
    "distcorr runs DISTANCE CORRELATION commands on a data set.\n\n"
    "The data set is a CSV file (RFC 4180, header row with the variable names) with an\n"
    "optional dictionary in Frictionless Table Schema JSON: FILE.schema.json beside the\n"
    "CSV, or the file given with --schema.\n\n"
    "Commands come from a syntax file, from -e TEXT, or from standard input (-). A command\n"
    "ends with a period at the end of a line or at the end of the input; a syntax file may\n"
    "hold several commands, run in order. Example:\n"
    "  distcorr --data examples/study.csv -e \"DISTANCE CORRELATION VARIABLE=score hours\n"
    "      /PRINT DISTCORRCOEFF DETAILS.\"\n"
    "Without commands, distcorr loads the data set and lists its dictionary.\n\n"
    "Tables are printed on standard output, messages on standard error.\n\n"
    "Exit status: 0 no command reported an error; 1 a command reported an error;\n"
    "2 usage error; 3 the data could not be loaded.";

struct Options {
    std::string data;
    std::string schema;
    std::string syntaxFile;
    std::string exec;
    std::string output;
    std::string html;
    std::string lang;
    std::string procedures;
    bool quiet = false;
};

bool readFile(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}

void listDictionary(const host::DataSet& data, const std::string& path) {
    std::cout << path << ": " << data.caseCount() << " cases, " << data.variableCount() << " variables";
    if (!data.label().empty()) std::cout << " (" << data.label() << ")";
    std::cout << "\n";
    static const char* levels[] = {"", "nominal", "ordinal", "scale"};
    for (int i = 0; i < data.variableCount(); ++i) {
        const host::VariableInfo& v = data.variable(i);
        std::cout << "  " << v.name << "  " << (v.type == 0 ? "numeric" : "text(" + std::to_string(v.type) + ")")
                  << "  " << (v.measurementLevel >= 1 && v.measurementLevel <= 3 ? levels[v.measurementLevel] : "?");
        if (v.hasLabel) std::cout << "  \"" << v.label << "\"";
        if (!v.valueLabels.empty()) std::cout << "  " << v.valueLabels.size() << " value labels";
        std::cout << "\n";
    }
}

// Runs one command and returns its record for the reports.
host::RunRecord runCommand(host::ProcedureRegistry& registry, const host::SyntaxCommand& command,
                           const std::string& sourceName) {
    host::HostSession& session = host::HostSession::instance();
    session.beginCommand({command.text, sourceName, command.firstLine});
    const host::ProcedureInfo* procedure = registry.match(command.text);
    std::string commandName;
    if (procedure == nullptr) {
        std::istringstream words(command.text);
        std::string first;
        words >> first;
        session.addMessage(host::MessageLevel::Error, "",
                           "Unknown command " + host::syntax::quotedText(first) + " (" + sourceName + ", line " +
                               std::to_string(command.firstLine) + ").");
    } else {
        commandName = procedure->command;
        session.setCommandName(commandName);
        try {
            registry.run(*procedure);
        } catch (const host::ProcedureLoadError& e) {
            session.addMessage(host::MessageLevel::Error, commandName, e.what());
        }
        if (session.messages().empty() && session.outputDocument() == nullptr)
            session.addMessage(host::MessageLevel::Note, commandName, commandName + " produced no output.");
    }
    return host::takeRunRecord(command.text);
}

bool writeReport(const std::string& path, const char* what,
                 const std::function<void(std::ostream&)>& write) {
    std::ofstream out(path, std::ios::binary);
    if (out) write(out);
    out.flush();
    if (!out) {
        std::cerr << "Error: cannot write the " << what << " to " << path << "\n";
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{kDescription, "distcorr"};
    Options opt;
    app.add_option("--data", opt.data, "CSV data file to analyse")->required();
    app.add_option("--schema", opt.schema, "Table Schema dictionary (default: FILE.schema.json beside the CSV)");
    app.add_option("syntax", opt.syntaxFile, "Syntax file with commands, or - for standard input");
    app.add_option("-e,--execute", opt.exec, "Command text to run");
    app.add_option("--output", opt.output, "Write the output document (JSON) to this file");
    app.add_option("--html", opt.html, "Write an HTML report with tables and charts to this file");
    app.add_option("--lang", opt.lang, "Language of the output labels (e.g. de); English by default");
    app.add_option("--procedures", opt.procedures, "Folder of procedure manifests (default: ../lib beside distcorr)");
    app.add_flag("-q,--quiet", opt.quiet, "Do not print the tables on standard output");
    try {
        app.parse(argc, argv);
        if (!opt.exec.empty() && !opt.syntaxFile.empty())
            throw CLI::ValidationError("give either a syntax file or -e TEXT, not both");
    } catch (const CLI::ParseError& e) {
        const int code = app.exit(e);
        return code == 0 ? kExitOk : kExitUsage;
    }

    host::HostSession& session = host::HostSession::instance();
    session.setLanguage(opt.lang);

    std::shared_ptr<host::DataSet> data;
    try {
        data = host::loadCsvDataSet(opt.data, opt.schema);
    } catch (const std::exception& e) {
        std::cerr << "Error: " << e.what() << "\n";
        return kExitData;
    }
    session.setActiveDataSet(data);

    std::string syntax;
    std::string sourceName;
    if (!opt.exec.empty()) {
        syntax = opt.exec;
        sourceName = "command line";
    } else if (opt.syntaxFile == "-") {
        syntax.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        sourceName = "standard input";
    } else if (!opt.syntaxFile.empty()) {
        if (!readFile(opt.syntaxFile, syntax)) {
            std::cerr << "Error: cannot read the syntax file " << opt.syntaxFile << "\n";
            return kExitUsage;
        }
        sourceName = opt.syntaxFile;
    } else {
        listDictionary(*data, opt.data);
        return kExitOk;
    }

    host::ProcedureRegistry registry;
    const std::string folder = opt.procedures.empty() ? host::executableFolder() + "/../lib" : opt.procedures;
    try {
        registry.loadManifests(folder);
    } catch (const host::ProcedureLoadError& e) {
        std::cerr << "Error: " << e.what() << "\n";
        return kExitCommandError;
    }

    std::vector<host::RunRecord> runs;
    bool anyError = false;
    host::CommandSplitter splitter(syntax);
    for (host::SyntaxCommand command; splitter.next(command);) {
        runs.push_back(runCommand(registry, command, sourceName));
        for (const auto& m : runs.back().messages)
            if (m.level == host::MessageLevel::Error) anyError = true;
        if (!opt.quiet) host::renderText(std::cout, runs.back());
    }
    std::cout.flush();

    bool written = true;
    if (!opt.output.empty())
        written &= writeReport(opt.output, "output document",
                               [&](std::ostream& out) { host::writeOutputDocument(out, runs); });
    if (!opt.html.empty())
        written &= writeReport(opt.html, "HTML report", [&](std::ostream& out) { host::writeHtmlReport(out, runs); });
    return anyError || !written ? kExitCommandError : kExitOk;
}
