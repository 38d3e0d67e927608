// The output document writer: exact bytes of a small document, no "output"
// member for a run without a document, chart columns streamed from the data
// kept beside the document, numbers in their shortest round-trip form.
#include <cstdlib>
#include <random>
#include <sstream>

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "OutputTestSupport.h"
#include "output/NumberText.h"

namespace {

// A chart with two statements, to keep the expected text short.
class TinyChart : public StatGPLGraph {
public:
    using StatGPLGraph::StatGPLGraph;
    void addGPLCommands(rapidjson::Value& value, rapidjson::MemoryPoolAllocator<>& a) override {
        rapidjson::Value gpl(rapidjson::kArrayType);
        gpl.PushBack(rapidjson::Value(("SOURCE: s = userSource(id(\"" + getProcedureName() + "\"))").c_str(), a), a);
        gpl.PushBack("ELEMENT: point(position(xdata*ydata))", a);
        value.AddMember("gpl", gpl, a);
    }
};

host::RunRecord smallRun() {
    outtest::beginCommand("DISTANCE CORRELATION VARIABLES=a b.");
    host::HostSession::instance().addMessage(host::MessageLevel::Warning, "DISTANCE CORRELATION",
                                             "Say \"hi\"\tnow \x01 \xff \xc3\xbc");
    StatJSONGenerator generator("Distance Correlation", "");
    auto* table = new Table(&generator, "T");
    table->set_table_title("Title");
    table->set_default_cell_format(5, 10, 3);
    table->set_min_data_column_width(100);
    table->set_max_data_column_width(300);
    table->addFootnoteRefs(0);
    table->add_footnote("Note");
    auto* rows = new Descendants(table);
    rows->set_label("Variable");
    rows->setShowLabel(true);
    rows->addCell(outtest::textCell(table, "x"));
    auto* columns = new Descendants(table);
    columns->addCell(outtest::textCell(table, "Mean"));
    auto* cells = new Cells(table);
    std::vector<Cell*> row{outtest::numberCell(table, 1.5)};
    cells->addCells(row);
    table->set_dimensions(new Dimension(table, rows, columns));
    table->set_cells(cells);
    table->addTableToProcedureJSON();
    delete table;
    TinyChart chart(&generator, "C");
    chart.setDataVector({0.1, 2}, true);
    chart.setDataVector({3, std::numeric_limits<double>::quiet_NaN()}, false);
    chart.addGPLGraphToProcedureJSON();
    return outtest::handOver(generator, "DISTANCE CORRELATION VARIABLES=a b.");
}

const char* kSmallDocument = R"json({
  "runs": [
    {
      "command": "DISTANCE CORRELATION VARIABLES=a b.",
      "messages": [
        {
          "level": "warning",
          "text": "Say \"hi\"\tnow \u0001 )json" "\xef\xbf\xbd" " \xc3\xbc" R"json("
        }
      ],
      "output": {
        "procedure": "Distance Correlation",
        "items": [
          {
            "type": "table",
            "name": "T",
            "title": "Title",
            "showTitle": true,
            "format": {
              "type": 5,
              "width": 10,
              "decimals": 3
            },
            "minColumnWidth": 100,
            "maxColumnWidth": 300,
            "footnotes": ["Note"],
            "footnoteRefs": [0],
            "rowDimension": {
              "label": "Variable",
              "showLabel": true,
              "children": [
                {
                  "label": "x"
                }
              ]
            },
            "columnDimension": {
              "label": "",
              "showLabel": false,
              "children": [
                {
                  "label": "Mean"
                }
              ]
            },
            "cells": [
              [1.5]
            ]
          },
          {
            "type": "chart",
            "name": "C",
            "gpl": ["SOURCE: s = userSource(id(\"Distance Correlation/chart1\"))", "ELEMENT: point(position(xdata*ydata))"],
            "data": {
              "id": "Distance Correlation/chart1",
              "xdata": [0.1, 2],
              "ydata": [3, null]
            }
          }
        ]
      }
    },
    {
      "command": "LIST.",
      "messages": [
        {
          "level": "error",
          "text": "Unknown command."
        }
      ]
    }
  ]
}
)json";

