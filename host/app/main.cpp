// distcorr: runs DISTANCE CORRELATION commands on a CSV data set through the
// reference host, and shows the output as text, JSON and HTML.
#include <signal.h>
#include <unistd.h>

#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "CommandStream.h"
#include "DataSet.h"
#include "HostSession.h"
#include "InstalledServices.h"
#include "ReportFile.h"
#include "RunReports.h"
#include "StandardOutput.h"
#include "SyntaxSource.h"
#include "UsageError.h"
#include "Version.h"
#include "data/CsvDataLoader.h"
#include "data/TemporaryFileRegistry.h"
#include "output/Report.h"
#include "output/StringResources.h"
#include "runner/CommandProgress.h"
#include "runner/CommandRunner.h"
#include "runner/ProcedureRegistry.h"
#include "runner/ProgressLine.h"
#include "runner/StandardErrorTee.h"
#include "runner/ThreadWorkerPool.h"
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
    "Commands come from a syntax file, from -e TEXT (repeatable, run in order), or from\n"
    "standard input (- or, when it is not a terminal, nothing). A command ends with a period\n"
    "at the end of a line or at the end of the input; a syntax file may hold several\n"
    "commands, run in order. Example:\n"
    "  distcorr --data examples/study.csv -e \"DISTANCE CORRELATION VARIABLE=score hours\n"
    "      /PRINT DISTCORRCOEFF DETAILS.\"\n"
    "With no commands in the text (for example -e ''), distcorr loads the data set and lists\n"
    "its dictionary.\n\n"
    "Tables are printed on standard output, messages on standard error. --output - or\n"
    "--html - writes that report to standard output instead; the tables are then not printed.\n"
    "Reports replace their file only when complete; no output replaces an input file.\n\n"
    "Exit status: 0 every command ran to its end; 1 a command reported an error or was ended\n"
    "early by its procedure, or an output could not be written; 2 usage error; 3 the data\n"
    "could not be loaded.\n\n"
    "The command language, every keyword, the tables and worked examples: docs/commands.md.";

// Every command-line option, in one place.
struct Options {
    std::string data;
    std::string schema;
    std::string syntaxFile;
    std::vector<std::string> execute;
    std::string output;
    std::string html;
    std::string lang;
    std::string procedures;
    unsigned threads = 0;  // 0: the processors this process may use
    bool quiet = false;
    host::CsvLoadOptions load;  // import options of the CSV file
};

void declareOptions(CLI::App& app, Options& opt) {
    app.set_version_flag("--version", std::string("distcorr ") + host::version());
    app.add_option("--data", opt.data, "CSV data file to analyse; - reads it from standard input")->required();
    app.add_option("--schema", opt.schema, "Table Schema dictionary (default: FILE.schema.json beside the CSV)");
    app.add_option("syntax", opt.syntaxFile, "Syntax file with commands, or - for standard input");
    app.add_option("-e,--execute", opt.execute, "Command text to run (may be repeated; run in order)")
        ->allow_extra_args(false);
    app.add_option("--output", opt.output, "Write the output document (JSON) to this file (- for standard output)");
    app.add_option("--html", opt.html,
                   "Write an HTML report with tables and charts to this file (- for standard output)");
    app.add_option("--lang", opt.lang, "Language of the output labels (e.g. de); English by default");
    app.add_option("--procedures", opt.procedures, "Folder of procedure manifests (default: ../lib beside distcorr)");
    app.add_option("--threads", opt.threads, "Worker threads for procedures (default: the processors available)")
        ->check(CLI::Range(1u, 1024u));
    app.add_flag("-q,--quiet", opt.quiet,
                 "Do not print the tables on standard output, nor notes about the data, and show no progress line");
    // Import options of the CSV file (docs/data-files.md).
    host::CsvLoadOptions& load = opt.load;
    app.add_option_function<std::string>(
           "--na", [&load](const std::string& list) { load.missingValues = host::parseMissingValueList(list); },
           "Texts meaning missing, separated by commas (default: empty cells, and NA in numeric columns)")
        ->type_name("LIST");
    app.add_option_function<std::string>(
           "--delimiter", [&load](const std::string& c) { load.delimiter = host::parseDelimiterOption(c); },
           "Field separator: , ; | or tab (default: detected from the first lines)")
        ->type_name("C")
        ->check([](const std::string& c) { return host::parseDelimiterOption(c) ? "" : "use , ; | or tab"; });
    app.add_option_function<std::string>(
           "--decimal", [&load](const std::string& c) { load.decimal = host::parseDecimalOption(c); },
           "Decimal mark: . or , (default: . with the comma separator, else detected per column)")
        ->type_name("C")
        ->check([](const std::string& c) { return host::parseDecimalOption(c) ? "" : "use . or ,"; });
}

