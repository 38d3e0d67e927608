// The permutation test: seeded shuffles, the fast pair statistic, p-values
// and percentile intervals.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "../perf/PermutationRecipeRun.h"
#include "EngineTestSettings.h"

namespace {

using Matrix = DistanceCorrAlgo::Matrix;

struct PairOutcome {
    double pValue;
    double lower;
    double upper;
};

double round4(double x) { return std::round(x * 10000.0) / 10000.0; }

// Percentile on a partially ordered vector, as the engine defines it.
double interpolate(const std::vector<double>& s, double percent, std::size_t k) {
    const double position = percent / 100 * static_cast<double>(s.size() - 1);
    if (position == static_cast<double>(k)) return s[k];
    return s[k] + (position - static_cast<double>(k)) * (s[k + 1] - s[k]);
}

PairOutcome referenceOutcome(double observed, std::vector<double> stats, double alpha) {
    if (stats.empty()) return {0.0, 0.0, 0.0};
    const std::size_t n = stats.size();
    const auto low = static_cast<std::size_t>(alpha / 2 * static_cast<double>(n - 1));
    const auto high = static_cast<std::size_t>((1 - alpha / 2) * static_cast<double>(n - 1));
    std::nth_element(stats.begin(), stats.begin() + static_cast<long>(low), stats.end());
    const double lower = interpolate(stats, 100 * alpha / 2, low);
    std::nth_element(stats.begin() + static_cast<long>(low), stats.begin() + static_cast<long>(high), stats.end());
    const double upper = interpolate(stats, (1 - alpha / 2) * 100, high);
    std::size_t count = 0;
    for (double s : stats) count += s >= observed ? 1 : 0;
    return {static_cast<double>(count) / static_cast<double>(n), lower, upper};
}

// The permutation test written the literal way: every pair's N * (n - 1)
// random numbers are drawn up front, pair after pair, before any shuffle.
std::vector<PairOutcome> referencePermutationTest(const DistanceCorrAlgo& algo, const Matrix& data,
                                                  const std::vector<double>& observed,
                                                  const std::vector<Matrix>& centered, double seed, double iterations,
                                                  double alpha) {
    const auto N = static_cast<std::uint64_t>(iterations);
    const std::size_t p = data.size();
    const std::size_t n = data[0].size();
    std::vector<std::pair<std::size_t, std::size_t>> pairs;
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = i + 1; j < p; ++j) pairs.emplace_back(i, j);
    }
    std::mt19937 engine(static_cast<std::uint32_t>(static_cast<std::uint64_t>(seed)));
    std::vector<std::vector<std::uint32_t>> numbers(pairs.size());
    for (auto& forPair : numbers) {
        forPair.reserve(N * (n - 1));
        for (std::uint64_t t = 0; t < N; ++t) {
            for (std::size_t s = 0; s + 1 < n; ++s) forPair.push_back(static_cast<std::uint32_t>(engine()));
        }
    }

    std::vector<PairOutcome> outcomes;
    Matrix distance(n, std::vector<double>(n));
    Matrix centeredY(n, std::vector<double>(n));
    std::vector<double> rowMeans(n);
    std::vector<double> colMeans(n);
    for (std::size_t k = 0; k < pairs.size(); ++k) {
        const auto [i, j] = pairs[k];
        std::size_t c = 0;
        std::vector<double> stats(N);
        for (std::uint64_t t = 0; t < N; ++t) {
            std::vector<std::size_t> index(n);
            std::iota(index.begin(), index.end(), std::size_t{0});
            for (std::size_t m = n - 1; m >= 1; --m) std::swap(index[m], index[numbers[k][c++] % (m + 1)]);
            std::vector<double> permuted(n);
            for (std::size_t u = 0; u < n; ++u) permuted[u] = data[j][index[u]];
            stats[t] = algo.computeDistanceCorrelation(centered[i], permuted, distance, rowMeans, colMeans, centeredY);
        }
        const PairOutcome o = referenceOutcome(observed[k], stats, alpha);
        outcomes.push_back({round4(o.pValue), round4(o.lower), round4(o.upper)});
    }
    return outcomes;
}

// Centred matrices and unrounded dCor of some columns, from the engine's step-by-step operations.
using permrun::observe;

