// The same output gives the same bytes: the JSON document, the text and the
// HTML page, also with a density image.
#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

#include "OutputTestSupport.h"

namespace {

std::vector<host::RunRecord> buildRuns() {
    std::vector<host::RunRecord> runs;
    outtest::beginCommand("DISTANCE CORRELATION VARIABLES=a b.");
    host::HostSession::instance().addMessage(host::MessageLevel::Warning, "DISTANCE CORRELATION", "W ...");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"a vs. b", 1.0 / 3.0, 0.1, 0.7}});
    std::vector<double> x, y;
    for (int i = 0; i < 30000; ++i) {
        x.push_back(std::sin(i) * 10);
        y.push_back(std::cos(i * 0.37) / 7);
    }
    outtest::addScatterChart(generator, x, y);
    outtest::addScatterChart(generator, {1, 2, 3}, {0.1, 0.2, 0.30000000000000004});
    runs.push_back(outtest::handOver(generator, "DISTANCE CORRELATION VARIABLES=a b."));
    return runs;
}

struct Bytes {
    std::string json;
    std::string text;
    std::string html;
};

Bytes write(const std::vector<host::RunRecord>& runs) {
    std::ostringstream json, text, html;
    host::writeOutputDocument(json, runs);
    for (const auto& run : runs) host::renderText(text, run);
    host::writeHtmlReport(html, runs, {"data.csv", 10, 2, "", 0});
    return {json.str(), text.str(), html.str()};
}

TEST(OutputDeterminismTest, SameOutputSameBytes) {
    const Bytes first = write(buildRuns());
    const Bytes second = write(buildRuns());
    EXPECT_EQ(first.json, second.json);
    EXPECT_EQ(first.text, second.text);
    EXPECT_EQ(first.html, second.html);
    // Writing the same records twice changes nothing either.
    const auto runs = buildRuns();
    EXPECT_EQ(write(runs).json, write(runs).json);
    EXPECT_NE(first.json.find("[0.1, 0.2, 0.30000000000000004]"), std::string::npos);
    EXPECT_NE(first.html.find("data:image/png"), std::string::npos);
}

}  // namespace
