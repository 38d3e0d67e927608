// The engine driver start(): stage order, memory guard, failure handling and
// the records it leaves behind.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "EngineTestSettings.h"
#include "HostSession.h"

namespace {

using Matrix = DistanceCorrAlgo::Matrix;
const double kMissing = std::numeric_limits<double>::lowest();
const char* const kMemoryWarning = "Insufficient memory for Distance Correlation.";

class DistanceCorrAlgoDriver : public ::testing::Test {
protected:
    void SetUp() override {
        host::HostSession::instance().setQuiet(true);
        host::HostSession::instance().beginCommand(host::CommandText{});
    }
    static const std::vector<host::HostMessage>& messages() { return host::HostSession::instance().messages(); }
};

Matrix ramp(std::size_t variables, std::size_t cases) {
    Matrix m(variables, std::vector<double>(cases));
    for (std::size_t v = 0; v < variables; ++v) {
        for (std::size_t c = 0; c < cases; ++c) m[v][c] = static_cast<double>((c * (v + 3)) % 11) + 0.5 * v;
    }
    return m;
}

}  // namespace

TEST_F(DistanceCorrAlgoDriver, EmptyVariableListGivesStatusOne) {
    EngineRun run;
    EXPECT_EQ(run.algo.start(), 1);
    EXPECT_TRUE(run.results.empty());
    EXPECT_TRUE(run.descriptives.empty());
    EXPECT_TRUE(messages().empty());
}

TEST_F(DistanceCorrAlgoDriver, EveryCaseMissingGivesStatusOneWithoutMessage) {
    EngineRun run({{kMissing, 2, 3}, {1, kMissing, kMissing}});
    EXPECT_EQ(run.algo.start(), 1);
    EXPECT_TRUE(run.results.empty());
    EXPECT_TRUE(run.descriptives.empty());
    EXPECT_TRUE(messages().empty());
}

TEST_F(DistanceCorrAlgoDriver, MemoryEstimateAtTheOneGibibyteBoundary) {
    // 2 variables x 2 matrices x N^2 x 8 bytes.
    EXPECT_EQ(DistanceCorrAlgo::calculateMemoryEstimate(2, 5792, false), 1073512448u);
    EXPECT_EQ(DistanceCorrAlgo::calculateMemoryEstimate(2, 5793, false), 1073883168u);
    EXPECT_EQ(DistanceCorrAlgo::calculateMemoryEstimate(2, 8192, false), 2147483648u);
    EXPECT_LE(DistanceCorrAlgo::calculateMemoryEstimate(2, 5792, false), DistanceCorrAlgo::kMemoryLimitBytes);
    EXPECT_GT(DistanceCorrAlgo::calculateMemoryEstimate(2, 5793, false), DistanceCorrAlgo::kMemoryLimitBytes);
    EXPECT_EQ(DistanceCorrAlgo::kMemoryLimitBytes, 1073741824u);
    // The limit itself is allowed (the test is "greater than"): 4 x 2 x 4096^2 x 8 = 2^30.
    EXPECT_EQ(DistanceCorrAlgo::calculateMemoryEstimate(4, 4096, false), DistanceCorrAlgo::kMemoryLimitBytes);
    EXPECT_FALSE(DistanceCorrAlgo::exceedsMemoryLimit(DistanceCorrAlgo::kMemoryLimitBytes));
    EXPECT_TRUE(DistanceCorrAlgo::exceedsMemoryLimit(DistanceCorrAlgo::kMemoryLimitBytes + 1));
    EXPECT_FALSE(DistanceCorrAlgo::exceedsMemoryLimit(DistanceCorrAlgo::calculateMemoryEstimate(2, 5792, false)));
    EXPECT_TRUE(DistanceCorrAlgo::exceedsMemoryLimit(DistanceCorrAlgo::calculateMemoryEstimate(2, 5793, false)));
}

TEST_F(DistanceCorrAlgoDriver, PermutationAddsOneMatrixPairWhenThereIsAPair) {
    EXPECT_EQ(DistanceCorrAlgo::calculateMemoryEstimate(2, 1000, true) -
                  DistanceCorrAlgo::calculateMemoryEstimate(2, 1000, false),
              1000u * 2 * 1000 * 8);
    EXPECT_EQ(DistanceCorrAlgo::calculateMemoryEstimate(30, 1000, true) -
                  DistanceCorrAlgo::calculateMemoryEstimate(30, 1000, false),
              1000u * 2 * 1000 * 8);
    EXPECT_EQ(DistanceCorrAlgo::calculateMemoryEstimate(1, 1000, true),
              DistanceCorrAlgo::calculateMemoryEstimate(1, 1000, false));
    // 48 N^2 > 2^30 from N = 4730 on; without the test that N is allowed.
    EXPECT_GT(DistanceCorrAlgo::calculateMemoryEstimate(2, 4730, true), DistanceCorrAlgo::kMemoryLimitBytes);
    EXPECT_LE(DistanceCorrAlgo::calculateMemoryEstimate(2, 4729, true), DistanceCorrAlgo::kMemoryLimitBytes);
    EXPECT_LE(DistanceCorrAlgo::calculateMemoryEstimate(2, 4730, false), DistanceCorrAlgo::kMemoryLimitBytes);
}

