// Syntax text as editors and other systems write it: a byte order mark, old
// Mac line ends, and control characters that must never reach a message raw.
#include <gtest/gtest.h>

#include <string>

#include "DistcorrSyntaxHardeningSupport.h"

using hardening::runMeasured;
using hardening::writeFile;

namespace {

const std::string kCommand = "DISTANCE CORRELATION VARIABLE=x1 x2 x3\n  /PRINT DISTCORRCOEFF.\n";

// True when the text holds a byte below 0x20 other than a line end.
bool hasRawControl(const std::string& text) {
    for (char c : text)
        if (static_cast<unsigned char>(c) < 0x20 && c != '\n') return true;
    return false;
}

}  // namespace

TEST(DistcorrSyntaxHardening, ASyntaxFileWithAByteOrderMarkRunsLikeOneWithout) {
    const std::string data = hardening::smallData();
    const auto plain = runMeasured({"--data", data, writeFile("plain.sps", kCommand)});
    const auto marked = runMeasured({"--data", data, writeFile("bom.sps", "\xEF\xBB\xBF" + kCommand)});
    ASSERT_EQ(plain.exitCode, 0) << plain.err;
    EXPECT_EQ(marked.exitCode, 0) << marked.err;
    EXPECT_EQ(marked.err, "");
    EXPECT_NE(plain.out.find("Distance Correlation"), std::string::npos);
    EXPECT_EQ(marked.out, plain.out);
}

TEST(DistcorrSyntaxHardening, ALoneCarriageReturnEndsALine) {
    const std::string data = hardening::smallData();
    const auto lf = runMeasured({"--data", data, writeFile("lf.sps", kCommand + kCommand)});
    std::string mac = kCommand + kCommand;
    for (char& c : mac)
        if (c == '\n') c = '\r';
    const auto cr = runMeasured({"--data", data, writeFile("cr.sps", mac)});
    ASSERT_EQ(lf.exitCode, 0) << lf.err;
    EXPECT_EQ(cr.exitCode, 0) << cr.err;
    EXPECT_EQ(cr.out, lf.out);
    // Lines are counted at each CR: the error is on line 4, as an editor shows it.
    const std::string file = writeFile("cr-error.sps", "\r" + kCommand.substr(0, 38) + "\r\r  /PRINT FOO.\r");
    const auto bad = runMeasured({"--quiet", "--data", data, file});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_EQ(bad.err, "Error: DISTANCE CORRELATION: PRINT: keyword \"FOO\" is not recognized (" + file +
                           ", line 4, column 10). Allowed: DETAILS, DISTCORRCOEFF, CORREST, DISTVAR, DISTMATRIX.\n");
}

TEST(DistcorrSyntaxHardening, AControlCharacterIsEscapedInMessages) {
    const std::string data = hardening::smallData();
    const std::string nul = writeFile("nul.sps", std::string("DISTANCE CORRELATION VARIABLE=x1 x\0y.\n", 38));
    auto r = runMeasured({"--quiet", "--data", data, nul});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: Character \"\\u0000\" is not allowed here (" + nul +
                         ", line 1, column 35).\n");

    // An escape sequence in a quoted name would repaint the terminal.
    const std::string escape =
        writeFile("escape.sps", "DISTANCE CORRELATION VARIABLE=x1 x2 /ID VARIABLE='a\x1b[2J\x7f\tb'.\n");
    const std::string json = hardening::tempDir() + "/escape.json";
    r = runMeasured({"--quiet", "--data", data, "--output", json, escape});
    EXPECT_EQ(r.exitCode, 1);
    const std::string message = "ID VARIABLE: a variable name is expected, found \"'a\\u001B[2J\\u007F\\u0009b'\" (" +
                                escape + ", line 1, column 50).";
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: " + message + "\n");
    EXPECT_FALSE(hasRawControl(r.err));
    // The output document keeps the same text.
    const rapidjson::Document doc = parseJsonFile(json);
    ASSERT_TRUE(doc.IsObject() && doc.HasMember("runs"));
    EXPECT_EQ(std::string(doc["runs"][0]["messages"][0]["text"].GetString()), message);

    // Text that is not UTF-8 is shown byte by byte.
    const std::string latin1 = writeFile("latin1.sps",
                                         "DISTANCE CORRELATION VARIABLE=x1 gr\xf6\xdf"
                                         "e.\n");
    r = runMeasured({"--quiet", "--data", data, latin1});
    EXPECT_EQ(r.err,
              "Error: DISTANCE CORRELATION: VARIABLE: variable \"gr\\xF6\\xDFe\" is not in the active data set (" +
                  latin1 + ", line 1, column 34).\n");
}
