// Statistics that tie (with each other or with the observed value) are
// settled by the matrix recipe, so that the p-value and the interval read from
// the partially ordered vector are those of the matrix recipe's values.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "DistanceCorrPermutationKernel.h"
#include "LiteralPermutationRecipe.h"
#include "PermutationTestData.h"

namespace {

using permdata::Kind;
constexpr double kTolerance = DistanceCorrPermutationKernel::kTieTolerance;

std::size_t settle(std::vector<double>& stats, std::vector<char>& exact, double observed, double alpha,
                   const std::vector<double>& truth) {
    const literal::Selection s = literal::selection(alpha, stats.size());
    return DistanceCorrPermutationKernel::settleTies(stats, exact, observed, s.low, s.high, kTolerance,
                                                     [&](std::size_t t) { return truth[t]; });
}

TEST(DistanceCorrPermutationTies, SeparatedStatisticsNeedNoRecomputation) {
    std::vector<double> stats(200);
    for (std::size_t t = 0; t < stats.size(); ++t) stats[t] = 0.001 * static_cast<double>(t);
    std::shuffle(stats.begin(), stats.end(), std::mt19937(4));
    const std::vector<double> before = stats;
    std::vector<char> exact(stats.size(), 0);
    EXPECT_EQ(settle(stats, exact, 0.0905, 0.05, stats), 0u);
    EXPECT_EQ(stats, before);
}

TEST(DistanceCorrPermutationTies, StatisticAtTheObservedValueIsRecomputed) {
    // Position 7 sits 1e-13 above the observed value; its recipe value sits
    // just below, so it must not be counted.
    std::vector<double> stats(100);
    for (std::size_t t = 0; t < stats.size(); ++t) stats[t] = 0.01 * static_cast<double>(t) + 0.003;
    const double observed = 0.5;
    stats[7] = observed + 1e-13;
    std::vector<double> truth = stats;
    truth[7] = observed - 1e-13;
    std::vector<char> exact(stats.size(), 0);
    EXPECT_EQ(settle(stats, exact, observed, 0.05, truth), 1u);
    EXPECT_EQ(stats[7], truth[7]);
    EXPECT_TRUE(exact[7]);
    EXPECT_EQ(literal::outcome(stats, observed, 0.05).pValue, literal::outcome(truth, observed, 0.05).pValue);
}

TEST(DistanceCorrPermutationTies, ExactStatisticsAreNeverRecomputed) {
    // A constant column: every statistic is an exact 0, as is the observed value.
    std::vector<double> stats(50, 0.0);
    std::vector<char> exact(stats.size(), 1);
    EXPECT_EQ(settle(stats, exact, 0.0, 0.05, std::vector<double>(50, 99.0)), 0u);
    EXPECT_EQ(stats, std::vector<double>(50, 0.0));
}

TEST(DistanceCorrPermutationTies, TiesInsideTheSelectionAreRecomputed) {
    // Three values with ten copies each, the copies differing only by noise:
    // the noise decides the selection's moves, so the copies are recomputed.
    std::mt19937 rng(8);
    std::uniform_real_distribution<double> noise(-1e-14, 1e-14);
    std::vector<double> fast, truth;
    for (int copy = 0; copy < 10; ++copy) {
        for (double v : {0.1, 0.2, 0.3}) {
            fast.push_back(v + noise(rng));
            truth.push_back(v + noise(rng));
        }
    }
    std::vector<double> stats = fast;
    std::vector<char> exact(stats.size(), 0);
    EXPECT_GT(settle(stats, exact, 0.25, 0.05, truth), 0u);
    const literal::Outcome settled = literal::outcome(stats, 0.25, 0.05);
    const literal::Outcome expected = literal::outcome(truth, 0.25, 0.05);
    EXPECT_EQ(settled.pValue, expected.pValue);
    EXPECT_EQ(settled.lower, expected.lower);
    EXPECT_EQ(settled.upper, expected.upper);
}

TEST(DistanceCorrPermutationTies, SelectionOutOfRangeSettlesEverything) {
    std::vector<double> stats{0.3, 0.1, 0.2};
    std::vector<char> exact{0, 1, 0};
    const std::vector<double> truth{0.31, 0.1, 0.21};
    EXPECT_EQ(DistanceCorrPermutationKernel::settleTies(stats, exact, 0.9, 5, 9, kTolerance,
                                                        [&](std::size_t t) { return truth[t]; }),
              2u);
    EXPECT_EQ(stats, truth);
}

// Tied and discrete data, where many permuted statistics are mathematically
// equal to each other and to the observed one: after settling, the kernel's
// statistics give the matrix recipe's p-value and bounds.
TEST(DistanceCorrPermutationTies, DiscreteDataGiveTheMatrixRecipeOutcome) {
    std::mt19937_64 rng(99);
    const std::vector<Kind> kinds{Kind::Binary, Kind::ThreeLevels, Kind::Tied};
    std::size_t recomputed = 0;
    std::size_t total = 0;
    for (Kind kx : kinds) {
        for (Kind ky : kinds) {
            for (std::size_t n : {6, 25, 60}) {
                const std::vector<double> x = permdata::column(kx, n, rng);
                const std::vector<double> y = permdata::related(x, ky, rng);
                const literal::Matrix a = literal::centred(x);
                DistanceCorrPermutationKernel kernel(x, y);
                ASSERT_TRUE(kernel.usable());
                std::vector<std::size_t> index(n);
                std::iota(index.begin(), index.end(), std::size_t{0});
                const double observed = literal::statistic(a, y);

                const int permutations = 400;
                std::mt19937 engine(static_cast<std::uint32_t>(rng()));
                std::vector<double> stats(permutations), truth(permutations);
                std::vector<char> exact(permutations);
                for (int t = 0; t < permutations; ++t) {
                    literal::shuffle(index, engine);
                    truth[t] = literal::statistic(a, literal::permuted(y, index));
                    const DistanceCorrPermutationKernel::Statistic s = kernel.evaluate(index);
                    stats[t] = s.value;
                    exact[t] = s.exact;
                    ASSERT_LE(std::fabs(s.value - truth[t]), 1e-12);
                }
                for (double alpha : {0.05, 0.1}) {
                    std::vector<double> settled = stats;
                    std::vector<char> settledExact = exact;
                    recomputed += settle(settled, settledExact, observed, alpha, truth);
                    total += permutations;
                    const literal::Outcome got = literal::outcome(settled, observed, alpha);
                    const literal::Outcome want = literal::outcome(truth, observed, alpha);
                    EXPECT_EQ(got.pValue, want.pValue) << n;
                    EXPECT_EQ(got.lower, want.lower) << n;
                    EXPECT_EQ(got.upper, want.upper) << n;
                }
            }
        }
    }
    RecordProperty("recomputed_share", std::to_string(static_cast<double>(recomputed) / total));
}

}  // namespace
