// The platform output model builds the documented JSON: tables with nested
// column groups, footnotes, formats and cells; charts with their statements
// and data kept beside the document; the hand-over to the session.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "OPSCommonOutput.h"
#include "OutputTestSupport.h"
#include "PathFactory.h"
#include "output/SessionChartData.h"

namespace {

rapidjson::Document parse(const char* json) {
    rapidjson::Document d;
    d.Parse(json);
    EXPECT_FALSE(d.HasParseError()) << json;
    return d;
}

std::vector<std::string> memberNames(const rapidjson::Value& v) {
    std::vector<std::string> names;
    for (const auto& m : v.GetObject()) names.emplace_back(m.name.GetString());
    return names;
}

TEST(OutputModelTest, GeneratorStartsWithProcedureAndNoItems) {
    StatJSONGenerator generator("Distance Correlation", "");
    const auto& doc = generator.getProcedureStatJSON();
    EXPECT_EQ(doc, parse(R"({"procedure": "Distance Correlation", "items": []})"));
    EXPECT_EQ(generator.getProcedureName(), "Distance Correlation");

    StatJSONGenerator withSubtitle("Distance Correlation", "Split 1");
    EXPECT_EQ(withSubtitle.getProcedureStatJSON(),
              parse(R"({"procedure": "Distance Correlation", "subtitle": "Split 1", "items": []})"));
}

TEST(OutputModelTest, TableWithNestedColumnGroupFootnoteFormatAndCells) {
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"x vs. y", 0.5, 0.25, 0.75}, {"x vs. z", -0.125, -1, 1}});
    const auto& items = generator.getProcedureStatJSON()["items"];
    ASSERT_EQ(items.Size(), 1u);
    const auto expected = parse(R"({
        "type": "table", "name": "Distance Correlation Coefficients",
        "title": "Distance Correlation Coefficients", "showTitle": true,
        "format": {"type": 5, "width": 10, "decimals": 4},
        "minColumnWidth": 100, "maxColumnWidth": 300,
        "footnotes": ["Number of Replicates 999"], "footnoteRefs": [0],
        "rowDimension": {"label": "Variable", "showLabel": true,
                         "children": [{"label": "x vs. y"}, {"label": "x vs. z"}]},
        "columnDimension": {"label": "", "showLabel": false, "children": [
            {"label": "dCor Value"},
            {"label": "Confidence Interval 95.00", "showLabel": true,
             "children": [{"label": "Lower"}, {"label": "Upper"}]}]},
        "cells": [[0.5, 0.25, 0.75], [-0.125, -1, 1]]})");
    EXPECT_EQ(items[0], expected);
    EXPECT_EQ(memberNames(items[0]),
              (std::vector<std::string>{"type", "name", "title", "showTitle", "format", "minColumnWidth",
                                        "maxColumnWidth", "footnotes", "footnoteRefs", "rowDimension",
                                        "columnDimension", "cells"}));
}

TEST(OutputModelTest, HiddenTitleTextCellsUnsetCellsAndNonFiniteNumbers) {
    StatJSONGenerator generator("P", "");
    auto* table = new Table(&generator, "T");
    table->hide_title(true);
    auto* cells = new Cells(table);
    auto* rows = new Descendants(table);
    auto* columns = new Descendants(table);
    columns->addCell(outtest::numberCell(table, 7));  // a numeric header shows as its shortest text
    columns->addCell(outtest::textCell(table, "B"));
    columns->addCell(outtest::textCell(table, "C"));
    columns->addCell(outtest::textCell(table, "D"));
    rows->addCell(outtest::textCell(table, "1"));
    std::vector<Cell*> row{outtest::textCell(table, "x"), new Cell(table, CellTypeStandard),
                           outtest::numberCell(table, std::numeric_limits<double>::quiet_NaN()),
                           outtest::numberCell(table, std::numeric_limits<double>::infinity())};
    cells->addCells(row);
    table->set_dimensions(new Dimension(table, rows, columns));
    table->set_cells(cells);
    table->addTableToProcedureJSON();
    delete table;
    const auto& item = generator.getProcedureStatJSON()["items"][0];
    EXPECT_FALSE(item["showTitle"].GetBool());
    EXPECT_EQ(item["title"], parse(R"("")"));
    EXPECT_EQ(item["columnDimension"]["children"][0], parse(R"({"label": "7"})"));
    EXPECT_EQ(item["cells"], parse(R"([["x", "", null, null]])"));
}

