#pragma once
// Runs the distcorr program as a user would and captures what it prints.
#include <dirent.h>
#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <functional>
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

// The names in a folder (without "." and ".."), sorted.
inline std::vector<std::string> folderEntries(const std::string& dir) {
    std::vector<std::string> entries;
    if (DIR* d = opendir(dir.c_str())) {
        while (const dirent* e = readdir(d))
            if (std::string(e->d_name) != "." && std::string(e->d_name) != "..") entries.push_back(e->d_name);
        closedir(d);
    }
    std::sort(entries.begin(), entries.end());
    return entries;
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

// ---- Running distcorr as a child process with control over its streams ----

// How a child distcorr is started. Standard input is /dev/null unless
// stdinText or stdinPath is given; standard output and error are captured
// into files unless stdoutFd names a descriptor to use instead.
struct DistcorrChild {
    std::string stdinText;
    std::string stdinPath;
    int stdoutFd = -1;
    // Runs in the child just before exec (only async-signal-safe calls:
    // setrlimit, signal, ...).
    std::function<void()> beforeExec;
};

struct DistcorrProcess {
    pid_t pid = -1;
    std::string outPath;
    std::string errPath;
};

inline std::string distcorrBinary() { return std::string(DC_BINARY_DIR) + "/bin/distcorr"; }

inline std::vector<char*> argvFor(const std::string& binary, std::vector<std::string>& args) {
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(binary.c_str()));
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    return argv;
}

// Starts distcorr and returns at once.
inline DistcorrProcess startDistcorr(std::vector<std::string> args, const DistcorrChild& child = {}) {
    static const std::string tmp = makeTempDir();
    static int counter = 0;
    DistcorrProcess p;
    const std::string base = tmp + "/child" + std::to_string(++counter);
    p.outPath = base + ".out";
    p.errPath = base + ".err";
    std::string inPath = child.stdinPath.empty() ? "/dev/null" : child.stdinPath;
    if (!child.stdinText.empty()) {
        inPath = base + ".in";
        std::ofstream(inPath, std::ios::binary) << child.stdinText;
    }
    const std::string binary = distcorrBinary();
    std::vector<char*> argv = argvFor(binary, args);
    const int in = ::open(inPath.c_str(), O_RDONLY | O_CLOEXEC);
    const int out = child.stdoutFd >= 0 ? child.stdoutFd
                                        : ::open(p.outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const int err = ::open(p.errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    p.pid = ::fork();
    if (p.pid == 0) {
        ::dup2(in, 0);
        ::dup2(out, 1);
        ::dup2(err, 2);
        if (child.beforeExec) child.beforeExec();
        ::execv(binary.c_str(), argv.data());
        ::_exit(127);
    }
    ::close(in);
    if (child.stdoutFd < 0) ::close(out);
    ::close(err);
    return p;
}

inline int exitCodeOf(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

// Waits for a started distcorr and collects what it printed.
inline DistcorrResult waitDistcorr(const DistcorrProcess& p) {
    int status = 0;
    while (::waitpid(p.pid, &status, 0) < 0 && errno == EINTR) {
    }
    DistcorrResult r;
    r.exitCode = exitCodeOf(status);
    r.out = readWholeFile(p.outPath);
    r.err = readWholeFile(p.errPath);
    return r;
}

inline DistcorrResult runDistcorrChild(const std::vector<std::string>& args, const DistcorrChild& child) {
    return waitDistcorr(startDistcorr(args, child));
}

// Runs distcorr on a pseudo-terminal (standard input, output and error all
// on it, 80 columns) and returns everything the terminal received in `out`.
// `watch`, when given, sees all that was received so far after each read,
// with the child's pid (e.g. to send it a signal at the right moment).
inline DistcorrResult runDistcorrOnTerminal(
    std::vector<std::string> args, const std::function<void(const std::string& received, pid_t pid)>& watch = nullptr) {
    const std::string binary = distcorrBinary();
    std::vector<char*> argv = argvFor(binary, args);
    struct winsize size {};
    size.ws_row = 24;
    size.ws_col = 80;
    int master = -1;
    const pid_t pid = ::forkpty(&master, nullptr, nullptr, &size);
    if (pid == 0) {
        ::execv(binary.c_str(), argv.data());
        ::_exit(127);
    }
    DistcorrResult r;
    if (pid < 0) return r;
    char block[4096];
    for (;;) {
        const ssize_t n = ::read(master, block, sizeof block);
        if (n > 0) {
            r.out.append(block, static_cast<std::size_t>(n));
            if (watch) watch(r.out, pid);
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        break;  // EIO once the child has closed the terminal
    }
    ::close(master);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    r.exitCode = exitCodeOf(status);
    return r;
}