Matrix sampleData(std::uint32_t seed, std::size_t variables, std::size_t cases) {
    std::mt19937 rng(seed);
    std::normal_distribution<double> normal(0.0, 1.0);
    Matrix data(variables, std::vector<double>(cases));
    for (std::size_t c = 0; c < cases; ++c) {
        data[0][c] = normal(rng);
        for (std::size_t v = 1; v < variables; ++v) data[v][c] = 0.6 * data[0][c] * data[0][c] + normal(rng);
    }
    return data;
}

EngineRun* permutationRun(EngineRun& run, double seed, double iterations, double alpha = 0.05) {
    run.settings.criteria().set_permEnabled(true);
    run.settings.criteria().set_permSeed(seed);
    run.settings.criteria().set_permMaxIterations(iterations);
    run.settings.criteria().set_permSigLevel(alpha);
    return &run;
}

}  // namespace

TEST(DistanceCorrAlgoPermutation, MatchesTheUpFrontDrawForEveryPair) {
    const Matrix data = sampleData(5, 3, 12);
    EngineRun run(data);
    permutationRun(run, 2e6 + 12345, 200, 0.1);
    ASSERT_EQ(run.algo.start(), 0);
    ASSERT_EQ(run.results.size(), 3u);

    std::vector<Matrix> centered;
    std::vector<double> dCor;
    observe(run.algo, data, centered, dCor);
    const std::vector<PairOutcome> expected =
        referencePermutationTest(run.algo, data, dCor, centered, 2e6 + 12345, 200, 0.1);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(run.results[k].pValue, expected[k].pValue) << "pair " << k;
        EXPECT_EQ(run.results[k].permLower, expected[k].lower) << "pair " << k;
        EXPECT_EQ(run.results[k].permUpper, expected[k].upper) << "pair " << k;
    }
    // The test must not be vacuous: the pairs differ from each other.
    EXPECT_NE(run.results[0].permUpper, 0.0);
    EXPECT_TRUE(run.results[0].pValue != run.results[1].pValue || run.results[0].permUpper != run.results[1].permUpper);
}

TEST(DistanceCorrAlgoPermutation, PairsInOrderWithTheLaterVariableShuffled) {
    // Shuffling the earlier variable would consume the same stream but give
    // other statistics; the reference shuffles the later one.
    const Matrix data = sampleData(11, 3, 9);
    EngineRun run(data);
    permutationRun(run, 77, 60, 0.2);
    ASSERT_EQ(run.algo.start(), 0);
    EXPECT_EQ(run.results[0].varName1 + run.results[0].varName2, "V1V2");
    EXPECT_EQ(run.results[1].varName1 + run.results[1].varName2, "V1V3");
    EXPECT_EQ(run.results[2].varName1 + run.results[2].varName2, "V2V3");

    std::vector<Matrix> centered;
    std::vector<double> dCor;
    observe(run.algo, data, centered, dCor);
    const std::vector<PairOutcome> expected = referencePermutationTest(run.algo, data, dCor, centered, 77, 60, 0.2);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(run.results[k].permLower, expected[k].lower) << "pair " << k;
        EXPECT_EQ(run.results[k].permUpper, expected[k].upper) << "pair " << k;
    }
}

TEST(DistanceCorrAlgoPermutation, SameSeedGivesByteIdenticalResults) {
    const Matrix data = sampleData(3, 2, 15);
    EngineRun first(data);
    EngineRun second(data);
    permutationRun(first, 424242, 300);
    permutationRun(second, 424242, 300);
    ASSERT_EQ(first.algo.start(), 0);
    ASSERT_EQ(second.algo.start(), 0);
    const DistanceCorrResult& a = first.results[0];
    const DistanceCorrResult& b = second.results[0];
    EXPECT_EQ(std::memcmp(&a.pValue, &b.pValue, sizeof(double)), 0);
    EXPECT_EQ(std::memcmp(&a.permLower, &b.permLower, sizeof(double)), 0);
    EXPECT_EQ(std::memcmp(&a.permUpper, &b.permUpper, sizeof(double)), 0);
}

