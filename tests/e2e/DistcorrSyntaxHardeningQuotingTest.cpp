// A message quotes at most 80 characters of a file name written in the
// syntax, and of a cell, a header name or a dictionary field of the data: a
// hostile value of megabytes gives a message of a few hundred characters.
#include <gtest/gtest.h>

#include <string>

#include "DistcorrSyntaxHardeningSupport.h"

using hardening::runMeasured;
using hardening::tempDir;
using hardening::writeFile;

namespace {

constexpr std::size_t kTenMegabytes = 10 * 1000 * 1000;

// How a message shows an ASCII text of more than 80 characters.
std::string cut(const std::string& text) { return text.substr(0, 77) + "..."; }

std::string saveTo(const std::string& path) {
    return "DISTANCE CORRELATION VARIABLE=x1 x2 /PRINT DISTMATRIX(CONFIGURE=[x1] SAVE=TRUE OUTFILE='" + path + "').\n";
}

}  // namespace

TEST(DistcorrSyntaxHardeningQuoting, AnOutfileInAFolderThatDoesNotExist) {
    const std::string path = tempDir() + "/missing/" + std::string(kTenMegabytes, 'c');
    const std::string syntax = writeFile("outfile-folder.sps", saveTo(path));
    const auto r = runMeasured({"--quiet", "--data", hardening::smallData(), syntax});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: Cannot use the file name \"" + cut(path) + "\": the folder \"" +
                         tempDir() + "/missing\" does not exist.\n");
    EXPECT_LT(r.peakKilobytes, static_cast<long>(20 * kTenMegabytes / 1024));
}

TEST(DistcorrSyntaxHardeningQuoting, AnOutfileWhoseNameIsTooLongForTheSystem) {
    const std::string path = tempDir() + "/" + std::string(kTenMegabytes, 'b');
    const std::string syntax = writeFile("outfile-name.sps", saveTo(path));
    const auto r = runMeasured({"--quiet", "--data", hardening::smallData(), syntax});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: Cannot write the data file \"" + cut(path) +
                         "\": cannot create a file in the folder \"" + tempDir() +
                         "\": File name too long.\ndistancecorr_entry: Step6 Unknown error occurred.\n");
}

TEST(DistcorrSyntaxHardeningQuoting, ACellOfTheData) {
    const std::string cell(1000000, 'a');
    const std::string data = writeFile("cell.csv", "x1,x2\n1,2\n" + cell + ",3\n");
    writeFile("cell.schema.json", R"({"fields": [{"name": "x1", "type": "number"}, {"name": "x2"}]})");
    const auto r = runMeasured({"--data", data, "-e", ""});
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_EQ(r.err, "Error: " + data + ":3: \"" + cut(cell) + "\" in column \"x1\" is not a number\n");
}

TEST(DistcorrSyntaxHardeningQuoting, AHeaderNameOfTheData) {
    const std::string name(1000000, 'h');
    const std::string data = writeFile("header.csv", "x1," + name + "\n1,2\n2,3\n");
    const auto r = runMeasured({"--data", data, "-e", ""});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.err, "Note: " + data + ":1: column 2 (\"" + cut(name) + "\") is named " + std::string(64, 'h') +
                         ": a variable name may be at most 64 bytes long\n");
}

TEST(DistcorrSyntaxHardeningQuoting, AFieldOfTheDictionary) {
    const std::string name(1000000, 'f');
    const std::string data = writeFile("field.csv", "x1,x2\n1,2\n2,3\n");
    const std::string schema =
        writeFile("field.schema.json", R"({"fields": [{"name": "x1"}, {"name": ")" + name + R"("}]})");
    const auto r = runMeasured({"--data", data, "-e", ""});
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_EQ(r.err, "Error: " + schema + ": field 2 (\"" + cut(name) + "\") is not a column of " + data + "\n");
}
