#pragma once
// Reads the runnable examples of a Markdown document and runs them.
//
// An example is written as
//
//   <!-- run: --data examples/study.csv -->
//   ```sps
//   DISTANCE CORRELATION VARIABLE=score hours /PRINT DISTCORRCOEFF.
//   ```
//   ```text
//   (the standard output of distcorr)
//   ```
//
// The run comment holds distcorr's arguments (paths relative to the
// repository root; quotes group words). The next `sps` block is the command
// text, given with -e; the next `text` block is the expected standard output.
// The block right after it may be a `text stderr` block with the expected
// standard error; without one, standard error must be empty. Each
// `<!-- file: NAME -->` comment before the next run comment is followed by a
// block holding the expected content of a file the run writes (NAME relative
// to the folder the run works in).
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "DistcorrRunner.h"

namespace docs {

struct ExpectedFile {
    int line = 0;
    std::string name;
    std::string content;
};

struct Example {
    int line = 0;  // line of the run comment
    std::vector<std::string> args;
    bool hasSyntax = false;
    std::string syntax;
    bool hasOut = false;
    std::string expectedOut;
    bool hasErr = false;
    std::string expectedErr;
    std::vector<ExpectedFile> files;
};

// How the test framework names an example in its reports.
inline void PrintTo(const Example& example, std::ostream* out) { *out << "example at line " << example.line; }

struct Document {
    std::vector<Example> examples;
    std::vector<std::string> problems;  // malformed examples, with their line
};

inline std::string trim(const std::string& s) {
    const auto first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos) return "";
    const auto last = s.find_last_not_of(" \t\r");
    return s.substr(first, last - first + 1);
}

// The words of an argument list; '...' and "..." group words.
inline std::vector<std::string> splitArgs(const std::string& text) {
    std::vector<std::string> args;
    std::string word;
    bool inWord = false;
    char quote = 0;
    for (char c : text) {
        if (quote != 0) {
            if (c == quote) {
                quote = 0;
            } else {
                word += c;
            }
        } else if (c == '\'' || c == '"') {
            quote = c;
            inWord = true;
        } else if (c == ' ' || c == '\t') {
            if (inWord) args.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord) args.push_back(word);
    return args;
}

// The text of an HTML comment "<!-- key: text -->" on its own line, or false.
inline bool commentValue(const std::string& line, const std::string& key, std::string& value) {
    const std::string t = trim(line);
    const std::string open = "<!-- " + key + ":";
    const std::string close = "-->";
    if (t.compare(0, open.size(), open) != 0 || t.size() < open.size() + close.size() ||
        t.compare(t.size() - close.size(), close.size(), close) != 0)
        return false;
    value = trim(t.substr(open.size(), t.size() - open.size() - close.size()));
    return true;
}

inline Document parseDocument(const std::string& markdown) {
    Document doc;
    std::vector<std::string> lines;
    std::istringstream in(markdown);
    for (std::string l; std::getline(in, l);) lines.push_back(l);

    Example* current = nullptr;
    bool errAllowed = false;  // the fence right after the expected output may be stderr
    std::string pendingFile;
    int pendingFileLine = 0;
    auto finish = [&]() {
        if (current == nullptr) return;
        if (!current->hasSyntax || !current->hasOut)
            doc.problems.push_back("line " + std::to_string(current->line) +
                                   ": a run comment needs an sps block and then a text block");
        if (!pendingFile.empty())
            doc.problems.push_back("line " + std::to_string(pendingFileLine) + ": file comment without a block");
        pendingFile.clear();
        current = nullptr;
    };

    for (std::size_t i = 0; i < lines.size(); ++i) {
        const int lineNo = static_cast<int>(i) + 1;
        std::string value;
        if (commentValue(lines[i], "run", value)) {
            finish();
            doc.examples.push_back(Example{});
            current = &doc.examples.back();
            current->line = lineNo;
            current->args = splitArgs(value);
            errAllowed = false;
            continue;
        }
        if (commentValue(lines[i], "file", value)) {
            if (current == nullptr || !current->hasOut)
                doc.problems.push_back("line " + std::to_string(lineNo) + ": file comment outside an example");
            pendingFile = value;
            pendingFileLine = lineNo;
            continue;
        }
        const std::string t = trim(lines[i]);
        if (t.compare(0, 3, "```") != 0) continue;

        // A fenced block: collect it up to its closing fence.
        const std::string info = trim(t.substr(3));
        std::string content;
        std::size_t j = i + 1;
        while (j < lines.size() && trim(lines[j]) != "```") content += lines[j++] + "\n";
        if (j == lines.size()) {
            doc.problems.push_back("line " + std::to_string(lineNo) + ": code block is not closed");
            break;
        }
        i = j;
        if (current == nullptr) continue;

        const bool wasErrAllowed = errAllowed;
        errAllowed = false;
        if (!pendingFile.empty()) {
            current->files.push_back({lineNo, pendingFile, content});
            pendingFile.clear();
        } else if (info == "sps" && !current->hasSyntax) {
            current->hasSyntax = true;
            current->syntax = content;
        } else if (info == "text" && current->hasSyntax && !current->hasOut) {
            current->hasOut = true;
            current->expectedOut = content;
            errAllowed = true;
        } else if (info == "text stderr" && wasErrAllowed) {
            current->hasErr = true;
            current->expectedErr = content;
        }
    }
    finish();
    return doc;
}

inline Document loadDocument(const std::string& relativePath) {
    return parseDocument(readWholeFile(std::string(DC_SOURCE_DIR) + "/" + relativePath));
}

// What is compared: CRLF read as LF, blanks at line ends and empty lines at
// the end dropped (a Markdown editor may strip them; they are invisible).
inline std::string normalized(const std::string& text) {
    std::string out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        const auto last = line.find_last_not_of(" \t\r");
        out += (last == std::string::npos ? "" : line.substr(0, last + 1)) + "\n";
    }
    while (!out.empty() && out.back() == '\n') out.pop_back();
    return out;
}

inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);) lines.push_back(l);
    return lines;
}

// A line diff ("-" expected only, "+" actual only, " " both), empty when equal.
inline std::string lineDiff(const std::string& expected, const std::string& actual) {
    if (expected == actual) return "";
    const std::vector<std::string> a = linesOf(expected);
    const std::vector<std::string> b = linesOf(actual);
    // Longest common subsequence table, from the ends.
    std::vector<std::vector<int>> lcs(a.size() + 1, std::vector<int>(b.size() + 1, 0));
    for (std::size_t i = a.size(); i-- > 0;)
        for (std::size_t j = b.size(); j-- > 0;)
            lcs[i][j] = a[i] == b[j] ? lcs[i + 1][j + 1] + 1 : std::max(lcs[i + 1][j], lcs[i][j + 1]);
    std::string diff;
    std::size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            diff += "  " + a[i++] + "\n";
            ++j;
        } else if (i < a.size() && (j == b.size() || lcs[i + 1][j] >= lcs[i][j + 1])) {
            diff += "- " + a[i++] + "\n";
        } else {
            diff += "+ " + b[j++] + "\n";
        }
    }
    return diff;
}

struct Run {
    DistcorrResult result;
    std::string folder;  // where the run worked; files it wrote are here
};

// Runs an example in a fresh folder in which the repository's top-level
// folders named by relative arguments are linked, so that "examples/x.csv"
// means the same as at the repository root and files written stay outside it.
inline Run runExample(const Example& example) {
    char templ[] = "/tmp/distcorr-docs-XXXXXX";
    const char* base = mkdtemp(templ);
    Run run;
    run.folder = std::string(base != nullptr ? base : "/tmp") + "/work";
    mkdir(run.folder.c_str(), 0700);
    const std::string source = DC_SOURCE_DIR;
    for (const std::string& arg : example.args) {
        if (arg.empty() || arg[0] == '-' || arg[0] == '/') continue;
        const std::string top = arg.substr(0, arg.find('/'));
        struct stat info {};
        const std::string target = source + "/" + top;
        const std::string link = run.folder + "/" + top;
        if (stat(target.c_str(), &info) == 0 && lstat(link.c_str(), &info) != 0)
            (void)symlink(target.c_str(), link.c_str());
    }
    std::string syntax = example.syntax;
    while (!syntax.empty() && syntax.back() == '\n') syntax.pop_back();

    const std::string capture = run.folder + "/..";
    std::string cmd =
        "cd " + shellQuote(run.folder) + " && " + shellQuote(std::string(DC_BINARY_DIR) + "/bin/distcorr");
    for (const std::string& arg : example.args) cmd += " " + shellQuote(arg);
    cmd += " -e " + shellQuote(syntax) + " < /dev/null > " + shellQuote(capture + "/stdout") + " 2> " +
           shellQuote(capture + "/stderr");
    const int status = std::system(cmd.c_str());
    run.result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.result.out = readWholeFile(capture + "/stdout");
    run.result.err = readWholeFile(capture + "/stderr");
    return run;
}

}  // namespace docs