TEST(DistanceCorrAlgoPermutation, OnlyTheLowThirtyTwoBitsOfTheSeedCount) {
    const Matrix data = sampleData(8, 2, 10);
    EngineRun low(data);
    EngineRun high(data);
    EngineRun other(data);
    permutationRun(low, 2e6, 400);
    permutationRun(high, 2e6 + 4294967296.0 * 3, 400);
    permutationRun(other, 2e6 + 1, 400);
    ASSERT_EQ(low.algo.start(), 0);
    ASSERT_EQ(high.algo.start(), 0);
    ASSERT_EQ(other.algo.start(), 0);
    EXPECT_EQ(low.results[0].pValue, high.results[0].pValue);
    EXPECT_EQ(low.results[0].permLower, high.results[0].permLower);
    EXPECT_EQ(low.results[0].permUpper, high.results[0].permUpper);
    // A different low part gives a different stream.
    EXPECT_TRUE(low.results[0].pValue != other.results[0].pValue ||
                low.results[0].permLower != other.results[0].permLower ||
                low.results[0].permUpper != other.results[0].permUpper);
}

TEST(DistanceCorrAlgoPermutation, NoPermutationsGiveZeroPValueAndBounds) {
    const Matrix data = sampleData(2, 2, 6);
    EngineRun run(data);
    permutationRun(run, 1, 0.9);  // truncates to 0 permutations
    run.results.resize(1);
    run.results[0].pValue = 9.0;
    run.results[0].permLower = 9.0;
    run.results[0].permUpper = 9.0;
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    observe(run.algo, data, centered, dCor);
    run.algo.permutationTest(data, dCor, centered);
    EXPECT_EQ(run.results[0].pValue, 0.0);
    EXPECT_EQ(run.results[0].permLower, 0.0);
    EXPECT_EQ(run.results[0].permUpper, 0.0);

    std::vector<double> none;
    std::pair<double, double> interval(7.0, 8.0);
    EXPECT_EQ(run.algo.computeConfidenceIntervalandPValue(0.5, none, interval), 0.0);
    EXPECT_EQ(interval, std::make_pair(7.0, 8.0));
}

TEST(DistanceCorrAlgoPermutation, OneCaseGivesZeroStatisticsAndPValueOne) {
    const Matrix data{{5}, {7}};
    EngineRun run(data);
    permutationRun(run, 3, 50);
    run.results.resize(1);
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    observe(run.algo, data, centered, dCor);
    ASSERT_EQ(dCor[0], 0.0);
    run.algo.permutationTest(data, dCor, centered);
    EXPECT_EQ(run.results[0].pValue, 1.0);
    EXPECT_EQ(run.results[0].permLower, 0.0);
    EXPECT_EQ(run.results[0].permUpper, 0.0);
}

TEST(DistanceCorrAlgoPermutation, ConstantShuffledColumnGivesZeroStatistics) {
    EngineRun run;
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    observe(run.algo, {{1, 4, 2, 8, 5}, {3, 3, 3, 3, 3}}, centered, dCor);
    Matrix distance;
    Matrix centeredY;
    std::vector<double> rowMeans;
    std::vector<double> colMeans;
    EXPECT_EQ(
        run.algo.computeDistanceCorrelation(centered[0], {3, 3, 3, 3, 3}, distance, rowMeans, colMeans, centeredY),
        0.0);

    const Matrix data{{1, 4, 2, 8, 5}, {3, 3, 3, 3, 3}};
    EngineRun full(data);
    permutationRun(full, 99, 100);
    ASSERT_EQ(full.algo.start(), 0);
    EXPECT_EQ(full.results[0].pValue, 1.0);  // every 0 >= observed 0
    EXPECT_EQ(full.results[0].permLower, 0.0);
    EXPECT_EQ(full.results[0].permUpper, 0.0);
}

TEST(DistanceCorrAlgoPermutation, NaNRatioGivesPermutedStatisticsOfOne) {
    // LOG of -2 is NaN. The observed dCor skips the division and is 0; the
    // permuted statistic divides, and its clamp (first the smaller of 1 and
    // r, then the larger of 0 and that) turns the NaN ratio into 1. So every
    // permuted statistic is 1 >= 0: p-value 1, interval [1, 1].
    EngineRun run({{0, 1, -2, 3, 4, 2}, {1, 2, 3, 4, 5, 7}});
    run.settings.criteria().set_normalization("LOG");
    permutationRun(run, 17, 50);
    ASSERT_EQ(run.algo.start(), 0);
    EXPECT_EQ(run.results[0].dCor, 0.0);
    EXPECT_EQ(run.results[0].permLower, 1.0);
    EXPECT_EQ(run.results[0].permUpper, 1.0);
    EXPECT_EQ(run.results[0].pValue, 1.0);
}

