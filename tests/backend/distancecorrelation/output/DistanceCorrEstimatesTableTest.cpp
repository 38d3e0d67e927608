// PRINT CORREST: the estimates table.
#include <gtest/gtest.h>

#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"

namespace {

const char* kName = "Distance Correlation Estimation Summary";

void fillThreePairs(OutputRun& run) {
    run.descriptives.push_back(variableWithValues("a", {1, 2, 3}));
    run.descriptives.push_back(variableWithValues("b", {1, 3, 2}));
    run.descriptives.push_back(variableWithValues("c", {3, 2, 1}));
    run.results.push_back(pairResult("a", "b", 0.61, 0.31, 0.21, 0.91, 0.11, 0.71, 0.041));
    run.results.push_back(pairResult("a", "c", 0.62, 0.32, 0.22, 0.92, 0.12, 0.72, 0.042));
    run.results.push_back(pairResult("b", "c", 0.63, 0.33, 0.23, 0.93, 0.13, 0.73, 0.043));
}

}  // namespace

TEST(DistanceCorrEstimatesTable, WithoutPermutationHasFourColumns) {
    OutputRun run;
    fillThreePairs(run);
    run.settings.print().set_correlationEstimates(true);
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember(*t, "title"), "Distance Correlation Estimates");
    EXPECT_EQ((*t)["format"]["decimals"].GetInt(), 4);
    const std::vector<std::string> columns{"dCov", "dCor", "Lower", "Upper"};
    EXPECT_EQ(columnLabels(*t), columns);
    const std::vector<HeaderGroup> groups = headerGroups((*t)["columnDimension"]);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].label, "Confidence Interval 95.00");

    EXPECT_EQ(stringMember((*t)["rowDimension"], "label"), "Variable Pair");
    EXPECT_TRUE(treeLabelShown((*t)["rowDimension"]));
    ASSERT_EQ(rowCount(*t), 3u);
    const double expected[] = {0.32, 0.62, 0.22, 0.92};
    for (std::size_t c = 0; c < 4; ++c) EXPECT_DOUBLE_EQ(numberAt(*t, 1, c), expected[c]) << c;
}

TEST(DistanceCorrEstimatesTable, WithPermutationHasSevenColumnsAndStillNoFootnote) {
    OutputRun run;
    fillThreePairs(run);
    run.settings.print().set_correlationEstimates(true);
    run.settings.criteria().set_permEnabled(true);
    run.settings.criteria().set_permMaxIterations(999.9);
    run.settings.criteria().set_ciLevel(99);
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    const std::vector<std::string> columns{"dCov", "dCor", "Lower", "Upper", "Lower", "Upper", "Sig."};
    EXPECT_EQ(columnLabels(*t), columns);
    const std::vector<HeaderGroup> groups = headerGroups((*t)["columnDimension"]);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].label, "Permutation Confidence Interval 0.05");
    EXPECT_EQ(groups[1].label, "Confidence Interval 99.00");

    EXPECT_TRUE(stringArray(*t, "footnotes").empty());
    EXPECT_TRUE(intArray(*t, "footnoteRefs").empty());

    // dCov, dCor, permutation bounds, interval bounds, p-value.
    const double expected[] = {0.33, 0.63, 0.13, 0.73, 0.23, 0.93, 0.043};
    for (std::size_t c = 0; c < 7; ++c) EXPECT_DOUBLE_EQ(numberAt(*t, 2, c), expected[c]) << c;
}

TEST(DistanceCorrEstimatesTable, RowsAlignWithTheCoefficientsTable) {
    OutputRun run;
    fillThreePairs(run);
    run.settings.print().set_correlationEstimates(true);
    run.settings.print().set_distanceCorrelationCoefficient(true);
    run.start();

    const rapidjson::Value* estimates = findItem(kName);
    const rapidjson::Value* coefficients = findItem("Distance Correlation Coefficients");
    ASSERT_NE(estimates, nullptr);
    ASSERT_NE(coefficients, nullptr);
    const std::vector<std::string> rows{"a vs. b", "a vs. c", "b vs. c"};
    EXPECT_EQ(rowLabels(*estimates), rows);
    EXPECT_EQ(rowLabels(*coefficients), rows);
    for (std::size_t r = 0; r < 3; ++r)
        EXPECT_DOUBLE_EQ(numberAt(*estimates, r, 1), numberAt(*coefficients, r, 0));
}

TEST(DistanceCorrEstimatesTable, AbsentWhenNotRequested) {
    OutputRun run;
    fillThreePairs(run);
    run.settings.print().set_distanceCorrelationCoefficient(true);
    run.start();
    EXPECT_EQ(findItem(kName), nullptr);
    EXPECT_NE(findItem("Distance Correlation Coefficients"), nullptr);
}
