// Listwise deletion of incomplete cases and the rescalings of the engine.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "EngineTestSettings.h"

namespace {

using Matrix = DistanceCorrAlgo::Matrix;
const double kMissing = std::numeric_limits<double>::lowest();

template <typename Exception, typename F>
std::string thrownText(F&& f) {
    try {
        f();
    } catch (const Exception& e) {
        return e.what();
    } catch (...) {
        return "(other exception type)";
    }
    return "(nothing thrown)";
}

Matrix columns(std::size_t variables, std::size_t cases) {
    Matrix m(variables, std::vector<double>(cases));
    for (std::size_t v = 0; v < variables; ++v) {
        for (std::size_t c = 0; c < cases; ++c) m[v][c] = static_cast<double>((v + 1) * (c + 2) % 7);
    }
    return m;
}

const char* const kMinimalText =
    "The selected variable list is empty or does not satisfy the minimal requirements.";
const char* const kRequirementsText = "The selected variable list is empty or does not satisfy the requirements.";

}  // namespace

TEST(DistanceCorrAlgoNormalization, IncompleteCaseIsRemovedFromEveryVariable) {
    EngineRun run;
    Matrix data{{1, 2, 3, 4}, {5, kMissing, 7, 8}, {9, 10, 11, 12}};
    run.algo.handleListwiseMissingData(data);
    EXPECT_EQ(data, (Matrix{{1, 3, 4}, {5, 7, 8}, {9, 11, 12}}));
}

TEST(DistanceCorrAlgoNormalization, AdjacentIncompleteCasesAreBothRemoved) {
    EngineRun run;
    Matrix data{{1, kMissing, 3, 4, 5}, {6, 7, kMissing, 9, kMissing}};
    run.algo.handleListwiseMissingData(data);
    EXPECT_EQ(data, (Matrix{{1, 4}, {6, 9}}));

    Matrix withIds{{1, kMissing, 3, 4, 5}, {6, 7, kMissing, 9, 10}};
    std::vector<double> ids{101, 102, 103, 104, 105};
    run.algo.handleListwiseMissingData(withIds, ids);
    EXPECT_EQ(withIds, (Matrix{{1, 4, 5}, {6, 9, 10}}));
    EXPECT_EQ(ids, (std::vector<double>{101, 104, 105}));
}

TEST(DistanceCorrAlgoNormalization, EveryCaseIncompleteLeavesEmptyVariables) {
    EngineRun run;
    Matrix data{{kMissing, 1}, {2, kMissing}};
    run.algo.handleListwiseMissingData(data);
    EXPECT_EQ(data, (Matrix{{}, {}}));
}

TEST(DistanceCorrAlgoNormalization, IdValuesStayAlignedWithTheCasesKept) {
    EngineRun run;
    Matrix data{{1, 2, 3, 4}, {5, 6, kMissing, 8}};
    std::vector<double> ids{11, 12, 13, 14};
    run.algo.handleListwiseMissingData(data, ids);
    EXPECT_EQ(data, (Matrix{{1, 2, 4}, {5, 6, 8}}));
    EXPECT_EQ(ids, (std::vector<double>{11, 12, 14}));
}

TEST(DistanceCorrAlgoNormalization, CaseWithOnlyItsIdMissingIsRemoved) {
    EngineRun run;
    Matrix data{{1, 2, 3}, {4, 5, 6}};
    std::vector<double> ids{11, kMissing, 13};
    run.algo.handleListwiseMissingData(data, ids);
    EXPECT_EQ(data, (Matrix{{1, 3}, {4, 6}}));
    EXPECT_EQ(ids, (std::vector<double>{11, 13}));
}

TEST(DistanceCorrAlgoNormalization, NaNIsNotMissing) {
    EngineRun run;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Matrix data{{1, nan, 3}, {4, 5, 6}};
    run.algo.handleListwiseMissingData(data);
    ASSERT_EQ(data[0].size(), 3u);
    EXPECT_TRUE(std::isnan(data[0][1]));
    // Only the exact marker counts: the next double above it is a value.
    Matrix nearMarker{{std::nextafter(kMissing, 0.0), 2}, {3, 4}};
    run.algo.handleListwiseMissingData(nearMarker);
    EXPECT_EQ(nearMarker[0].size(), 2u);
}