TEST(DistanceCorrAlgoPermutation, FastStatisticEqualsTheObservedOne) {
    EngineRun run;
    for (std::uint32_t seed : {1u, 2u, 3u}) {
        const Matrix data = sampleData(seed, 2, 10 + seed * 13);
        std::vector<Matrix> centered;
        std::vector<double> dCor;
        observe(run.algo, data, centered, dCor);
        const std::size_t n = data[0].size();
        DistanceCorrAlgo::ThreadBuffers b{Matrix(n, std::vector<double>(n)), std::vector<double>(n),
                                          std::vector<double>(n), Matrix(n, std::vector<double>(n))};
        const double fast = run.algo.computeDistanceCorrelation(centered[0], data[1], b.distanceMatrix, b.rowMeans,
                                                                b.colMeans, b.centeredMatrix);
        EXPECT_NEAR(fast, dCor[0], 1e-12);
        EXPECT_EQ(b.centeredMatrix, centered[1]);
    }
    // x = (1..5), y = (1, 2, 9, 4, 4): 0.5816750507 by hand.
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    observe(run.algo, {{1, 2, 3, 4, 5}, {0, 0, 0, 0, 0}}, centered, dCor);
    Matrix d;
    Matrix c;
    std::vector<double> r;
    std::vector<double> k;
    EXPECT_NEAR(run.algo.computeDistanceCorrelation(centered[0], {1, 2, 9, 4, 4}, d, r, k, c), 0.5816750507, 1e-9);
}

TEST(DistanceCorrAlgoPermutation, FastStatisticTreatsVarianceOfEpsilonAsZero) {
    EngineRun run;
    // y = (0, 1) centres to 0.5 * [[-1, 1], [1, -1]]; centredX proportional
    // to it with dVarX = 4 * (1e-4)^2 / 4 = 1e-8 exactly.
    const Matrix atEpsilon{{-1e-4, 1e-4}, {1e-4, -1e-4}};
    double sum = 0.0;
    for (const auto& row : atEpsilon) {
        for (double a : row) sum += a * a;
    }
    ASSERT_EQ(sum / 4.0, 1e-8);
    Matrix d;
    Matrix c;
    std::vector<double> r;
    std::vector<double> k;
    EXPECT_EQ(run.algo.computeDistanceCorrelation(atEpsilon, {0, 1}, d, r, k, c), 0.0);
    const Matrix above{{-1.001e-4, 1.001e-4}, {1.001e-4, -1.001e-4}};
    EXPECT_DOUBLE_EQ(run.algo.computeDistanceCorrelation(above, {0, 1}, d, r, k, c), 1.0);
}

TEST(DistanceCorrAlgoPermutation, PercentileIndicesForAlphaFivePercentAndThousandPermutations) {
    EngineRun run;
    run.settings.criteria().set_permSigLevel(0.05);
    std::mt19937 rng(31);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::vector<double> stats(1000);
    for (double& s : stats) s = uniform(rng);

    // lowIndex = trunc(0.025 * 999) = 24, highIndex = trunc(0.975 * 999) = 974.
    std::vector<double> s = stats;
    std::nth_element(s.begin(), s.begin() + 24, s.end());
    const double lower = s[24] + 0.975 * (s[25] - s[24]);
    const double lowOrderStatistic = s[24];
    std::nth_element(s.begin() + 24, s.begin() + 974, s.end());
    const double upper = s[974] + (0.975 * 999 - 974) * (s[975] - s[974]);

    std::vector<double> engineStats = stats;
    std::pair<double, double> interval(0.0, 0.0);
    const double p = run.algo.computeConfidenceIntervalandPValue(0.5, engineStats, interval);
    EXPECT_NEAR(interval.first, lower, 1e-15);
    EXPECT_NEAR(interval.second, upper, 1e-15);
    EXPECT_EQ(engineStats, s);  // reordered in place by the two selections
    const auto atLeast = std::count_if(stats.begin(), stats.end(), [](double v) { return v >= 0.5; });
    EXPECT_EQ(p, static_cast<double>(atLeast) / 1000.0);

    std::vector<double> sorted = stats;
    std::sort(sorted.begin(), sorted.end());
    // The selected positions hold the true order statistics (the second
    // selection may move the element at 24 again).
    EXPECT_EQ(lowOrderStatistic, sorted[24]);
    EXPECT_EQ(s[974], sorted[974]);
}

