// The memory guard of the matrix permutation test: sizes, the 80% rule, the
// message, and a refusal before anything is computed.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "DependenceAnalysis.h"
#include "DependenceMemoryGuard.h"

namespace {

TEST(DependenceMemoryGuardTest, SizesAndLimit) {
    EXPECT_EQ(DependenceMemoryGuard::matrixBytes(1000, 2), 16000000u);
    EXPECT_EQ(DependenceMemoryGuard::matrixBytes(std::numeric_limits<std::size_t>::max(), 3),
              std::numeric_limits<std::uint64_t>::max());
    EXPECT_TRUE(DependenceMemoryGuard::fits(800, 1000));
    EXPECT_FALSE(DependenceMemoryGuard::fits(801, 1000));
    EXPECT_GT(DependenceMemoryGuard::availableBytes(), 0u);
}

TEST(DependenceMemoryGuardTest, MessageSaysWhatIsNeeded) {
    EXPECT_EQ(DependenceMemoryGuard::refusal("(a, b) vs. (c)", 20000, 2, 4000ull << 20),
              "The permutation test of (a, b) vs. (c) needs 2 matrices of 20000 x 20000 distances (6104 MB), more "
              "than 80% of the 4000 MB of memory available. Use fewer cases, or TEST TTEST or TEST NONE, which need "
              "no matrices.");
}

TEST(DependenceMemoryGuardTest, RefusesBeforeComputing) {
    // 200,000 cases: three matrices of partial dCor take 960 GB.
    const std::size_t n = 200000;
    DependenceSettings s;
    s.variables = {{"x", std::vector<double>(n, 1.0)}, {"y", std::vector<double>(n, 2.0)}};
    s.control = {{"z", std::vector<double>(n, 3.0)}};
    s.test = DependenceTest::Permutation;
    std::vector<DependenceResult> results;
    DependenceAnalysis analysis(s, results);
    EXPECT_EQ(analysis.start(), 1u);
    EXPECT_TRUE(results.empty());
    // The O(n log n) path needs no matrices: the same pair without CONTROL runs.
    s.control.clear();
    s.statistic = DependenceStatistic::V;
    s.replicates = 1;
    DependenceAnalysis pair(s, results);
    EXPECT_EQ(pair.start(), 0u);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].n, n);
}

}  // namespace