TEST(DistanceCorrAlgoNormalization, VariableCountLimitsAndTheirTwoTexts) {
    EngineRun run;
    Matrix none;
    Matrix one = columns(1, 3);
    Matrix thirtyOne = columns(31, 3);
    Matrix thirty = columns(30, 3);
    for (Matrix* m : {&none, &one, &thirtyOne}) {
        Matrix copy = *m;
        EXPECT_EQ(thrownText<std::invalid_argument>([&] { run.algo.handleListwiseMissingData(copy); }),
                  kMinimalText);
        std::vector<double> ids(m->empty() ? 0 : (*m)[0].size(), 1.0);
        copy = *m;
        EXPECT_EQ(thrownText<std::invalid_argument>([&] { run.algo.handleListwiseMissingData(copy, ids); }),
                  kRequirementsText);
    }
    EXPECT_NO_THROW(run.algo.handleListwiseMissingData(thirty));
    std::vector<double> ids(3, 1.0);
    EXPECT_NO_THROW(run.algo.handleListwiseMissingData(thirty, ids));
}

TEST(DistanceCorrAlgoNormalization, UnequalLengthsAreRejected) {
    EngineRun run;
    Matrix ragged{{1, 2, 3}, {1, 2}};
    EXPECT_EQ(thrownText<std::runtime_error>([&] { run.algo.handleListwiseMissingData(ragged); }),
              "Inner vectors must have the same size");
    std::vector<double> ids{1, 2, 3};
    EXPECT_EQ(thrownText<std::invalid_argument>([&] { run.algo.handleListwiseMissingData(ragged, ids); }),
              kRequirementsText);
    Matrix even{{1, 2, 3}, {4, 5, 6}};
    std::vector<double> shortIds{1, 2};
    EXPECT_EQ(thrownText<std::invalid_argument>([&] { run.algo.handleListwiseMissingData(even, shortIds); }),
              kRequirementsText);
}

TEST(DistanceCorrAlgoNormalization, MinMaxMapsOntoTheUnitInterval) {
    EngineRun run;
    Matrix data{{2, 4, 6}, {5, 5, 5}};
    run.algo.performMinMaxNormalization(data);
    EXPECT_EQ(data, (Matrix{{0, 0.5, 1}, {0, 0, 0}}));
}

TEST(DistanceCorrAlgoNormalization, ZScoreUsesTheSampleStandardDeviation) {
    EngineRun run;
    Matrix data{{1, 2, 3}, {7, 7, 7}};
    run.algo.performzScoreNormalization(data);
    EXPECT_EQ(data, (Matrix{{-1, 0, 1}, {0, 0, 0}}));
    Matrix wider{{2, 4, 4, 4, 5, 5, 7, 9}};
    // Mean 5, sum of squares 32, sample sd sqrt(32/7).
    run.algo.performzScoreNormalization(wider);
    EXPECT_NEAR(wider[0][0], -3 / std::sqrt(32.0 / 7.0), 1e-15);
}

TEST(DistanceCorrAlgoNormalization, RobustScalingWithOddCount) {
    EngineRun run;
    // Median 3; lower half (1, 2) -> 1.5; upper half (4, 100) -> 52; IQR 50.5.
    Matrix data{{100, 1, 3, 2, 4}};
    run.algo.performRobustScaling(data);
    EXPECT_DOUBLE_EQ(data[0][0], 97.0 / 50.5);
    EXPECT_DOUBLE_EQ(data[0][1], -2.0 / 50.5);
    EXPECT_DOUBLE_EQ(data[0][2], 0.0);
    EXPECT_DOUBLE_EQ(data[0][3], -1.0 / 50.5);  // case order kept
    EXPECT_DOUBLE_EQ(data[0][4], 1.0 / 50.5);
}

TEST(DistanceCorrAlgoNormalization, RobustScalingWithEvenCount) {
    EngineRun run;
    EXPECT_DOUBLE_EQ(run.algo.calculateIQR({1, 2, 3, 4}), 2.0);
    EXPECT_DOUBLE_EQ(run.algo.calculateMedian({1, 2, 3, 4}), 2.5);
    Matrix data{{4, 1, 3, 2}};
    run.algo.performRobustScaling(data);
    EXPECT_EQ(data, (Matrix{{0.75, -0.75, 0.25, -0.25}}));
}

