#pragma once
// Workloads, seeded data, engine settings and resource measurement for the
// benchmark program.
#include <sys/resource.h>
#include <time.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DistanceCorrAlgo.h"
#include "DistanceCorrInputSettings.h"
#include "ProcedureDataSource.h"

namespace bench {

using Matrix = std::vector<std::vector<double>>;

struct Workload {
    std::string name;
    std::size_t variables;
    std::size_t cases;
    std::uint64_t permutations;  // 0: observed statistics only
    std::string what;
};

inline const std::vector<Workload>& workloads() {
    static const std::vector<Workload> all{
        {"W1", 2, 5792, 0, "observed statistics at the memory guard's limit, NONE"},
        {"W2", 30, 1495, 0, "observed statistics, 30 variables (435 pairs) at the guard's limit"},
        {"W3", 2, 2000, 999, "permutation test, 999 permutations"},
        {"W4", 2, 5792, 1000, "permutation test, 1000 permutations (stage level: the guard refuses it)"},
        {"W5", 10, 500, 1000, "permutation test, 45 pairs, 1000 permutations"},
        {"W5b", 10, 2000, 1000, "W5 at four times the cases"},
        {"W6", 2, 5792, 0, "whole distcorr run of W1: every table, scatter plot, saved file"},
    };
    return all;
}

inline const Workload& workload(const std::string& name) {
    for (const Workload& w : workloads()) {
        if (w.name == name) return w;
    }
    throw std::invalid_argument("unknown workload " + name);
}

// Variable 1 is normal; each further variable mixes a quadratic function of
// it (a dependence that correlation misses) with fresh noise.
inline Matrix makeData(const Workload& w) {
    std::mt19937_64 rng(20240600 + w.variables * 100000 + w.cases);
    std::normal_distribution<double> normal(0.0, 1.0);
    Matrix data(w.variables, std::vector<double>(w.cases));
    for (std::size_t c = 0; c < w.cases; ++c) {
        data[0][c] = normal(rng);
        for (std::size_t v = 1; v < w.variables; ++v) {
            data[v][c] = 0.25 * static_cast<double>(v % 3) * data[0][c] * data[0][c] + normal(rng);
        }
    }
    return data;
}

inline std::vector<std::string> variableNames(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t v = 0; v < count; ++v) names.push_back("x" + std::to_string(v + 1));
    return names;
}

inline void writeCsv(const Matrix& data, const std::string& path) {
    std::ofstream out(path);
    if (!out) throw std::runtime_error("cannot write " + path);
    const std::vector<std::string> names = variableNames(data.size());
    for (std::size_t v = 0; v < names.size(); ++v) out << (v ? "," : "") << names[v];
    out << "\n";
    char text[32];
    for (std::size_t c = 0; c < data[0].size(); ++c) {
        for (std::size_t v = 0; v < data.size(); ++v) {
            std::snprintf(text, sizeof text, "%.17g", data[v][c]);
            out << (v ? "," : "") << text;
        }
        out << "\n";
    }
    if (!out) throw std::runtime_error("cannot write " + path);
}

// The host objects the settings refer to, built before the settings.
struct HostObjects {
    CommandSpec spec;
    CommandDescriptor descriptor{"DISTANCE CORRELATION"};
    ProcedureDataSource source;
};

// Settings as the input stage would leave them, filled directly.
struct Settings : private HostObjects, public DistanceCorrInputSettings {
    Settings(const Matrix& data, std::uint64_t permutations) : DistanceCorrInputSettings(spec, descriptor, source) {
        const std::vector<std::string> names = variableNames(data.size());
        global_.setGlobalVarNames(names);
        global_.setGlobalVarLabels(names);
        global_.setGlobalData(data);
        criteria_.set_normalization("NONE");
        criteria_.set_permEnabled(permutations > 0);
        criteria_.set_permMaxIterations(static_cast<double>(permutations));
        criteria_.set_permSeed(2e6);
        criteria_.set_permSigLevel(0.05);
    }
};

struct Clock {
    std::chrono::steady_clock::time_point wall = std::chrono::steady_clock::now();
    double cpu = cpuSeconds();

    static double cpuSeconds() {
        timespec t{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
        return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
    }
    double wallElapsed() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count();
    }
    double cpuElapsed() const { return cpuSeconds() - cpu; }
};

// Peak resident memory of this process in bytes (VmHWM).
inline std::uint64_t peakResidentBytes() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmHWM:", 0) == 0) return std::stoull(line.substr(6)) * 1024;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

}  // namespace bench