// Files this run reads; no output may replace them.
void recordInputFiles(const Options& opt, const SyntaxSource& syntax) {
    host::HostSession& session = host::HostSession::instance();
    session.addInputFile(opt.data == "-" ? "/dev/stdin" : opt.data, "the active data set's data file");
    const std::string dictionaryRole = "the active data set's dictionary";
    if (!opt.schema.empty()) {
        session.addInputFile(opt.schema, dictionaryRole);
    } else if (opt.data != "-") {
        // Both names the loader looks for beside the data file.
        session.addInputFile(host::schemaPathFor(opt.data), dictionaryRole);
        session.addInputFile(opt.data + ".schema.json", dictionaryRole);
    }
    if (!syntax.syntaxFile().empty()) session.addInputFile(syntax.syntaxFile(), "the syntax file");
}

void checkOptions(Options& opt) {
    if (!opt.execute.empty() && !opt.syntaxFile.empty())
        throw UsageError("give either a syntax file or -e TEXT, not both");
    if (opt.output == "-" && opt.html == "-")
        throw UsageError("--output and --html cannot both write to standard output (-)");
    if (!opt.lang.empty() && opt.lang != "en") {
        const std::vector<std::string> languages = host::availableLanguages();
        bool known = false;
        std::string list = "en";
        for (const std::string& l : languages) {
            known = known || l == opt.lang;
            list += ", " + l;
        }
        if (!known)
            throw UsageError("--lang " + host::syntax::shownText(opt.lang) +
                             ": there is no such language; available: " + list);
    }
    if (opt.lang == "en") opt.lang.clear();
}

void checkOutputPaths(const Options& opt) {
    for (const auto& [option, path] : {std::pair<const char*, std::string>{"--output", opt.output},
                                       std::pair<const char*, std::string>{"--html", opt.html}}) {
        if (path.empty() || path == "-") continue;
        const std::string problem = ReportFile::problemWith(path);
        if (!problem.empty())
            throw UsageError(std::string(option) + " " + host::syntax::quotedText(path) + ": " + problem);
    }
    const auto isFile = [](const std::string& path) { return !path.empty() && path != "-"; };
    if (isFile(opt.output) && isFile(opt.html) && ReportFile::sameTarget(opt.output, opt.html))
        throw UsageError("--output and --html name the same file " + host::syntax::quotedText(opt.output));
}

void listDictionary(std::ostream& out, const host::DataSet& data, const std::string& path) {
    out << path << ": " << data.caseCount() << " cases, " << data.variableCount() << " variables";
    if (!data.label().empty()) out << " (" << data.label() << ")";
    out << "\n";
    static const char* levels[] = {"", "nominal", "ordinal", "scale"};
    for (int i = 0; i < data.variableCount(); ++i) {
        const host::VariableInfo& v = data.variable(i);
        out << "  " << v.name << "  " << (v.type == 0 ? "numeric" : "text(" + std::to_string(v.type) + ")") << "  "
            << (v.measurementLevel >= 1 && v.measurementLevel <= 3 ? levels[v.measurementLevel] : "?");
        if (v.hasLabel) out << "  \"" << v.label << "\"";
        if (!v.valueLabels.empty()) out << "  " << v.valueLabels.size() << " value labels";
        out << "\n";
    }
}

