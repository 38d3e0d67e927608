// PLOT SCATTERPLOT: the chart of pairwise distances and its statements.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "DistanceCorrOutputChart.h"
#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"
#include "StatJSONGenerator.h"

namespace {

const char* kChartName = "Scatter Plot of pairwise distances";

void requestChart(OutputRun& run, const std::string& x, const std::string& y) {
    run.settings.plot().set_scatterPlotEnabled(true);
    run.settings.plot().set_xAxisName(x);
    run.settings.plot().set_yAxisName(y);
}

// Two variables a and b over the given values.
void fillPair(OutputRun& run, const std::vector<double>& a, const std::vector<double>& b) {
    run.descriptives.push_back(variableWithValues("a", a));
    run.descriptives.push_back(variableWithValues("b", b));
    run.results.push_back(pairResult("a", "b", 0.5, 0.25, 0.1, 0.8, 0, 0, 0));
}

}  // namespace

TEST(DistanceCorrOutputChart, TwoCasesGiveExactlyOnePoint) {
    OutputRun run;
    fillPair(run, {1.0, 4.0}, {10.0, 7.5});
    requestChart(run, "a", "b");
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* chart = findItem(kChartName);
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(stringMember(*chart, "type"), "chart");
    EXPECT_EQ(chartData(*chart, "xdata"), std::vector<double>{3.0});
    EXPECT_EQ(chartData(*chart, "ydata"), std::vector<double>{2.5});
}

TEST(DistanceCorrOutputChart, PointsFollowTheUpperTriangleRowByRow) {
    OutputRun run;
    // a = i gives |i - j|; b = i*i gives |i*i - j*j|, for the pairs
    // (0,1), (0,2), (0,3), (1,2), (1,3), (2,3).
    fillPair(run, {0, 1, 2, 3}, {0, 1, 4, 9});
    requestChart(run, "a", "b");
    run.start();

    const rapidjson::Value* chart = findItem(kChartName);
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(chartData(*chart, "xdata"), (std::vector<double>{1, 2, 3, 1, 2, 1}));
    EXPECT_EQ(chartData(*chart, "ydata"), (std::vector<double>{1, 4, 9, 3, 8, 5}));
}

TEST(DistanceCorrOutputChart, HundredCasesGive4950Points) {
    OutputRun run;
    fillPair(run, countingValues(100), countingValues(100));
    run.descriptives[1].varName = "b";
    requestChart(run, "a", "b");
    run.start();

    const rapidjson::Value* chart = findItem(kChartName);
    ASSERT_NE(chart, nullptr);
    const std::vector<double> x = chartData(*chart, "xdata");
    ASSERT_EQ(x.size(), 4950u);  // 100 * 99 / 2
    EXPECT_EQ(chartData(*chart, "ydata").size(), 4950u);
    EXPECT_DOUBLE_EQ(x.front(), 1.0);  // cases 0 and 1
    EXPECT_DOUBLE_EQ(x[98], 99.0);     // cases 0 and 99
    EXPECT_DOUBLE_EQ(x[99], 1.0);      // cases 1 and 2
    EXPECT_DOUBLE_EQ(x.back(), 1.0);   // cases 98 and 99
}

TEST(DistanceCorrOutputChart, SameVariableOnBothAxesPutsEveryPointOnTheDiagonal) {
    OutputRun run;
    fillPair(run, {2, 9, 4, 4, 1}, {1, 2, 3, 4, 5});
    requestChart(run, "a", "a");
    run.start();

    const rapidjson::Value* chart = findItem(kChartName);
    ASSERT_NE(chart, nullptr);
    const std::vector<double> x = chartData(*chart, "xdata");
    EXPECT_EQ(x.size(), 10u);
    EXPECT_EQ(chartData(*chart, "ydata"), x);
}

TEST(DistanceCorrOutputChart, DisabledScatterPlotGivesNoChartAndNoStatements) {
    OutputRun run;
    fillPair(run, {1, 2, 3}, {3, 2, 1});
    run.settings.plot().set_xAxisName("a");
    run.settings.plot().set_yAxisName("b");
    run.settings.print().set_distanceCorrelationCoefficient(true);
    ASSERT_EQ(run.start(), 0);

    EXPECT_EQ(findItem(kChartName), nullptr);
    for (const rapidjson::Value* item : outputItems()) {
        EXPECT_EQ(stringMember(*item, "type"), "table");
        EXPECT_FALSE(item->HasMember("gpl"));
    }
}