TEST(OutputDocumentWriterTest, SmallDocumentExactBytes) {
    std::vector<host::RunRecord> runs;
    runs.push_back(smallRun());
    host::RunRecord second;
    second.command = "LIST.";
    second.messages.push_back({host::MessageLevel::Error, "Unknown command."});
    runs.push_back(std::move(second));
    std::ostringstream out;
    host::writeOutputDocument(out, runs);
    EXPECT_EQ(out.str(), kSmallDocument);
    rapidjson::Document parsed;
    parsed.Parse(out.str().c_str());
    EXPECT_FALSE(parsed.HasParseError());
}

TEST(OutputDocumentWriterTest, OutputIsAbsentWhenNoDocumentWasHandedOver) {
    outtest::beginCommand("X.");
    host::RunRecord run = host::takeRunRecord("X.");
    std::ostringstream out;
    host::writeOutputDocument(out, {});
    EXPECT_EQ(out.str(), "{\n  \"runs\": []\n}\n");
    std::vector<host::RunRecord> runs;
    runs.push_back(std::move(run));
    std::ostringstream one;
    host::writeOutputDocument(one, runs);
    EXPECT_EQ(one.str(), "{\n  \"runs\": [\n    {\n      \"command\": \"X.\",\n      \"messages\": []\n    }\n  ]\n}\n");
}

TEST(OutputDocumentWriterTest, NoteLevelIsWrittenAsNote) {
    host::RunRecord run;
    run.command = "Y.";
    run.messages.push_back({host::MessageLevel::Note, "Nothing."});
    std::vector<host::RunRecord> runs;
    runs.push_back(std::move(run));
    std::ostringstream out;
    host::writeOutputDocument(out, runs);
    EXPECT_NE(out.str().find("\"level\": \"note\""), std::string::npos);
}

TEST(OutputDocumentWriterTest, ShortestRoundTripNumbers) {
    EXPECT_EQ(host::shortestNumber(0.1), "0.1");
    EXPECT_EQ(host::shortestNumber(3.0), "3");
    EXPECT_EQ(host::shortestNumber(-2.5), "-2.5");
    EXPECT_EQ(host::shortestNumber(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(host::shortestNumber(1e-7), "1e-07");
    EXPECT_EQ(host::shortestNumber(1e21), "1e+21");
    EXPECT_EQ(host::shortestNumber(123456789012.0), "123456789012");
}

TEST(OutputDocumentWriterTest, ManyChartPointsAreStreamedAndReadBackExactly) {
    outtest::beginCommand("X.");
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> uniform(0.0, 1000.0);
    std::vector<double> x(200000), y(200000);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = uniform(random);
        y[i] = uniform(random) * 1e-9;
    }
    const std::vector<double> xCopy = x, yCopy = y;
    StatJSONGenerator generator("P", "");
    outtest::addScatterChart(generator, std::move(x), std::move(y));
    std::vector<host::RunRecord> runs;
    runs.push_back(outtest::handOver(generator, "X."));
    std::ostringstream out;
    host::writeOutputDocument(out, runs);
    rapidjson::Document parsed;
    parsed.Parse<rapidjson::kParseFullPrecisionFlag>(out.str().c_str());
    ASSERT_FALSE(parsed.HasParseError());
    const auto& data = parsed["runs"][0]["output"]["items"][0]["data"];
    ASSERT_EQ(data["xdata"].Size(), xCopy.size());
    ASSERT_EQ(data["ydata"].Size(), yCopy.size());
    for (rapidjson::SizeType i = 0; i < data["xdata"].Size(); ++i) {
        ASSERT_EQ(data["xdata"][i].GetDouble(), xCopy[i]) << i;
        ASSERT_EQ(data["ydata"][i].GetDouble(), yCopy[i]) << i;
    }
}

TEST(OutputDocumentWriterTest, TakeRunRecordDropsChartDataTheDocumentDoesNotUse) {
    outtest::beginCommand("X.");
    StatJSONGenerator first("P", "");
    outtest::addScatterChart(first, {1}, {2});
    BpProcedure procedure("P", 10);
    StatJSONConverter converter(procedure);
    converter.generateOutput(first.getProcedureStatJSON());
    // A later hand-over replaces the document, and with it the chart data.
    StatJSONGenerator second("Q", "");
    converter.generateOutput(second.getProcedureStatJSON());
    host::RunRecord record = host::takeRunRecord("X.");
    ASSERT_TRUE(record.output);
    EXPECT_STREQ((*record.output)["procedure"].GetString(), "Q");
    EXPECT_TRUE(record.charts.empty());
}

}  // namespace
