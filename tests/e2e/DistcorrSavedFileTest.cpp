// The saved distance file end to end: distcorr writes dist.csv with its
// dictionary dist.schema.json, the file loads back, holds the unrounded
// distances and the row labels, and a failed write leaves the tables and an
// existing file alone.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>

#include "DistcorrRunner.h"
#include "GoldenCheck.h"

namespace {

using golden::splitCsvLine;
using Strings = std::vector<std::string>;

const std::string kTwelve = golden::dataFile("twelve.csv");

std::vector<Strings> csvRows(const std::string& path) {
    std::vector<Strings> rows;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) rows.push_back(splitCsvLine(line));
    return rows;
}

std::string label(const std::string& var, double value) {
    char text[64];
    std::snprintf(text, sizeof text, "[%s = %.3f]", var.c_str(), value);
    return text;
}

DistcorrResult saveRun(const std::string& configure, const std::string& outfile, const std::string& extraPrint = "") {
    return runDistcorr({"--quiet", "--data", kTwelve, "-e",
                        "DISTANCE CORRELATION VARIABLE=a b /PRINT " + extraPrint + " DISTMATRIX(CONFIGURE=[" +
                            configure + "] SAVE=TRUE OUTFILE='" + outfile + "')."});
}

// Checks the 12 rows of one block: row names and |v_r - v_c| as written.
void expectBlock(const std::vector<Strings>& rows, std::size_t first, int firstRowNumber, const std::vector<double>& v) {
    for (std::size_t r = 0; r < v.size(); ++r) {
        const Strings& row = rows[first + r];
        ASSERT_EQ(row.size(), v.size() + 1) << "line " << first + r + 1;
        EXPECT_EQ(row[0], "P" + std::to_string(firstRowNumber + static_cast<int>(r)));
        for (std::size_t c = 0; c < v.size(); ++c)
            EXPECT_EQ(std::stod(row[c + 1]), std::fabs(v[r] - v[c])) << "line " << first + r + 1 << " column " << c + 2;
    }
}

TEST(DistcorrSavedFile, WritesUnroundedDistancesAndTheirDictionary) {
    const std::string dir = makeTempDir();
    const DistcorrResult r = saveRun("a", dir + "/dist.csv");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    const std::vector<double> a = golden::readCsv(kTwelve).column("a");

    const std::vector<Strings> rows = csvRows(dir + "/dist.csv");
    ASSERT_EQ(rows.size(), 13u);
    Strings header = {"VarName_"};
    for (int j = 1; j <= 12; ++j) header.push_back("P" + std::to_string(j));
    EXPECT_EQ(rows[0], header);
    expectBlock(rows, 1, 1, a);
    // Not rounded to the three decimals of the format: |3.2 - 1.5| is 1.7000000000000002.
    EXPECT_EQ(rows[1][2], "1.7000000000000002");

    const rapidjson::Document dict = golden::parseJsonExactly(dir + "/dist.schema.json");
    ASSERT_TRUE(dict.IsObject());
    EXPECT_EQ(std::string(dict["title"].GetString()), "Distance Matrix");
    const auto& fields = dict["fields"];
    ASSERT_EQ(fields.Size(), 13u);
    EXPECT_EQ(std::string(fields[0]["name"].GetString()), "VarName_");
    EXPECT_EQ(std::string(fields[0]["type"].GetString()), "string");
    EXPECT_EQ(std::string(fields[0]["measurementLevel"].GetString()), "nominal");
    EXPECT_EQ(fields[0]["width"].GetInt(), 8);
    for (rapidjson::SizeType j = 1; j <= 12; ++j) {
        EXPECT_EQ(std::string(fields[j]["name"].GetString()), "P" + std::to_string(j));
        EXPECT_EQ(std::string(fields[j]["type"].GetString()), "number");
        EXPECT_EQ(std::string(fields[j]["measurementLevel"].GetString()), "scale");
        EXPECT_EQ(fields[j]["displayWidth"].GetInt(), 8);
        EXPECT_EQ(fields[j]["displayDecimals"].GetInt(), 3);
    }
    // Value labels in text order of the row names: P1, P10, P11, P12, P2, ...
    const Strings order = {"P1", "P10", "P11", "P12", "P2", "P3", "P4", "P5", "P6", "P7", "P8", "P9"};
    const auto& categories = fields[0]["categories"];
    ASSERT_EQ(categories.Size(), order.size());
    for (rapidjson::SizeType k = 0; k < categories.Size(); ++k) {
        const int caseNumber = std::stoi(order[k].substr(1));
        EXPECT_EQ(std::string(categories[k]["value"].GetString()), order[k]);
        EXPECT_EQ(std::string(categories[k]["label"].GetString()), label("a", a[static_cast<std::size_t>(caseNumber - 1)]));
    }
    EXPECT_EQ(std::string(categories[0]["label"].GetString()), "[a = 3.200]");
}