TEST(DistanceCorrOutputChart, StatementsAreWrittenInOrderWithNamesVerbatim) {
    OutputRun run;
    fillPair(run, {1, 2, 3}, {3, 2, 1});
    run.descriptives[0].varName = "Höhe_cm";
    run.descriptives[1].varName = "weight.kg";
    requestChart(run, "Höhe_cm", "weight.kg");
    run.start();

    const rapidjson::Value* chart = findItem(kChartName);
    ASSERT_NE(chart, nullptr);
    const std::vector<std::string> gpl = stringArray(*chart, "gpl");
    ASSERT_EQ(gpl.size(), 9u);
    EXPECT_EQ(gpl[0].rfind("SOURCE: s = userSource(id(\"", 0), 0u);
    EXPECT_EQ(gpl[1], "DATA: xdata  = col(source(s), name(\"xdata\"))");
    EXPECT_EQ(gpl[2], "DATA: ydata  = col(source(s), name(\"ydata\"))");
    EXPECT_EQ(gpl[3], "GRAPH: begin()");
    EXPECT_EQ(gpl[4], "GUIDE: axis(dim(2),label(\"weight.kg\"))");  // y axis first
    EXPECT_EQ(gpl[5], "GUIDE: axis(dim(1),label(\"Höhe_cm\"))");
    EXPECT_EQ(gpl[6], "GUIDE: text.title(label(\"Scatter Plot of pairwise distances\"))");
    EXPECT_EQ(gpl[7], "ELEMENT: point(position(xdata*ydata))");
    EXPECT_EQ(gpl[8], "GRAPH: end()");
}

TEST(DistanceCorrOutputChart, SourceStatementNamesTheChartsDataSource) {
    StatJSONGenerator generator("Distance Correlation", "");
    DistanceCorrOutputChart chart(&generator, "My title");
    chart.setLabel(true, "xname");
    chart.setLabel(false, "yname");
    rapidjson::Document doc;
    doc.SetObject();
    chart.addGPLCommands(doc, doc.GetAllocator());

    ASSERT_TRUE(doc.HasMember("gpl"));
    const std::vector<std::string> gpl = stringArray(doc, "gpl");
    const std::vector<std::string> expected{
        "SOURCE: s = userSource(id(\"" + chart.getProcedureName() + "\"))",
        "DATA: xdata  = col(source(s), name(\"xdata\"))",
        "DATA: ydata  = col(source(s), name(\"ydata\"))",
        "GRAPH: begin()",
        "GUIDE: axis(dim(2),label(\"yname\"))",
        "GUIDE: axis(dim(1),label(\"xname\"))",
        "GUIDE: text.title(label(\"My title\"))",
        "ELEMENT: point(position(xdata*ydata))",
        "GRAPH: end()"};
    EXPECT_EQ(gpl, expected);
    EXPECT_EQ(chart.getName(), "My title");
}

TEST(DistanceCorrOutputChart, LabelsStartEmpty) {
    StatJSONGenerator generator("Distance Correlation", "");
    DistanceCorrOutputChart chart(&generator, "t");
    rapidjson::Document doc;
    doc.SetObject();
    chart.addGPLCommands(doc, doc.GetAllocator());
    const std::vector<std::string> gpl = stringArray(doc, "gpl");
    ASSERT_EQ(gpl.size(), 9u);
    EXPECT_EQ(gpl[4], "GUIDE: axis(dim(2),label(\"\"))");
    EXPECT_EQ(gpl[5], "GUIDE: axis(dim(1),label(\"\"))");
}

TEST(DistanceCorrOutputChart, MissingAxisNameStopsWithoutChartButKeepsTheTables) {
    OutputRun run;
    fillPair(run, {1, 2, 3}, {3, 2, 1});
    requestChart(run, "a", "");
    run.settings.print().set_distanceCorrelationCoefficient(true);

    EXPECT_EQ(run.start(), 1);
    EXPECT_EQ(findItem(kChartName), nullptr);
    EXPECT_NE(findItem("Distance Correlation Coefficients"), nullptr);
}

TEST(DistanceCorrOutputChart, NameOfNoVariableLeavesItsAxisEmpty) {
    OutputRun run;
    fillPair(run, {1, 2, 4}, {3, 2, 1});
    requestChart(run, "a", "nosuchvar");
    EXPECT_EQ(run.start(), 0);

    const rapidjson::Value* chart = findItem(kChartName);
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(chartData(*chart, "xdata"), (std::vector<double>{1, 3, 2}));
    EXPECT_TRUE(chartData(*chart, "ydata").empty());
}
