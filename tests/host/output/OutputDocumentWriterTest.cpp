// The output document writer: exact bytes of a small document, no "output"
// member for a run without a document, chart columns streamed from the data
// kept beside the document, numbers in their shortest round-trip form.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "FixedWorkerPool.h"
#include "OutputTestSupport.h"
#include "output/JsonStreamWriter.h"
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
          "text": "Say \"hi\"\tnow \u0001 )json"
                             "\xef\xbf\xbd"
                             " \xc3\xbc"
                             R"json("
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
    EXPECT_EQ(one.str(),
              "{\n  \"runs\": [\n    {\n      \"command\": \"X.\",\n      \"messages\": []\n    }\n  ]\n}\n");
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

TEST(OutputDocumentWriterTest, ControlCharactersAreEscapedWithLowerCaseHexDigits) {
    host::RunRecord run;
    run.command = std::string("A\x0b\x0e\x0f\x1a\x1b\x1f\x7f\\u") + std::string(1, '\0') + "B\t";
    std::vector<host::RunRecord> runs;
    runs.push_back(std::move(run));
    std::ostringstream out;
    host::writeOutputDocument(out, runs);
    // DEL (0x7f) is no control character in JSON and stays as it is; the
    // backslash before "u" is escaped and starts no escape of its own.
    EXPECT_NE(out.str().find(R"("command": "A\u000b\u000e\u000f\u001a\u001b\u001f)"
                             "\x7f"
                             R"(\\u\u0000B\t",)"),
              std::string::npos)
        << out.str();
}

// The bytes of a document with a chart of n points, x[i] = i / 7 (with a
// NaN and an infinity when there is room), written with the given threads.
std::string chartDocument(std::size_t n, unsigned threads) {
    std::vector<double> x(n), y(n);
    for (std::size_t i = 0; i < n; ++i) {
        x[i] = static_cast<double>(i) / 7;
        y[i] = -static_cast<double>(i) * 1e-300;
    }
    if (n > 3) {
        x[1] = std::numeric_limits<double>::quiet_NaN();
        y[2] = std::numeric_limits<double>::infinity();
    }
    std::ostringstream out;
    host::JsonStreamWriter w(out, threads);
    w.beginObject();
    w.key("x");
    w.numberArray(x);
    w.key("y");
    w.numberArray(y);
    w.endObject();
    w.finish();
    return out.str();
}

TEST(OutputDocumentWriterTest, NumberArraysAreTheSameBytesForAnyThreadCount) {
    const std::size_t block = host::JsonStreamWriter::kBlockNumbers;
    for (std::size_t n :
         {std::size_t{0}, std::size_t{1}, std::size_t{5}, block - 1, block, block + 1, 2 * block + 1, 5 * block + 17}) {
        const std::string one = chartDocument(n, 1);
        for (unsigned threads : {2u, 3u, 8u}) EXPECT_EQ(chartDocument(n, threads), one) << n << " points, " << threads;
        // The text itself: one line per array, numbers parted by ", ".
        rapidjson::Document parsed;
        parsed.Parse<rapidjson::kParseFullPrecisionFlag>(one.c_str());
        ASSERT_FALSE(parsed.HasParseError()) << n;
        ASSERT_EQ(parsed["x"].Size(), n);
        for (rapidjson::SizeType i = 0; i < n; ++i) {
            if (n > 3 && i == 1) {
                EXPECT_TRUE(parsed["x"][i].IsNull());
                continue;
            }
            ASSERT_EQ(parsed["x"][i].GetDouble(), static_cast<double>(i) / 7) << i;
        }
        if (n > 3) {
            EXPECT_TRUE(parsed["y"][2].IsNull());
        }
        EXPECT_EQ(std::count(one.begin(), one.end(), '\n'), 4);
    }
    EXPECT_EQ(chartDocument(5, 2),
              "{\n  \"x\": [0, null, 0.2857142857142857, 0.42857142857142855, 0.5714285714285714],\n"
              "  \"y\": [-0, -1e-300, null, -3e-300, -4e-300]\n}\n");
}

TEST(OutputDocumentWriterTest, WholeDocumentIsTheSameBytesForAnyThreadCount) {
    outtest::beginCommand("X.");
    std::vector<double> x(100000), y(100000);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = std::sqrt(static_cast<double>(i));
        y[i] = std::sin(static_cast<double>(i));
    }
    StatJSONGenerator generator("P", "");
    outtest::addCoefficientsTable(generator, {{"a vs. b", 0.5, 0.25, 0.75}});
    outtest::addScatterChart(generator, std::move(x), std::move(y));
    std::vector<host::RunRecord> runs;
    runs.push_back(outtest::handOver(generator, "X."));
    std::string first;
    for (unsigned threads : {1u, 2u, 3u, 8u}) {
        ScopedThreadCount pool(threads);
        std::ostringstream out;
        host::writeOutputDocument(out, runs);
        if (threads == 1)
            first = out.str();
        else
            EXPECT_EQ(out.str(), first) << threads << " threads";
    }
    EXPECT_GT(first.size(), 1000000u);
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