TEST(OutputModelTest, TableWithoutDimensionsOrCellsHasEmptyTrees) {
    StatJSONGenerator generator("P", "");
    Table table(&generator, "Empty");
    table.addTableToProcedureJSON();
    const auto& item = generator.getProcedureStatJSON()["items"][0];
    EXPECT_EQ(item["rowDimension"], parse(R"({"label": "", "showLabel": false, "children": []})"));
    EXPECT_EQ(item["columnDimension"], parse(R"({"label": "", "showLabel": false, "children": []})"));
    EXPECT_EQ(item["cells"], parse("[]"));
    EXPECT_EQ(item["format"], parse(R"({"type": 5, "width": 8, "decimals": 2})"));
}

TEST(OutputModelTest, TwoLevelsOfNestedGroups) {
    StatJSONGenerator generator("P", "");
    auto* table = new Table(&generator, "Nested");
    auto* columns = new Descendants(table);
    auto* outer = new Descendants(table);
    auto* inner = new Descendants(table);
    inner->set_label("Inner");
    inner->setShowLabel(true);
    inner->addCell(outtest::textCell(table, "a"));
    outer->set_label("Outer");
    outer->setShowLabel(true);
    outer->addCell(inner);
    outer->addCell(outtest::textCell(table, "b"));
    columns->addCell(outer);
    table->set_dimensions(new Dimension(table, new Descendants(table), columns));
    table->addTableToProcedureJSON();
    delete table;
    EXPECT_EQ(generator.getProcedureStatJSON()["items"][0]["columnDimension"], parse(R"(
        {"label": "", "showLabel": false, "children": [
          {"label": "Outer", "showLabel": true, "children": [
            {"label": "Inner", "showLabel": true, "children": [{"label": "a"}]},
            {"label": "b"}]}]})"));
}

TEST(OutputModelTest, TableOnNoGeneratorAddsNothing) {
    Table table(nullptr, "Alone");
    table.addTableToProcedureJSON();  // nothing to add to, and no crash
    SUCCEED();
}

TEST(OutputModelTest, ItemsKeepTheOrderTheyWereAdded) {
    StatJSONGenerator generator("P", "");
    outtest::addCoefficientsTable(generator, {{"x vs. y", 0.5, 0.25, 0.75}});
    outtest::addScatterChart(generator, {1, 2}, {3, 4});
    Table second(&generator, "Second");
    second.addTableToProcedureJSON();
    const auto& items = generator.getProcedureStatJSON()["items"];
    ASSERT_EQ(items.Size(), 3u);
    EXPECT_STREQ(items[0]["type"].GetString(), "table");
    EXPECT_STREQ(items[1]["type"].GetString(), "chart");
    EXPECT_STREQ(items[2]["name"].GetString(), "Second");
}

TEST(OutputModelTest, ChartItemHasStatementsAndDataIdButNoPointsInTheDom) {
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::ScatterChart chart(&generator, "Scatter Plot of pairwise distances", "x", "y");
    chart.setDataVector({1.5, 2.5}, true);
    chart.setDataVector({3.5, 4.5}, false);
    chart.addGPLGraphToProcedureJSON();
    EXPECT_EQ(chart.getName(), "Scatter Plot of pairwise distances");
    EXPECT_EQ(chart.getProcedureName(), "Distance Correlation/chart1");
    const auto& item = generator.getProcedureStatJSON()["items"][0];
    EXPECT_EQ(memberNames(item), (std::vector<std::string>{"type", "name", "gpl", "data"}));
    EXPECT_STREQ(item["name"].GetString(), "Scatter Plot of pairwise distances");
    ASSERT_EQ(item["gpl"].Size(), 9u);
    EXPECT_STREQ(item["gpl"][0].GetString(), "SOURCE: s = userSource(id(\"Distance Correlation/chart1\"))");
    EXPECT_EQ(item["data"], parse(R"({"id": "Distance Correlation/chart1"})"));
    // A second chart on the same generator gets its own data id.
    outtest::ScatterChart other(&generator, "Other", "x", "y");
    EXPECT_EQ(other.getProcedureName(), "Distance Correlation/chart2");
}

TEST(OutputModelTest, ConverterHandsTheDocumentAndChartDataToTheSession) {
    outtest::beginCommand("DISTANCE CORRELATION VARIABLES=a b.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"a vs. b", 0.5, 0.25, 0.75}});
    std::vector<double> x{0.5, 1.0, 1.5};
    std::vector<double> y{2.0, 2.5, 3.0};
    const double* xBuffer = x.data();
    const double* yBuffer = y.data();
    {
        outtest::ScatterChart chart(&generator, "Scatter", "a", "b");
        chart.setDataVector(std::move(x), true);
        chart.setDataVector(std::move(y), false);
        chart.addGPLGraphToProcedureJSON();
    }
    BpProcedure procedure("Distance Correlation", 10);
    EXPECT_EQ(procedure.GetTitle(), "Distance Correlation");
    EXPECT_EQ(procedure.GetKind(), 10);
    StatJSONConverter converter(procedure);
    EXPECT_EQ(converter.getCommonOutput(), nullptr);
    converter.generateOutput(generator.getProcedureStatJSON());

    const rapidjson::Document* output = host::HostSession::instance().outputDocument();
    ASSERT_NE(output, nullptr);
    EXPECT_STREQ((*output)["procedure"].GetString(), "Distance Correlation");
    ASSERT_EQ((*output)["items"].Size(), 2u);
    EXPECT_STREQ((*output)["items"][0]["type"].GetString(), "table");
    // The points were moved, never copied: the session holds the same buffers.
    const host::ChartData* data = host::findSessionChartData("Distance Correlation/chart1");
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->x.data(), xBuffer);
    EXPECT_EQ(data->y.data(), yBuffer);
    EXPECT_EQ(data->x, (std::vector<double>{0.5, 1.0, 1.5}));
    // The generator goes on with an empty document of its procedure.
    EXPECT_EQ(generator.getProcedureStatJSON(), parse(R"({"procedure": "Distance Correlation", "items": []})"));

    host::RunRecord record = host::takeRunRecord("DISTANCE CORRELATION VARIABLES=a b.");
    ASSERT_TRUE(record.output);
    EXPECT_EQ((*record.output)["items"].Size(), 2u);
    ASSERT_EQ(record.charts.count("Distance Correlation/chart1"), 1u);
    EXPECT_EQ(record.charts.at("Distance Correlation/chart1")->y.data(), yBuffer);
    EXPECT_EQ(host::HostSession::instance().outputDocument(), nullptr);
    EXPECT_EQ(host::findSessionChartData("Distance Correlation/chart1"), nullptr);
}

TEST(OutputModelTest, EveryPrintKeywordOffStillHandsOverAnEmptyDocument) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    host::RunRecord record = outtest::handOver(generator, "X.");
    ASSERT_TRUE(record.output);
    EXPECT_EQ(*record.output, parse(R"({"procedure": "Distance Correlation", "items": []})"));
    EXPECT_TRUE(record.charts.empty());
}

TEST(OutputModelTest, NoHandOverLeavesNoOutput) {
    outtest::beginCommand("X.");
    {
        StatJSONGenerator generator("Distance Correlation", "");
        outtest::addScatterChart(generator, {1}, {2});
    }
    host::RunRecord record = host::takeRunRecord("X.");
    EXPECT_FALSE(record.output);
    EXPECT_TRUE(record.charts.empty());
}

TEST(OutputModelTest, ChangingDataAfterAddingKeepsTheAddedChart) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("P", "");
    outtest::ScatterChart chart(&generator, "C", "x", "y");
    chart.setDataVector({1, 2}, true);
    chart.setDataVector({3, 4}, false);
    chart.addGPLGraphToProcedureJSON();
    chart.setDataVector({9}, true);
    host::RunRecord record = outtest::handOver(generator, "X.");
    ASSERT_EQ(record.charts.size(), 1u);
    EXPECT_EQ(record.charts.begin()->second->x, (std::vector<double>{1, 2}));
}

TEST(OutputModelTest, PathFactoryServesEveryKind) {
    ASSERT_NE(PathFactory::getPathInstance(3), nullptr);
    EXPECT_EQ(PathFactory::getPathInstance(3), PathFactory::getPathInstance(1));
}

}  // namespace