TEST(DistanceCorrAlgoNormalization, RobustScalingReplacesOnlyAnExactZeroSpread) {
    EngineRun run;
    Matrix data{{5, 5, 5, 6}};  // lower half (5, 5), upper half (5, 6): IQR 0.5
    run.algo.performRobustScaling(data);
    EXPECT_DOUBLE_EQ(data[0][3], 1.0 / 0.5);
    Matrix flat{{5, 5, 5, 5, 5, 5, 7}};  // halves (5, 5, 5) and (5, 5, 7): IQR 0 -> 1e-8
    run.algo.performRobustScaling(flat);
    EXPECT_DOUBLE_EQ(flat[0][6], 2.0 / 1e-8);
    EXPECT_EQ(flat[0][0], 0.0);
}

TEST(DistanceCorrAlgoNormalization, MedianAndIqrEdgeSizes) {
    EngineRun run;
    EXPECT_EQ(run.algo.calculateMedian({}), 0.0);
    EXPECT_EQ(run.algo.calculateMedian({4}), 4.0);
    EXPECT_EQ(run.algo.calculateMedian({1, 2, 10}), 2.0);
    EXPECT_EQ(run.algo.calculateIQR({7}), 0.0);
    EXPECT_EQ(run.algo.calculateIQR({}), 0.0);
    EXPECT_EQ(run.algo.calculateIQR({1, 2, 3}), 2.0);  // halves (1) and (3)
}

TEST(DistanceCorrAlgoNormalization, LogTransformation) {
    EngineRun run;
    Matrix data{{0, -1, std::exp(1.0) - 1}, {-2, 3, 0}};
    run.algo.performLogTransformation(data);
    EXPECT_EQ(data[0][0], 0.0);
    EXPECT_TRUE(std::isinf(data[0][1]) && data[0][1] < 0);
    EXPECT_DOUBLE_EQ(data[0][2], 1.0);
    EXPECT_TRUE(std::isnan(data[1][0]));
    EXPECT_DOUBLE_EQ(data[1][1], std::log(4.0));
}

TEST(DistanceCorrAlgoNormalization, DispatchOnTheKeyword) {
    EngineRun run;
    const Matrix original{{2, 4, 6}, {1, 2, 3}};
    const std::pair<std::string, Matrix> cases[] = {
        {"NONE", original},
        {"MINMAX", {{0, 0.5, 1}, {0, 0.5, 1}}},
        {"ZSCORE", {{-1, 0, 1}, {-1, 0, 1}}},
        {"ROBUST", {{-0.5, 0, 0.5}, {-0.5, 0, 0.5}}},  // (x - 4) / 4 and (x - 2) / 2
    };
    for (const auto& [keyword, expected] : cases) {
        run.settings.criteria().set_normalization(keyword);
        Matrix data = original;
        run.algo.performNormalization(data);
        EXPECT_EQ(data, expected) << keyword;
    }
    run.settings.criteria().set_normalization("LOG");
    Matrix data = original;
    run.algo.performNormalization(data);
    EXPECT_DOUBLE_EQ(data[0][0], std::log(3.0));
}

TEST(DistanceCorrAlgoNormalization, UnknownKeywordIsRejectedCaseSensitively) {
    EngineRun run;
    for (const char* keyword : {"zscore", "", "Z-SCORE"}) {
        run.settings.criteria().set_normalization(keyword);
        Matrix data{{1, 2}, {3, 4}};
        EXPECT_EQ(thrownText<std::runtime_error>([&] { run.algo.performNormalization(data); }),
                  "Invalid normalization input is received!")
            << keyword;
    }
}

TEST(DistanceCorrAlgoNormalization, MeanAndSampleStandardDeviation) {
    EngineRun run;
    EXPECT_EQ(run.algo.calculateMean({}), 0.0);
    EXPECT_EQ(run.algo.calculateStdDev({}, 0.0), 0.0);
    EXPECT_DOUBLE_EQ(run.algo.calculateMean({1, 2, 3, 6}), 3.0);
    EXPECT_DOUBLE_EQ(run.algo.calculateStdDev({1, 2, 3, 6}, 3.0), std::sqrt(14.0 / 3.0));
    // A single value divides 0 by 0.
    EXPECT_TRUE(std::isnan(run.algo.calculateStdDev({5}, 5.0)));
}