// Runs the commands in order, from `first` on, printing each one's tables
// and adding it to the reports as it ends.
int runCommands(const Options& opt, CommandStream& commands, host::SyntaxCommand& first, bool printTables,
                StandardOutput& standardOutput, RunReports& reports, bool& anyFailed) {
    host::ProcedureRegistry registry;
    const std::string folder = opt.procedures.empty() ? host::executableFolder() + "/../lib" : opt.procedures;
    try {
        registry.loadManifests(folder);
    } catch (const host::ProcedureLoadError& e) {
        std::cerr << "Error: " << e.what() << "\n";
        return kExitCommandError;
    }

    // Standard error: host messages apart from the procedures' own text.
    host::StandardErrorTee tee(std::cerr);
    std::unique_ptr<host::CommandProgress> progress;
    if (!opt.quiet && ::isatty(STDERR_FILENO)) {
        progress = std::make_unique<host::CommandProgress>([&tee](const std::string& line) { tee.showLiveLine(line); },
                                                           [&tee] { tee.clearLiveLine(); },
                                                           [] { return host::terminalColumns(STDERR_FILENO); });
        // Ctrl-C in the middle of a command leaves no half line for the prompt.
        tee.eraseLiveLineOnSignal(STDERR_FILENO);
    }
    // One worker means no pool: procedures then run everything on the calling thread.
    const unsigned threads = opt.threads != 0 ? opt.threads : host::availableProcessors();
    std::unique_ptr<host::ThreadWorkerPool> pool;
    if (threads > 1) pool = std::make_unique<host::ThreadWorkerPool>(threads);
    const InstalledServices services(tee.hostStream(), progress.get(), pool.get());

    reports.open();
    host::CommandRunner runner(registry, &tee, progress.get());
    host::SyntaxCommand& command = first;
    do {
        const host::CommandOutcome outcome = runner.run(command, commands.sourceName());
        anyFailed = anyFailed || outcome.failed;
        if (printTables) {
            host::renderText(standardOutput.stream(), outcome.record);
            standardOutput.flush();
        }
        reports.add(outcome.record);
    } while (commands.next(command));
    return kExitOk;
}

int run(Options& opt) {
    checkOptions(opt);
    const SyntaxSource syntax(opt.execute, opt.syntaxFile, opt.data == "-");
    recordInputFiles(opt, syntax);
    checkOutputPaths(opt);
    const std::vector<SyntaxText> texts = syntax.read();

    host::HostSession& session = host::HostSession::instance();
    session.setLanguage(opt.lang);
    std::shared_ptr<host::DataSet> data;
    try {
        opt.load.notes = &std::cerr;
        opt.load.quiet = opt.quiet;
        data = host::loadCsvDataSet(opt.data, opt.schema, opt.load);
    } catch (const std::exception& e) {
        std::cerr << "Error: " << e.what() << "\n";
        return kExitData;
    }
    session.setActiveDataSet(data);

    // Tables go to standard output unless it carries a report, or --quiet.
    StandardOutput standardOutput;
    const bool printTables = !opt.quiet && opt.output != "-" && opt.html != "-";
    RunReports reports(opt.output, opt.html, standardOutput);
    CommandStream commands(texts);
    host::SyntaxCommand first;
    bool anyFailed = false;
    if (!commands.next(first)) {
        if (printTables) listDictionary(standardOutput.stream(), *data, opt.data);
        reports.open();
    } else {
        const int status = runCommands(opt, commands, first, printTables, standardOutput, reports, anyFailed);
        if (status != kExitOk) return status;
    }
    standardOutput.flush();

    bool written = !standardOutput.failed();
    written &= reports.finish(
        host::ReportContext{opt.data, data->caseCount(), data->variableCount(), opt.lang, std::time(nullptr)});
    return anyFailed || !written ? kExitCommandError : kExitOk;
}

}  // namespace

int main(int argc, char** argv) {
    // A closed standard output is reported as an error, not a silent death;
    // an oversized file is a write error (EFBIG) like a full disk.
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
    host::temporaryFiles::installSignalCleanup();

    try {
        CLI::App app{kDescription, "distcorr"};
        Options opt;
        declareOptions(app, opt);
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& e) {
            const int code = app.exit(e);
            return code == 0 ? kExitOk : kExitUsage;
        }
        return run(opt);
    } catch (const UsageError& e) {
        std::cerr << "Error: " << e.what() << "\n";
        return kExitUsage;
    } catch (const std::bad_alloc&) {
        std::cerr << "Error: distcorr ran out of memory.\n";
    } catch (const std::exception& e) {
        std::cerr << "Error: " << e.what() << "\n";
    } catch (...) {
        std::cerr << "Error: an unexpected error ended distcorr.\n";
    }
    return kExitCommandError;
}
