// A syntax text of very many small commands: each command is run as it is
// split off and written into the output document and the HTML report as it
// ends, so the peak memory of distcorr does not grow with the number of
// commands, and both documents still hold every run.
#include <gtest/gtest.h>

#include <string>

#include "DistcorrSyntaxHardeningSupport.h"

using hardening::runMeasured;
using hardening::tempDir;
using hardening::writeFile;

namespace {

// Ten times the commands may add this much to the peak (the text itself and
// the allocator's slack); keeping every run would add a hundred megabytes.
constexpr long kGrowthKilobytes = 16 * 1024;

std::string repeated(const std::string& command, std::size_t count) {
    std::string text;
    text.reserve(command.size() * count);
    for (std::size_t i = 0; i < count; ++i) text += command;
    return text;
}

std::size_t count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++n;
    return n;
}

struct Reports {
    hardening::MeasuredRun run;
    std::string json;
    std::string html;
};

// Runs the commands with both reports written to files.
Reports runWithReports(const std::string& name, const std::string& command, std::size_t commands) {
    const std::string syntax = writeFile(name + ".sps", repeated(command, commands));
    const std::string json = tempDir() + "/" + name + ".json";
    const std::string html = tempDir() + "/" + name + ".html";
    Reports r;
    r.run = runMeasured({"--quiet", "--data", hardening::smallData(), syntax, "--output", json, "--html", html});
    r.json = readWholeFile(json);
    r.html = readWholeFile(html);
    return r;
}

}  // namespace

TEST(DistcorrSyntaxHardeningCommands, UnknownCommandsDoNotAddToThePeakMemory) {
    const Reports few = runWithReports("unknown-few", "x.\n", 10000);
    const Reports many = runWithReports("unknown-many", "x.\n", 100000);
    EXPECT_EQ(many.run.exitCode, 1);
    EXPECT_EQ(count(many.run.err, "Error: Unknown command \"x.\""), 100000u);
    EXPECT_LT(many.run.peakKilobytes - few.run.peakKilobytes, kGrowthKilobytes)
        << "peak " << few.run.peakKilobytes << " KB for 10,000 commands, " << many.run.peakKilobytes
        << " KB for 100,000";
    // Every run is in both documents, the last one with its own line.
    const rapidjson::Document doc = parseJsonFile(tempDir() + "/unknown-many.json");
    ASSERT_TRUE(doc.IsObject() && doc.HasMember("runs") && doc["runs"].IsArray()) << many.json.substr(0, 200);
    ASSERT_EQ(doc["runs"].Size(), 100000u);
    EXPECT_EQ(std::string(doc["runs"][99999]["messages"][0]["text"].GetString()),
              "Unknown command \"x.\" (" + tempDir() + "/unknown-many.sps, line 100000).");
    EXPECT_EQ(count(many.html, "<section class=\"run\">"), 100000u);
    EXPECT_EQ(many.html.substr(many.html.size() - 16), "</body>\n</html>\n");
}

TEST(DistcorrSyntaxHardeningCommands, CommandsWithTablesDoNotAddToThePeakMemory) {
    const std::string command = "DISTANCE CORRELATION VARIABLE=x1 x2 /PRINT DISTCORRCOEFF.\n";
    const Reports few = runWithReports("tables-few", command, 1000);
    const Reports many = runWithReports("tables-many", command, 8000);
    EXPECT_EQ(many.run.exitCode, 0) << many.run.err.substr(0, 300);
    EXPECT_LT(many.run.peakKilobytes - few.run.peakKilobytes, kGrowthKilobytes)
        << "peak " << few.run.peakKilobytes << " KB for 1,000 commands, " << many.run.peakKilobytes << " KB for 8,000";
    // Eight times the runs of the smaller document, byte for byte: the
    // document's opening and end once, and the same text for every run.
    const std::string start = "{\n  \"runs\": [\n", end = "\n  ]\n}\n";
    ASSERT_EQ(few.json.compare(0, start.size(), start), 0);
    const std::string fewRuns = few.json.substr(start.size(), few.json.size() - start.size() - end.size());
    std::string eightTimes = fewRuns;
    for (int i = 1; i < 8; ++i) eightTimes += ",\n" + fewRuns;
    EXPECT_TRUE(many.json == start + eightTimes + end) << "the document of 8,000 runs differs";
    EXPECT_EQ(count(many.html, "<table class=\"pivot"), count(few.html, "<table class=\"pivot") * 8);
}
