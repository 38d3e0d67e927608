// PRINT DETAILS: the descriptive statistics table.
#include <cstdint>

#include <gtest/gtest.h>

#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"

namespace {

DistanceCorrDescriptiveResult described(const std::string& name, const std::string& label,
                                        std::uint64_t n, double mean, double sd, double min,
                                        double max) {
    DistanceCorrDescriptiveResult d = variableWithValues(name, {1, 2});
    d.varLabel = label;
    d.n = n;
    d.mean = mean;
    d.stdDev = sd;
    d.minimum = min;
    d.maximum = max;
    return d;
}

void fillThreeVariables(OutputRun& run) {
    run.descriptives.push_back(described("weight", "Body weight", 12, 70.25, 8.5, 55, 92.5));
    run.descriptives.push_back(described("height", "", 12, 1.7542, 0.0912, 1.58, 1.93));
    run.descriptives.push_back(described("age", "Age in years", 12, 41.5, 12.75, 19, 67));
    run.results.push_back(pairResult("weight", "height", 0.6, 0.3, 0.2, 0.9, 0, 0, 0));
    run.results.push_back(pairResult("weight", "age", 0.4, 0.2, 0.1, 0.7, 0, 0, 0));
    run.results.push_back(pairResult("height", "age", 0.3, 0.1, 0.05, 0.6, 0, 0, 0));
}

}  // namespace

TEST(DistanceCorrDescriptivesTable, ShowsOneNumberedRowPerVariable) {
    OutputRun run;
    fillThreeVariables(run);
    run.settings.print().set_details(true);
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* t = findItem("Distance Correlation Details");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember(*t, "title"), "Descriptive Statistics");
    EXPECT_EQ((*t)["format"]["decimals"].GetInt(), 3);
    EXPECT_EQ(stringArray(*t, "footnotes").size(), 0u);

    const std::vector<std::string> columns{"Variable", "Label", "N", "Mean",
                                           "Std. Deviation", "Minimum", "Maximum"};
    EXPECT_EQ(columnLabels(*t), columns);
    EXPECT_FALSE(treeLabelShown((*t)["columnDimension"]));

    // Rows are numbered from 1 in list order; the name is a data cell.
    const std::vector<std::string> rows{"1", "2", "3"};
    EXPECT_EQ(rowLabels(*t), rows);
    ASSERT_EQ(rowCount(*t), 3u);
    EXPECT_EQ(textAt(*t, 0, 0), "weight");
    EXPECT_EQ(textAt(*t, 0, 1), "Body weight");
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 2), 12.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 3), 70.25);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 4), 8.5);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 5), 55.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 6), 92.5);
    EXPECT_EQ(textAt(*t, 1, 0), "height");
    EXPECT_EQ(textAt(*t, 2, 0), "age");
    EXPECT_EQ(textAt(*t, 2, 1), "Age in years");
    EXPECT_DOUBLE_EQ(numberAt(*t, 2, 6), 67.0);
}

TEST(DistanceCorrDescriptivesTable, EmptyLabelLeavesAnEmptyCellInAPresentColumn) {
    OutputRun run;
    fillThreeVariables(run);
    run.settings.print().set_details(true);
    run.start();

    const rapidjson::Value* t = findItem("Distance Correlation Details");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(columnLabels(*t).at(1), "Label");
    ASSERT_EQ(cellAt(*t, 1, 0).IsString(), true);
    EXPECT_EQ(textAt(*t, 1, 1), "");
    EXPECT_EQ((*t)["cells"][1].Size(), 7u);
}

TEST(DistanceCorrDescriptivesTable, AbsentWhenNotRequestedWithoutAffectingOthers) {
    OutputRun run;
    fillThreeVariables(run);
    run.settings.print().set_details(false);
    run.settings.print().set_distanceCorrelationCoefficient(true);
    run.settings.print().set_distanceVariance(true);
    ASSERT_EQ(run.start(), 0);

    EXPECT_EQ(findItem("Distance Correlation Details"), nullptr);
    const std::vector<std::string> names{"Distance Correlation Coefficients", "Distance Variance"};
    EXPECT_EQ(itemNames(), names);
    const rapidjson::Value* coefficients = findItem("Distance Correlation Coefficients");
    ASSERT_NE(coefficients, nullptr);
    EXPECT_EQ(rowCount(*coefficients), 3u);
}
