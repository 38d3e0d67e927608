#pragma once
// Runs the HTML validator tidy (Debian package "tidy") on a page.
#include <cstdio>
#include <fstream>
#include <string>

#include "DistcorrRunner.h"

struct TidyResult {
    int exitCode = -1;     // 0 valid, 1 warnings, 2 errors; 127 when tidy is missing
    std::string messages;  // tidy's report of what is wrong
};

inline TidyResult runTidy(const std::string& path) {
    TidyResult result;
    const std::string command = "tidy -errors -quiet " + shellQuote(path) + " 2>&1";
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return result;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) result.messages.append(buffer, n);
    const int status = ::pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

inline TidyResult runTidyOnText(const std::string& html) {
    const std::string folder = makeTempDir();
    const std::string path = folder + "/page.html";
    { std::ofstream(path, std::ios::binary) << html; }
    TidyResult result = runTidy(path);
    std::remove(path.c_str());
    ::rmdir(folder.c_str());
    return result;
}
