#pragma once
// Runs the distcorr program as a user would and captures what it prints.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <rapidjson/document.h>

struct DistcorrResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

inline std::string readWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::string shellQuote(const std::string& s) {
    std::string q = "'";
    for (char c : s) q += (c == '\'') ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// A fresh temporary folder for one test.
inline std::string makeTempDir() {
    char templ[] = "/tmp/distcorr-test-XXXXXX";
    const char* dir = mkdtemp(templ);
    return dir ? dir : "/tmp";
}

inline DistcorrResult runDistcorr(const std::vector<std::string>& args, const std::string& stdinText = "") {
    static const std::string tmp = makeTempDir();
    static int counter = 0;
    const std::string base = tmp + "/run" + std::to_string(++counter);
    std::string cmd = shellQuote(std::string(DC_BINARY_DIR) + "/bin/distcorr");
    for (const auto& a : args) cmd += " " + shellQuote(a);
    if (!stdinText.empty()) {
        std::ofstream(base + ".in") << stdinText;
        cmd += " < " + shellQuote(base + ".in");
    } else {
        cmd += " < /dev/null";
    }
    cmd += " > " + shellQuote(base + ".out") + " 2> " + shellQuote(base + ".err");
    DistcorrResult r;
    const int status = std::system(cmd.c_str());
    r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    r.out = readWholeFile(base + ".out");
    r.err = readWholeFile(base + ".err");
    return r;
}

inline std::string fixture(const std::string& name) { return std::string(DC_FIXTURES) + "/" + name; }

inline rapidjson::Document parseJsonFile(const std::string& path) {
    rapidjson::Document doc;
    // Full precision: every number reads back to the double that was written.
    doc.Parse<rapidjson::kParseFullPrecisionFlag>(readWholeFile(path).c_str());
    return doc;
}
