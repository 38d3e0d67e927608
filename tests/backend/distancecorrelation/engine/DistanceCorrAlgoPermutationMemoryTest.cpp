// Memory of the permutation test: 8 bytes per permutation (the statistics)
// and a constant beyond them, checked by running the engine in a child
// process whose address space is limited to what it has plus the statistics
// plus a fixed margin; and a count whose statistics cannot be allocated at
// all ends the run cleanly with status 1.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "EngineTestSettings.h"
#include "Sanitizers.h"


namespace {

constexpr std::uint64_t kMargin = 48ull << 20;  // the constant part, generously

std::uint64_t addressSpaceBytes() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmSize:", 0) == 0) return std::stoull(line.substr(7)) * 1024;
    }
    return 0;
}

std::vector<std::vector<double>> columns(std::size_t cases) {
    std::mt19937 rng(12);
    std::normal_distribution<double> normal(0.0, 1.0);
    std::vector<std::vector<double>> data(2, std::vector<double>(cases));
    for (std::size_t c = 0; c < cases; ++c) {
        data[0][c] = normal(rng);
        data[1][c] = data[0][c] * data[0][c] + normal(rng);
    }
    return data;
}

// Runs the engine in a child limited to its present address space plus
// extraBytes; returns start()'s status, or -1 if the child died otherwise.
int statusUnderLimit(std::size_t cases, double permutations, std::uint64_t extraBytes,
                     DistanceCorrAlgo::PermutationStatistics how = DistanceCorrAlgo::PermutationStatistics::Fast) {
    const pid_t child = fork();
    if (child < 0) return -1;
    if (child == 0) {
        EngineRun run(columns(cases));
        run.settings.criteria().set_permEnabled(true);
        run.settings.criteria().set_permSeed(3);
        run.settings.criteria().set_permMaxIterations(permutations);
        run.algo.setPermutationStatistics(how);
        const rlimit limit{addressSpaceBytes() + extraBytes, RLIM_INFINITY};
        if (setrlimit(RLIMIT_AS, &limit) != 0) _exit(90);
        _exit(run.algo.start());
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

#ifdef DC_ADDRESS_SANITIZER
#define DC_SKIP_UNDER_ASAN() \
    GTEST_SKIP() << "an address-space limit and AddressSanitizer's shadow memory exclude each other"
#else
#define DC_SKIP_UNDER_ASAN() (void)0
#endif

TEST(DistanceCorrAlgoPermutationMemory, FewCasesNeedEightBytesPerPermutation) {
    DC_SKIP_UNDER_ASAN();
    // Four million permutations of 5 cases (the fused recipe): 32 MB of
    // statistics; at 16 bytes per permutation the run would not fit.
    const double permutations = 4e6;
    EXPECT_EQ(statusUnderLimit(5, permutations, 8 * 4000000ull + kMargin), 0);
    EXPECT_NE(statusUnderLimit(5, permutations, 8 * 4000000ull / 4), 0);  // the limit bites
}

TEST(DistanceCorrAlgoPermutationMemory, KernelPathNeedsEightBytesPerPermutation) {
    DC_SKIP_UNDER_ASAN();
    // The O(n log n) kernel and the selection from approximate statistics.
    const double permutations = 5e5;
    EXPECT_EQ(
        statusUnderLimit(40, permutations, 8 * 500000ull + kMargin, DistanceCorrAlgo::PermutationStatistics::Kernel),
        0);
}

TEST(DistanceCorrAlgoPermutationMemory, StatisticsThatCannotBeAllocatedEndTheRunWithStatusOne) {
    DC_SKIP_UNDER_ASAN();
    // 1e11 permutations need 800 GB of statistics.
    EXPECT_EQ(statusUnderLimit(10, 1e11, kMargin), 1);
    EXPECT_EQ(statusUnderLimit(40, 1e11, kMargin, DistanceCorrAlgo::PermutationStatistics::Kernel), 1);
}

}  // namespace
