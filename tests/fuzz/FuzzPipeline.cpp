#include "FuzzPipeline.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "DataSet.h"
#include "HostSession.h"
#include "data/CsvDataLoader.h"
#include "output/Report.h"
#include "runner/CommandRunner.h"
#include "runner/CommandSplitter.h"

namespace fs = std::filesystem;

namespace fuzz {
namespace {

bool startsWithIgnoringCase(std::string_view text, std::size_t at, std::string_view word) {
    if (text.size() - at < word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(text[at + i])) != word[i]) return false;
    return true;
}

}  // namespace

FuzzPipeline::FuzzPipeline() {
    char templ[] = "/tmp/distcorr-fuzz-XXXXXX";
    const char* dir = mkdtemp(templ);
    if (dir == nullptr) throw std::runtime_error("cannot make a folder for the fuzz run");
    folder_ = dir;
    host::HostSession& session = host::HostSession::instance();
    session.setQuiet(true);
    session.setLanguage("");
    registry_.loadManifests(host::executableFolder() + "/../lib");
    // Loaded now, before the fuzzer starts, so that it counts the coverage of
    // the procedures too; the registry's own loading then finds them loaded.
    for (const host::ProcedureInfo& procedure : registry_.procedures())
        if (dlopen(procedure.library.c_str(), RTLD_NOW) == nullptr)
            throw std::runtime_error("cannot load " + procedure.library);
}

std::string FuzzPipeline::writeFile(const std::string& name, std::string_view bytes) const {
    const std::string path = folder_ + "/" + name;
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
}

std::shared_ptr<host::DataSet> FuzzPipeline::load(const std::string& csvPath, const std::string& schemaPath) const {
    try {
        return host::loadCsvDataSet(csvPath, schemaPath);
    } catch (const host::DataLoadError&) {
        return nullptr;  // distcorr exits with 3 and the message
    }
}

void FuzzPipeline::runSyntax(std::shared_ptr<host::DataSet> data, std::string_view syntax) {
    // Relative file names in commands name files in the pipeline's folder;
    // the fuzzer's own (relative) paths stay valid outside the run.
    const fs::path caller = fs::current_path();
    fs::current_path(folder_);
    host::HostSession& session = host::HostSession::instance();
    session.setActiveDataSet(std::move(data));
    std::vector<host::RunRecord> runs;
    std::ostringstream text;
    host::CommandRunner runner(registry_, nullptr, nullptr);
    host::CommandSplitter splitter(syntax);
    for (host::SyntaxCommand command; splitter.next(command);) {
        runs.push_back(runner.run(command, "fuzz.sps").record);
        host::renderText(text, runs.back());
    }
    std::ostringstream json;
    host::writeOutputDocument(json, runs);
    std::ostringstream html;
    host::ReportContext context;
    context.dataFile = "data.csv";
    if (const auto active = session.activeDataSet()) {
        context.cases = active->caseCount();
        context.variables = active->variableCount();
    }
    host::writeHtmlReport(html, runs, context);
    session.setActiveDataSet(nullptr);
    fs::current_path(caller);
}

void FuzzPipeline::run(const std::string& csvPath, const std::string& schemaPath, std::string_view syntax) {
    if (auto data = load(csvPath, schemaPath)) runSyntax(std::move(data), syntax);
}

void FuzzPipeline::runEveryOutput(const std::string& csvPath, const std::string& schemaPath, unsigned seed) {
    auto data = load(csvPath, schemaPath);
    if (!data) return;
    std::vector<std::string> names;
    for (int i = 0; i < data->variableCount() && names.size() < 4; ++i)
        if (data->variable(i).type == 0) names.push_back(data->variable(i).name);
    if (names.size() < 2) return;
    static const char* const kNormalizations[] = {"NONE", "MINMAX", "ZSCORE", "ROBUST", "LOG"};
    std::string list;
    for (const std::string& name : names) list += " " + name;
    const std::string command = "DISTANCE CORRELATION VARIABLE=" + list + "\n  /ID VARIABLE=" + names[0] +
                                "\n  /CRITERIA NORMALIZATION=" + kNormalizations[seed % 5] +
                                " CILEVEL=90 PERMUTATION(SEED=7 MAXITERATIONS=19)"
                                "\n  /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR DISTMATRIX(CONFIGURE=[" +
                                names[0] + " " + names[1] +
                                "] SAVE=TRUE OUTFILE='distances.csv')\n  /PLOT SCATTERPLOT(XAXIS=" + names[0] +
                                " YAXIS=" + names[1] + ").\n";
    runSyntax(std::move(data), command);
}

void FuzzPipeline::cleanUp(std::initializer_list<std::string> keep) const {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder_, error)) {
        const std::string name = entry.path().filename().string();
        if (std::find(keep.begin(), keep.end(), name) == keep.end()) fs::remove_all(entry.path(), error);
    }
}

FuzzPipeline& pipeline() {
    static FuzzPipeline instance;
    return instance;
}

bool outsideTheSandbox(std::string_view syntax) {
    char quote = 0;
    for (std::size_t i = 0; i < syntax.size(); ++i) {
        const char c = syntax[i];
        if (quote != 0) {
            if (c == quote || c == '\n' || c == '\r') quote = 0;
            if (c == '/' || c == '\\' || c == '~') return true;
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (startsWithIgnoringCase(syntax, i, "MAXITERATIONS")) {
            std::size_t at = i + 13;
            while (at < syntax.size() && (syntax[at] == '=' || std::isspace(static_cast<unsigned char>(syntax[at]))))
                ++at;
            const std::string number(syntax.substr(at, 400));
            if (std::strtod(number.c_str(), nullptr) > 2000.0) return true;
        }
    }
    return false;
}

}  // namespace fuzz