TEST_F(DistanceCorrAlgoDriver, TooManyCasesGiveTheWarningAndNothingElse) {
    for (std::size_t cases : {5793u, 8192u}) {
        host::HostSession::instance().beginCommand(host::CommandText{});
        EngineRun run(ramp(2, cases));
        EXPECT_EQ(run.algo.start(), 1);
        EXPECT_TRUE(run.results.empty());
        EXPECT_TRUE(run.descriptives.empty());
        ASSERT_EQ(messages().size(), 1u);
        EXPECT_EQ(messages()[0].level, host::MessageLevel::Warning);
        EXPECT_EQ(messages()[0].text, kMemoryWarning);
    }
}

TEST_F(DistanceCorrAlgoDriver, PermutationTestTipsTheGuard) {
    EngineRun run(ramp(2, 4730));
    run.settings.criteria().set_permEnabled(true);
    EXPECT_EQ(run.algo.start(), 1);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text, kMemoryWarning);
    EXPECT_TRUE(run.descriptives.empty());
}

TEST_F(DistanceCorrAlgoDriver, GuardCountsTheCasesLeftAfterDeletion) {
    Matrix data = ramp(2, 8192);
    for (std::size_t c = 10; c < 8192; ++c) data[1][c] = kMissing;  // 10 cases remain
    EngineRun run(data);
    EXPECT_EQ(run.algo.start(), 0);
    EXPECT_TRUE(messages().empty());
    ASSERT_EQ(run.descriptives.size(), 2u);
    EXPECT_EQ(run.descriptives[0].n, 10u);
}

TEST_F(DistanceCorrAlgoDriver, OneVariableOrMoreThanThirtyFailSilently) {
    for (std::size_t variables : {1u, 31u}) {
        EngineRun run(ramp(variables, 4));
        EXPECT_EQ(run.algo.start(), 1) << variables;
        EXPECT_TRUE(run.results.empty());
        EXPECT_TRUE(run.descriptives.empty());
    }
    EXPECT_TRUE(messages().empty());
}

TEST_F(DistanceCorrAlgoDriver, ThirtyVariablesAreAccepted) {
    EngineRun run(ramp(30, 5));
    EXPECT_EQ(run.algo.start(), 0);
    EXPECT_EQ(run.results.size(), 435u);
    EXPECT_EQ(run.descriptives.size(), 30u);
    EXPECT_EQ(run.results.back().varName1, "V29");
    EXPECT_EQ(run.results.back().varName2, "V30");
}

TEST_F(DistanceCorrAlgoDriver, CompleteRunFillsEveryRecord) {
    EngineRun run({{1, 2, 3, 4, 5}, {1, 2, 9, 4, 4}});
    EXPECT_EQ(run.algo.start(), 0);
    ASSERT_EQ(run.results.size(), 1u);
    ASSERT_EQ(run.descriptives.size(), 2u);
    const DistanceCorrResult& r = run.results[0];
    EXPECT_EQ(r.varName1, "V1");
    EXPECT_EQ(r.varName2, "V2");
    EXPECT_DOUBLE_EQ(r.dCov, 1.344);
    EXPECT_DOUBLE_EQ(r.dCor, 0.5817);
    // Fisher z of 0.581675 with n = 5: (max(0, -0.6175), 0.967452).
    EXPECT_EQ(r.ciLower, 0.0);
    EXPECT_DOUBLE_EQ(r.ciUpper, 0.9675);
    EXPECT_EQ(r.pValue, 0.0);
    EXPECT_DOUBLE_EQ(run.descriptives[0].distVariance, 1.216);
    EXPECT_DOUBLE_EQ(run.descriptives[1].distVariance, 4.3904);
    EXPECT_DOUBLE_EQ(run.descriptives[1].mean, 4.0);
    EXPECT_EQ(run.descriptives[1].maximum, 9.0);
    EXPECT_EQ(run.descriptives[0].distanceMatrix[0], (std::vector<double>{0, 1, 2, 3, 4}));
    EXPECT_TRUE(run.common.idValues.empty());
    EXPECT_TRUE(messages().empty());
}

