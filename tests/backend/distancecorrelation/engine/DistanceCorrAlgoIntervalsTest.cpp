// Fisher-z confidence intervals and descriptive statistics of the engine.
// Expected bounds were worked out independently (Python's statistics.NormalDist
// for the quantile, math.tanh / math.log for the transform).
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "EngineTestSettings.h"

namespace {

// Runs the interval step for one observed correlation.
DistanceCorrResult intervalOf(double observed, std::uint64_t n, double ciLevel = 95.0) {
    EngineRun run;
    run.settings.criteria().set_ciLevel(ciLevel);
    run.results.resize(1);
    run.algo.computeConfidenceInterval({observed}, n);
    return run.results[0];
}

}  // namespace

TEST(DistanceCorrAlgoIntervals, CriticalValuesOfTheStandardNormal) {
    EngineRun run;
    EXPECT_NEAR(run.algo.inverse_normal_cdf(0.975), 1.959964, 1e-6);
    EXPECT_NEAR(run.algo.inverse_normal_cdf(0.95), 1.644854, 1e-6);
    EXPECT_EQ(run.algo.inverse_normal_cdf(0.5), 0.0);
}

TEST(DistanceCorrAlgoIntervals, QuantileAtProbabilityOneThrowsOverflow) {
    EngineRun run;
    EXPECT_THROW(run.algo.inverse_normal_cdf(1.0), std::overflow_error);
    run.settings.criteria().set_ciLevel(100.0);
    run.results.resize(1);
    EXPECT_THROW(run.algo.computeConfidenceInterval({0.5}, 10), std::overflow_error);
}

TEST(DistanceCorrAlgoIntervals, CiLevelHundredEndsTheRunWithStatusOne) {
    EngineRun run({{1, 2, 3, 4, 5}, {1, 2, 9, 4, 4}});
    run.settings.criteria().set_ciLevel(100.0);
    EXPECT_EQ(run.algo.start(), 1);
    // Records written before the failure stay; the status tells the caller.
    ASSERT_EQ(run.results.size(), 1u);
    EXPECT_EQ(run.results[0].ciUpper, 0.0);
}

TEST(DistanceCorrAlgoIntervals, ZeroCorrelationIsClampedFromBelow) {
    // r = 1e-8, se = 1/sqrt(7), upper = tanh(1e-8 + 1.959964/sqrt(7)) = 0.629626.
    const DistanceCorrResult r = intervalOf(0.0, 10);
    EXPECT_EQ(r.ciLower, 0.0);
    EXPECT_DOUBLE_EQ(r.ciUpper, 0.6296);
}

TEST(DistanceCorrAlgoIntervals, PerfectCorrelationIsClampedFromAbove) {
    // r = 0.99999999, z = 9.5570; lower tanh(8.8162) = 0.99999996 -> 1.0.
    const DistanceCorrResult r = intervalOf(1.0, 10);
    EXPECT_DOUBLE_EQ(r.ciUpper, 1.0);
    EXPECT_DOUBLE_EQ(r.ciLower, 1.0);
}

TEST(DistanceCorrAlgoIntervals, TypicalIntervals) {
    // n = 5: se = 1/sqrt(2); tanh(z -/+ 1.959964 se) = -0.6175 / 0.967452.
    const DistanceCorrResult a = intervalOf(0.58167, 5);
    EXPECT_EQ(a.ciLower, 0.0);
    EXPECT_DOUBLE_EQ(a.ciUpper, 0.9675);
    // 90%: n = 20, r = 0.3: tanh(z -/+ 1.644854/sqrt(17)) = -0.0892 / 0.609707.
    const DistanceCorrResult b = intervalOf(0.3, 20, 90.0);
    EXPECT_EQ(b.ciLower, 0.0);
    EXPECT_DOUBLE_EQ(b.ciUpper, 0.6097);
    // 95%, n = 50, r = 0.6: both bounds inside (0, 1).
    const double z = 0.5 * std::log(1.6 / 0.4);
    const double se = 1 / std::sqrt(47.0);
    const DistanceCorrResult c = intervalOf(0.6, 50);
    EXPECT_DOUBLE_EQ(c.ciLower, DistanceCorrAlgo::roundToPrecision(std::tanh(z - 1.959963984540054 * se), 4));
    EXPECT_DOUBLE_EQ(c.ciUpper, DistanceCorrAlgo::roundToPrecision(std::tanh(z + 1.959963984540054 * se), 4));
    EXPECT_GT(c.ciLower, 0.0);
}

TEST(DistanceCorrAlgoIntervals, ThreeCasesGiveTheWholeUnitInterval) {
    const DistanceCorrResult r = intervalOf(0.4, 3);
    EXPECT_EQ(r.ciLower, 0.0);
    EXPECT_EQ(r.ciUpper, 1.0);
}

TEST(DistanceCorrAlgoIntervals, TwoCasesCollapseOntoTheEstimate) {
    // n - 3 wraps to 2^64 - 1, so se is about 2.3e-10.
    const DistanceCorrResult r = intervalOf(0.5, 2);
    EXPECT_DOUBLE_EQ(r.ciLower, 0.5);
    EXPECT_DOUBLE_EQ(r.ciUpper, 0.5);
    const DistanceCorrResult zero = intervalOf(0.0, 2);
    EXPECT_EQ(zero.ciLower, 0.0);
    EXPECT_EQ(zero.ciUpper, 0.0);
}

