// Benchmark program for the DISTANCE CORRELATION engine. Each call runs one
// workload in its own process, so that the peak memory it reports belongs to
// that workload alone; bench/run.sh drives it and prints the table.
//
//   DistanceCorrBench data WORKLOAD FILE.csv      write the workload's data
//   DistanceCorrBench run WORKLOAD [--literal] [--permutations N] [--threads N]
//   DistanceCorrBench measure COMMAND ARGS...     run a program, report its
//                                                 wall time, CPU time, peak memory
//
// Results are printed as key=value pairs on one line.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "runner/ProcedureServices.h"
#include "runner/ThreadWorkerPool.h"

namespace {

using bench::Clock;
using bench::Matrix;

struct Containers {
    std::vector<DistanceCorrResult> results;
    std::vector<DistanceCorrDescriptiveResult> descriptives;
    DistanceCorrCommonData common;
};

// The engine's stages up to the permutation test, in start()'s order; leaves
// the normalized data, centred matrices and unrounded dCor for the test.
struct Observed {
    Matrix data;
    std::vector<Matrix> centred;
    std::vector<double> dCor;
};

Observed observe(DistanceCorrAlgo& algo, Matrix data) {
    Observed o;
    algo.handleListwiseMissingData(data);
    const std::uint64_t n = data[0].size();
    algo.computeDescriptiveStatistics(data, n);
    algo.performNormalization(data);
    std::vector<Matrix> distances;
    algo.performEuclideanDistanceAnalysis(data, distances);
    algo.computeDistanceCorrelation(std::move(distances), o.centred, o.dCor);
    algo.computeConfidenceInterval(o.dCor, n);
    o.data = std::move(data);
    return o;
}

void print(const std::string& key, double value) { std::printf(" %s=%.6g", key.c_str(), value); }

int run(const bench::Workload& w, bool literal, std::uint64_t permutations, unsigned threads) {
    const Matrix data = bench::makeData(w);
    const double inputBytes = static_cast<double>(w.variables * w.cases * sizeof(double));
    const double guard = static_cast<double>(DistanceCorrAlgo::calculateMemoryEstimate(w.variables, w.cases, false));
    const auto how =
        literal ? DistanceCorrAlgo::PermutationStatistics::MatrixRecipe : DistanceCorrAlgo::PermutationStatistics::Fast;
    std::printf("workload=%s variables=%zu cases=%zu permutations=%llu literal=%d threads=%u", w.name.c_str(),
                w.variables, w.cases, static_cast<unsigned long long>(permutations), literal ? 1 : 0, threads);
    print("input_bytes", inputBytes);
    print("guard_bytes", guard);

    // The whole engine, as the procedure runs it.
    {
        bench::Settings settings(data, permutations);
        Containers c;
        DistanceCorrAlgo algo(settings, c.results, c.descriptives, c.common);
        algo.setPermutationStatistics(how);
        const Clock clock;
        const int status = algo.start();
        print("engine_cpu", clock.cpuElapsed());
        print("engine_wall", clock.wallElapsed());
        print("engine_status", status);
        if (status == 0 && !c.results.empty()) {
            print("dcor_first_pair", c.results[0].dCor);
            print("p_first_pair", c.results[0].pValue);
        }
    }
    // The permutation stage alone, on the observed stages' output.
    if (permutations > 0) {
        bench::Settings settings(data, permutations);
        Containers c;
        DistanceCorrAlgo algo(settings, c.results, c.descriptives, c.common);
        algo.setPermutationStatistics(how);
        const Clock observedClock;
        const Observed o = observe(algo, data);
        print("observed_cpu", observedClock.cpuElapsed());
        const Clock clock;
        algo.permutationTest(o.data, o.dCor, o.centred);
        const double cpu = clock.cpuElapsed();
        const double pairs = static_cast<double>(c.results.size());
        print("perm_cpu", cpu);
        print("perm_wall", clock.wallElapsed());
        print("per_pair_perm_us", 1e6 * cpu / (pairs * static_cast<double>(permutations)));
        print("p_first_pair_staged", c.results[0].pValue);
        print("perm_lower_first_pair", c.results[0].permLower);
        print("perm_upper_first_pair", c.results[0].permUpper);
    }
    print("peak_bytes", static_cast<double>(bench::peakResidentBytes()));
    std::printf("\n");
    return 0;
}

int measure(char** argv) {
    const Clock clock;
    const pid_t child = fork();
    if (child < 0) {
        std::perror("fork");
        return 2;
    }
    if (child == 0) {
        execvp(argv[0], argv);
        std::fprintf(stderr, "cannot run %s: %s\n", argv[0], std::strerror(errno));
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0) {
        if (errno != EINTR) {
            std::perror("wait4");
            return 2;
        }
    }
    const double wall = clock.wallElapsed();
    const double cpu = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                       1e-6 * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
    std::printf("exit=%d", WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
    print("wall", wall);
    print("cpu", cpu);
    print("peak_bytes", static_cast<double>(usage.ru_maxrss) * 1024.0);
    std::printf("\n");
    return 0;
}

int usage() {
    std::cerr << "usage: DistanceCorrBench data WORKLOAD FILE.csv\n"
                 "       DistanceCorrBench run WORKLOAD [--literal] [--permutations N] [--threads N]\n"
                 "       DistanceCorrBench measure COMMAND [ARGS...]\n"
                 "workloads:";
    for (const bench::Workload& w : bench::workloads()) std::cerr << " " << w.name;
    std::cerr << "\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc < 3) return usage();
        const std::string command = argv[1];
        if (command == "measure") return measure(argv + 2);
        const bench::Workload& w = bench::workload(argv[2]);
        if (command == "data" && argc == 4) {
            bench::writeCsv(bench::makeData(w), argv[3]);
            return 0;
        }
        if (command != "run") return usage();
        bool literal = false;
        std::uint64_t permutations = w.permutations;
        unsigned threads = 1;
        for (int a = 3; a < argc; ++a) {
            const std::string option = argv[a];
            if (option == "--literal") {
                literal = true;
            } else if (option == "--permutations" && a + 1 < argc) {
                permutations = std::stoull(argv[++a]);
            } else if (option == "--threads" && a + 1 < argc) {
                threads = static_cast<unsigned>(std::stoul(argv[++a]));
            } else {
                return usage();
            }
        }
        // As distcorr --threads N: a pool of N workers, none for one.
        std::unique_ptr<host::ThreadWorkerPool> pool;
        if (threads > 1) pool = std::make_unique<host::ThreadWorkerPool>(threads);
        host::setWorkerPool(pool.get());
        const int status = run(w, literal, permutations, threads);
        host::setWorkerPool(nullptr);
        return status;
    } catch (const std::exception& e) {
        std::cerr << "DistanceCorrBench: " << e.what() << "\n";
        return 1;
    }
}
