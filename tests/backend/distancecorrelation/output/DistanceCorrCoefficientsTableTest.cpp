// PRINT DISTCORRCOEFF: the distance correlation coefficients table.
#include <gtest/gtest.h>

#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"

namespace {

const char* kName = "Distance Correlation Coefficients";

void requestCoefficients(OutputRun& run, bool perm) {
    run.settings.print().set_distanceCorrelationCoefficient(true);
    run.settings.criteria().set_permEnabled(perm);
}

}  // namespace

TEST(DistanceCorrCoefficientsTable, WithoutPermutationKeepsThreeColumnsAndNoFootnote) {
    OutputRun run;
    fillTwoVariables(run);
    requestCoefficients(run, false);
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember(*t, "title"), "Distance Correlation Coefficients");
    EXPECT_EQ((*t)["format"]["decimals"].GetInt(), 4);

    const std::vector<std::string> columns{"dCor Value", "Lower", "Upper"};
    EXPECT_EQ(columnLabels(*t), columns);
    const std::vector<HeaderGroup> groups = headerGroups((*t)["columnDimension"]);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].label, "Confidence Interval 95.00");
    EXPECT_TRUE(groups[0].shown);

    EXPECT_TRUE(stringArray(*t, "footnotes").empty());
    // The reference is requested even though no footnote follows.
    EXPECT_EQ(intArray(*t, "footnoteRefs"), std::vector<int>{0});

    ASSERT_EQ(rowCount(*t), 1u);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 0), 0.5);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 1), 0.1);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 2), 0.8);
    EXPECT_EQ((*t)["cells"][0].Size(), 3u);
}

TEST(DistanceCorrCoefficientsTable, WithPermutationAddsGroupBeforeIntervalAndSigLast) {
    OutputRun run;
    fillTwoVariables(run);
    requestCoefficients(run, true);
    run.settings.criteria().set_permSigLevel(0.1);
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    const std::vector<std::string> columns{"dCor Value", "Lower", "Upper", "Lower", "Upper", "Sig."};
    EXPECT_EQ(columnLabels(*t), columns);
    const std::vector<HeaderGroup> groups = headerGroups((*t)["columnDimension"]);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].label, "Permutation Confidence Interval 0.10");
    EXPECT_EQ(groups[1].label, "Confidence Interval 95.00");
    EXPECT_TRUE(groups[0].shown);
    EXPECT_TRUE(groups[1].shown);
    EXPECT_EQ(groups[0].leaves, (std::vector<std::string>{"Lower", "Upper"}));

    // dCor, permutation bounds, interval bounds, p-value.
    ASSERT_EQ(rowCount(*t), 1u);
    const double expected[] = {0.5, 0.2, 0.7, 0.1, 0.8, 0.03};
    for (std::size_t c = 0; c < 6; ++c) EXPECT_DOUBLE_EQ(numberAt(*t, 0, c), expected[c]) << c;
}

TEST(DistanceCorrCoefficientsTable, ReplicatesFootnoteUsesTheWholeIterationCount) {
    OutputRun run;
    fillTwoVariables(run);
    requestCoefficients(run, true);
    run.settings.criteria().set_permMaxIterations(999.9);
    run.start();

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringArray(*t, "footnotes"), std::vector<std::string>{"Number of Replicates 999"});
    EXPECT_EQ(intArray(*t, "footnoteRefs"), std::vector<int>{0});
}

TEST(DistanceCorrCoefficientsTable, DefaultIterationCountGivesAThousandReplicates) {
    OutputRun run;
    fillTwoVariables(run);
    requestCoefficients(run, true);
    run.start();

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringArray(*t, "footnotes"), std::vector<std::string>{"Number of Replicates 1000"});
    // The default significance level 0.05 in the permutation group label.
    EXPECT_EQ(headerGroups((*t)["columnDimension"]).at(0).label, "Permutation Confidence Interval 0.05");
}

TEST(DistanceCorrCoefficientsTable, ConfidenceLevelIsShownWithTwoDecimals) {
    OutputRun run;
    fillTwoVariables(run);
    requestCoefficients(run, false);
    run.settings.criteria().set_ciLevel(90.5);
    run.start();

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(headerGroups((*t)["columnDimension"]).at(0).label, "Confidence Interval 90.50");
}

TEST(DistanceCorrCoefficientsTable, RowsFollowThePairListWithoutSorting) {
    OutputRun run;
    fillTwoVariables(run);
    run.results.clear();
    run.results.push_back(pairResult("b", "c", 0.9, 0, 0, 0, 0, 0, 0));
    run.results.push_back(pairResult("a", "z", 0.1, 0, 0, 0, 0, 0, 0));
    run.results.push_back(pairResult("a", "b", 0.5, 0, 0, 0, 0, 0, 0));
    requestCoefficients(run, false);
    run.start();

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    const std::vector<std::string> rows{"b vs. c", "a vs. z", "a vs. b"};
    EXPECT_EQ(rowLabels(*t), rows);
    EXPECT_EQ(stringMember((*t)["rowDimension"], "label"), "Variable");
    EXPECT_TRUE(treeLabelShown((*t)["rowDimension"]));
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 0), 0.9);
    EXPECT_DOUBLE_EQ(numberAt(*t, 1, 0), 0.1);
    EXPECT_DOUBLE_EQ(numberAt(*t, 2, 0), 0.5);
}

TEST(DistanceCorrCoefficientsTable, OnePairGivesOneRow) {
    OutputRun run;
    fillTwoVariables(run);
    requestCoefficients(run, false);
    run.start();

    const rapidjson::Value* t = findItem(kName);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(rowLabels(*t), std::vector<std::string>{"x vs. y"});
    EXPECT_EQ(rowCount(*t), 1u);
}

TEST(DistanceCorrCoefficientsTable, AbsentWhenNotRequested) {
    OutputRun run;
    fillTwoVariables(run);
    run.settings.criteria().set_permEnabled(true);
    run.start();
    EXPECT_EQ(findItem(kName), nullptr);
}

TEST(DistanceCorrCoefficientsTable, BuilderReportsAnEmptyPairList) {
    OutputRun run;
    requestCoefficients(run, false);
    DistanceCorrOutputGen gen(run.procedure, run.source, run.settings, run.results,
                              run.descriptives, run.common);
    EXPECT_EQ(gen.generateDistanceCorrCoefficients(), 1);
    run.settings.print().set_distanceCorrelationCoefficient(false);
    EXPECT_EQ(gen.generateDistanceCorrCoefficients(), 0);
}