TEST(DistanceCorrAlgoIntervals, CiLevelZeroCollapsesOntoTheEstimate) {
    const DistanceCorrResult r = intervalOf(0.58167, 30, 0.0);
    EXPECT_DOUBLE_EQ(r.ciLower, 0.5817);
    EXPECT_DOUBLE_EQ(r.ciUpper, 0.5817);
}

TEST(DistanceCorrAlgoIntervals, LengthMismatchChangesNothing) {
    EngineRun run;
    run.results.resize(2);
    run.results[0].ciLower = 7.0;
    run.algo.computeConfidenceInterval({0.5}, 10);
    EXPECT_EQ(run.results[0].ciLower, 7.0);
    EXPECT_EQ(run.results[1].ciUpper, 0.0);
}

TEST(DistanceCorrAlgoIntervals, EveryPairGetsItsOwnInterval) {
    EngineRun run;
    run.results.resize(3);
    run.algo.computeConfidenceInterval({0.0, 1.0, 0.58167}, 5);
    EXPECT_EQ(run.results[0].ciLower, 0.0);
    EXPECT_DOUBLE_EQ(run.results[1].ciUpper, 1.0);
    EXPECT_DOUBLE_EQ(run.results[2].ciUpper, 0.9675);
}

TEST(DistanceCorrAlgoIntervals, DescriptiveRecordOfRawValues) {
    EngineRun run({{2, 4, 4, 4, 5, 5, 7, 9}, {-1, 0.5, 3, 8, 2, 2, 2, 1}});
    run.algo.computeDescriptiveStatistics(run.settings.globalSettings().getGlobalData(), 8);
    ASSERT_EQ(run.descriptives.size(), 2u);
    const DistanceCorrDescriptiveResult& d = run.descriptives[0];
    EXPECT_EQ(d.n, 8u);
    EXPECT_EQ(d.varName, "V1");
    EXPECT_EQ(d.varLabel, "Label V1");
    EXPECT_DOUBLE_EQ(d.mean, 5.0);
    EXPECT_DOUBLE_EQ(d.stdDev, 2.1381);  // sqrt(32 / 7) = 2.13809
    EXPECT_EQ(d.minimum, 2.0);
    EXPECT_EQ(d.maximum, 9.0);
    EXPECT_EQ(d.values, run.settings.globalSettings().getGlobalData()[0]);
    EXPECT_EQ(run.descriptives[1].minimum, -1.0);
    EXPECT_EQ(run.descriptives[1].maximum, 8.0);
    EXPECT_DOUBLE_EQ(run.descriptives[1].mean, 2.1875);
    EXPECT_TRUE(d.distanceMatrix.empty());
    EXPECT_EQ(d.distVariance, 0.0);
}

TEST(DistanceCorrAlgoIntervals, StandardDeviationIsTakenAboutTheRoundedMean) {
    // Three equal values 0.123456: the mean rounds to 0.1235, so the spread
    // about it is sqrt(3 * 0.000044^2 / 2) = 0.0000539 -> 0.0001, not 0.
    EngineRun run({{0.123456, 0.123456, 0.123456}, {1, 2, 3}});
    run.algo.computeDescriptiveStatistics(run.settings.globalSettings().getGlobalData(), 3);
    EXPECT_DOUBLE_EQ(run.descriptives[0].mean, 0.1235);
    EXPECT_DOUBLE_EQ(run.descriptives[0].stdDev, 0.0001);
}

TEST(DistanceCorrAlgoIntervals, EmptyColumnKeepsInitialMinimumAndMaximum) {
    EngineRun run({{}, {}});
    run.algo.computeDescriptiveStatistics(run.settings.globalSettings().getGlobalData(), 5);
    ASSERT_EQ(run.descriptives.size(), 2u);
    EXPECT_EQ(run.descriptives[0].n, 5u);  // the count passed in, not the length
    EXPECT_EQ(run.descriptives[0].mean, 0.0);
    EXPECT_EQ(run.descriptives[0].stdDev, 0.0);
    EXPECT_EQ(run.descriptives[0].minimum, 0.0);
    EXPECT_EQ(run.descriptives[0].maximum, 0.0);
}

TEST(DistanceCorrAlgoIntervals, NamesLabelsAndColumnsMustAgree) {
    EngineRun run({{1, 2}, {3, 4}});
    run.settings.global().setGlobalVarLabels({"only one"});
    try {
        run.algo.computeDescriptiveStatistics(run.settings.globalSettings().getGlobalData(), 2);
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Invalid input size to compute descriptive data");
    }
    EXPECT_TRUE(run.descriptives.empty());

    EngineRun fewerColumns({{1, 2}, {3, 4}});
    EXPECT_THROW(fewerColumns.algo.computeDescriptiveStatistics({{1, 2}}, 2), std::runtime_error);
}
