#pragma once
// Runs distcorr as a child process and reads what it cost from the kernel:
// its peak resident memory and its CPU time (getrusage of the child), never
// wall-clock time.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "DistcorrRunner.h"

namespace hardening {

struct MeasuredRun {
    int exitCode = -1;
    std::string out;
    std::string err;
    long peakKilobytes = 0;  // ru_maxrss
    double cpuSeconds = 0;   // user + system
};

inline std::string tempDir() {
    static const std::string dir = makeTempDir();
    return dir;
}

// A file in the test's folder holding exactly these bytes.
inline std::string writeFile(const std::string& name, const std::string& bytes) {
    const std::string path = tempDir() + "/" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

inline MeasuredRun runMeasured(const std::vector<std::string>& args) {
    static int counter = 0;
    const std::string base = tempDir() + "/measured" + std::to_string(++counter);
    const std::string program = std::string(DC_BINARY_DIR) + "/bin/distcorr";
    std::vector<char*> argv;
    std::vector<std::string> all = {program};
    all.insert(all.end(), args.begin(), args.end());
    for (std::string& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);

    MeasuredRun run;
    const pid_t child = fork();
    if (child == 0) {
        const int in = open("/dev/null", O_RDONLY);
        const int out = open((base + ".out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int err = open((base + ".err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (in < 0 || out < 0 || err < 0) _exit(126);
        dup2(in, 0);
        dup2(out, 1);
        dup2(err, 2);
        // Under AddressSanitizer freed memory is held back for a while; keep that
        // small, so that the peak measures what the program itself holds.
        const char* asan = getenv("ASAN_OPTIONS");
        const std::string options = std::string(asan != nullptr ? asan : "") + ":quarantine_size_mb=8";
        setenv("ASAN_OPTIONS", options.c_str(), 1);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child) return run;
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.peakKilobytes = usage.ru_maxrss;
    run.cpuSeconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                     static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    run.out = readWholeFile(base + ".out");
    run.err = readWholeFile(base + ".err");
    return run;
}

// x1, x2, x3: three scale variables, four cases.
inline std::string smallData() { return writeFile("small.csv", "x1,x2,x3\n1,2,3\n2,3,5\n3,5,4\n4,1,2\n"); }

}  // namespace hardening