TEST(DistcorrSavedFile, TheSavedFileLoadsBack) {
    const std::string dir = makeTempDir();
    ASSERT_EQ(saveRun("a", dir + "/dist.csv").exitCode, 0);
    const DistcorrResult r = runDistcorr({"--data", dir + "/dist.csv"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_NE(r.out.find("12 cases, 13 variables (Distance Matrix)"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("VarName_  text(8)  nominal  12 value labels"), std::string::npos) << r.out;
    for (int j = 1; j <= 12; ++j)
        EXPECT_NE(r.out.find("  P" + std::to_string(j) + "  numeric  scale\n"), std::string::npos) << j;
}

TEST(DistcorrSavedFile, TwoVariablesAreSeparatedByABlankCase) {
    const std::string dir = makeTempDir();
    const DistcorrResult r = saveRun("a b", dir + "/dist.csv");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const golden::CsvTable data = golden::readCsv(kTwelve);

    const std::vector<Strings> rows = csvRows(dir + "/dist.csv");
    ASSERT_EQ(rows.size(), 1u + 12u + 1u + 12u);
    expectBlock(rows, 1, 1, data.column("a"));
    EXPECT_EQ(rows[13], Strings(13, ""));
    expectBlock(rows, 14, 13, data.column("b"));

    const rapidjson::Document dict = golden::parseJsonExactly(dir + "/dist.schema.json");
    ASSERT_TRUE(dict.IsObject());
    EXPECT_EQ(dict["fields"].Size(), 13u);  // the second block reuses P1 .. P12
    const auto& categories = dict["fields"][0]["categories"];
    ASSERT_EQ(categories.Size(), 24u);
    for (const auto& c : categories.GetArray()) {
        const int caseNumber = std::stoi(std::string(c["value"].GetString()).substr(1));
        const std::string expected = caseNumber <= 12
                                         ? label("a", data.column("a")[static_cast<std::size_t>(caseNumber - 1)])
                                         : label("b", data.column("b")[static_cast<std::size_t>(caseNumber - 13)]);
        EXPECT_EQ(std::string(c["label"].GetString()), expected) << c["value"].GetString();
    }

    // The blank case reads back as a case with every value missing.
    const DistcorrResult load = runDistcorr({"--data", dir + "/dist.csv"});
    EXPECT_EQ(load.exitCode, 0) << load.err;
    EXPECT_NE(load.out.find("25 cases, 13 variables"), std::string::npos) << load.out;
}

TEST(DistcorrSavedFile, SaveFalseIgnoresTheOutfile) {
    const std::string dir = makeTempDir();
    const DistcorrResult r = runDistcorr({"--quiet", "--data", kTwelve, "-e",
                                          "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTMATRIX(CONFIGURE=[a] SAVE=FALSE "
                                          "OUTFILE='" + dir + "/dist.csv')."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_FALSE(std::ifstream(dir + "/dist.csv").good());
    EXPECT_FALSE(std::ifstream(dir + "/dist.schema.json").good());
}

bool endsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

TEST(DistcorrSavedFile, FailedWriteKeepsTablesAndTheExistingFile) {
    const std::string dir = makeTempDir();
    const std::string old = "VarName_,P1\r\nkept,1\r\n";
    std::ofstream(dir + "/dist.csv", std::ios::binary) << old;
    ASSERT_EQ(mkdir((dir + "/dist.schema.json").c_str(), 0755), 0);

    const DistcorrResult r = runDistcorr(
        {"--data", kTwelve, "--output", dir + "/out.json", "-e",
         "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTCORRCOEFF DISTMATRIX(CONFIGURE=[a] SAVE=TRUE OUTFILE='" + dir +
             "/dist.csv')."});
    EXPECT_EQ(r.exitCode, 1);
    // The tables were produced before the save stage failed.
    EXPECT_NE(r.out.find("Distance Correlation Coefficients"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Distance Matrix for Variable a"), std::string::npos) << r.out;
    const rapidjson::Document doc = golden::parseJsonExactly(dir + "/out.json");
    ASSERT_TRUE(doc.IsObject());
    EXPECT_EQ(doc["runs"][0]["output"]["items"].Size(), 2u);

    // Standard error: the host's message, then the save stage's line, nothing else.
    std::istringstream err(r.err);
    Strings lines;
    for (std::string line; std::getline(err, line);) lines.push_back(line);
    ASSERT_EQ(lines.size(), 2u) << r.err;
    EXPECT_EQ(lines[0].rfind("Error: ", 0), 0u) << lines[0];
    EXPECT_TRUE(endsWith(lines[0], "Cannot write the dictionary \"" + dir + "/dist.schema.json\" of the data file \"" +
                                       dir + "/dist.csv\": a folder of that name exists."))
        << lines[0];
    EXPECT_EQ(lines[1], "distancecorr_entry: Step6 Unknown error occurred.");

    EXPECT_EQ(readWholeFile(dir + "/dist.csv"), old);
    // No temporary file is left beside it.
    EXPECT_EQ(folderEntries(dir), (Strings{"dist.csv", "dist.schema.json", "out.json"}));
}

}  // namespace