TEST_F(DistanceCorrAlgoDriver, DescriptivesAreTakenBeforeNormalization) {
    EngineRun run({{1, 2, 3}, {10, 30, 20}});
    run.settings.criteria().set_normalization("ZSCORE");
    ASSERT_EQ(run.algo.start(), 0);
    const DistanceCorrDescriptiveResult& d = run.descriptives[1];
    EXPECT_DOUBLE_EQ(d.mean, 20.0);
    EXPECT_DOUBLE_EQ(d.stdDev, 10.0);
    EXPECT_EQ(d.values, (std::vector<double>{10, 30, 20}));
    // The distances are those of the z-scores (-1, 1, 0).
    EXPECT_EQ(d.distanceMatrix, (Matrix{{0, 2, 1}, {2, 0, 1}, {1, 1, 0}}));
}

TEST_F(DistanceCorrAlgoDriver, IdValuesFollowTheCasesKept) {
    EngineRun run({{1, 2, kMissing, 4, 5, 6}, {6, 5, 4, 3, kMissing, 1}});
    run.settings.id().setIdData({101, 102, 103, kMissing, 105, 106});
    ASSERT_EQ(run.algo.start(), 0);
    EXPECT_EQ(run.common.idValues, (std::vector<double>{101, 102, 106}));
    EXPECT_EQ(run.descriptives[0].n, 3u);
    EXPECT_EQ(run.descriptives[0].values, (std::vector<double>{1, 2, 6}));
    EXPECT_EQ(run.descriptives[1].values, (std::vector<double>{6, 5, 1}));
    EXPECT_EQ(run.descriptives[0].distanceMatrix.size(), run.common.idValues.size());
}

TEST_F(DistanceCorrAlgoDriver, IdListOfAnotherLengthFailsTheRun) {
    EngineRun run({{1, 2, 3}, {3, 1, 2}});
    run.settings.id().setIdData({1, 2});
    EXPECT_EQ(run.algo.start(), 1);
    EXPECT_TRUE(run.descriptives.empty());
}

TEST_F(DistanceCorrAlgoDriver, ExceptionsAreSwallowedAndEarlierRecordsStay) {
    EngineRun run({{1, 2, 3}, {3, 1, 2}});
    run.settings.id().setIdData({7, 8, 9});
    run.settings.criteria().set_normalization("SQUARE");
    EXPECT_EQ(run.algo.start(), 1);
    EXPECT_EQ(run.descriptives.size(), 2u);  // appended before the normalization failed
    EXPECT_TRUE(run.results.empty());
    EXPECT_TRUE(run.common.idValues.empty());  // only a complete run fills it
    EXPECT_TRUE(messages().empty());
}

TEST_F(DistanceCorrAlgoDriver, MismatchedLabelsFailTheRun) {
    EngineRun run({{1, 2, 3}, {3, 1, 2}});
    run.settings.global().setGlobalVarLabels({"one"});
    EXPECT_EQ(run.algo.start(), 1);
    EXPECT_TRUE(run.descriptives.empty());
}

TEST_F(DistanceCorrAlgoDriver, RecordsAreAppendedNeverCleared) {
    EngineRun run({{1, 2, 3}, {3, 1, 2}});
    run.descriptives.emplace_back();
    run.descriptives.back().varName = "earlier";
    // The earlier record upsets the per-variable count: no pair records are
    // written, silently, and the run still succeeds.
    EXPECT_EQ(run.algo.start(), 0);
    ASSERT_EQ(run.descriptives.size(), 3u);
    EXPECT_EQ(run.descriptives[0].varName, "earlier");
    EXPECT_TRUE(run.results.empty());
}

TEST_F(DistanceCorrAlgoDriver, FillCommonDataCopiesTheIdValues) {
    EngineRun run;
    std::vector<double> ids{3, 1, 2};
    run.algo.fillCommonDataForOutputTable(ids);
    EXPECT_EQ(run.common.idValues, ids);
}

TEST_F(DistanceCorrAlgoDriver, NaNSurvivesDeletionAndGivesCorrelationZero) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EngineRun run({{1, nan, 3, 4}, {4, 3, 1, 2}});
    ASSERT_EQ(run.algo.start(), 0);
    EXPECT_EQ(run.descriptives[0].n, 4u);
    EXPECT_EQ(run.results[0].dCor, 0.0);
}