TEST(DistanceCorrAlgoPermutation, PValueIsAnUnsmoothedShare) {
    EngineRun run;
    run.settings.criteria().set_permSigLevel(0.05);
    std::pair<double, double> interval(0.0, 0.0);
    std::vector<double> stats{0.1, 0.2, 0.3, 0.4};
    EXPECT_EQ(run.algo.computeConfidenceIntervalandPValue(0.95, stats, interval), 0.0);
    stats = {0.1, 0.2, 0.3, 0.4};
    EXPECT_EQ(run.algo.computeConfidenceIntervalandPValue(0.3, stats, interval), 0.5);
    stats = {0.4, 0.4, 0.4};
    EXPECT_EQ(run.algo.computeConfidenceIntervalandPValue(0.4, stats, interval), 1.0);
}

TEST(DistanceCorrAlgoPermutation, PercentileInterpolation) {
    EngineRun run;
    EXPECT_EQ(run.algo.calculatePercentile({}, 50.0), 0.0);
    EXPECT_EQ(run.algo.calculatePercentile({3.5}, 10.0), 3.5);
    EXPECT_DOUBLE_EQ(run.algo.calculatePercentile({0, 10, 20, 30, 40}, 50.0), 20.0);
    EXPECT_DOUBLE_EQ(run.algo.calculatePercentile({0, 10, 20, 30, 40}, 60.0), 24.0);
    // A given index is trusted: the neighbour is used as it stands.
    EXPECT_DOUBLE_EQ(run.algo.calculatePercentile({0, 10, 50, 30, 40}, 60.0, 2), 50.0 + 0.4 * (30.0 - 50.0));
}

TEST(DistanceCorrAlgoPermutation, FailuresAndTheirTexts) {
    const Matrix data = sampleData(4, 3, 5);
    EngineRun run(data);
    permutationRun(run, 1, 10);
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    observe(run.algo, data, centered, dCor);
    run.results.resize(2);  // one short
    try {
        run.algo.permutationTest(data, dCor, centered);
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Size mismatch in permutation test");
    }
    run.results.resize(3);
    EXPECT_THROW(run.algo.permutationTest(data, {0.1, 0.2}, centered), std::runtime_error);
    EXPECT_EQ(run.results[0].pValue, 0.0);  // nothing written

    Matrix d;
    Matrix c;
    std::vector<double> r;
    std::vector<double> k;
    try {
        run.algo.computeDistanceCorrelation(centered[0], {}, d, r, k, c);
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Insufficient data points");
    }
}

TEST(DistanceCorrAlgoPermutation, OnlyPValueAndBoundsAreWritten) {
    const Matrix data = sampleData(6, 2, 8);
    EngineRun off(data);
    EngineRun on(data);
    permutationRun(on, 5, 100);
    ASSERT_EQ(off.algo.start(), 0);
    ASSERT_EQ(on.algo.start(), 0);
    EXPECT_EQ(off.results[0].pValue, 0.0);
    EXPECT_EQ(off.results[0].permLower, 0.0);
    EXPECT_EQ(off.results[0].permUpper, 0.0);
    EXPECT_EQ(on.results[0].dCor, off.results[0].dCor);
    EXPECT_EQ(on.results[0].dCov, off.results[0].dCov);
    EXPECT_EQ(on.results[0].ciLower, off.results[0].ciLower);
    EXPECT_EQ(on.results[0].ciUpper, off.results[0].ciUpper);
    EXPECT_GT(on.results[0].permUpper, 0.0);
}

TEST(DistanceCorrAlgoPermutation, ThreadBuffersAndWorkerCap) {
    EngineRun run({{1, 2, 3, 4}, {2, 1, 4, 3}});
    permutationRun(run, 1, 20);
    ASSERT_EQ(run.algo.start(), 0);
    // The per-thread instance is declared but never used.
    EXPECT_TRUE(DistanceCorrAlgo::threadBuffers.distanceMatrix.empty());
    EXPECT_TRUE(DistanceCorrAlgo::threadBuffers.rowMeans.empty());
    EXPECT_TRUE(DistanceCorrAlgo::threadBuffers.colMeans.empty());
    EXPECT_TRUE(DistanceCorrAlgo::threadBuffers.centeredMatrix.empty());
    EXPECT_EQ(run.algo.get_optimal_threads(8), 1);
    EXPECT_EQ(run.algo.get_optimal_threads(1), 1);
    EXPECT_EQ(run.algo.get_optimal_threads(0), 0);
}
