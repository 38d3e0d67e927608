// Hostile syntax text costs memory in proportion to its size: the peak memory
// of distcorr stays under twenty times the size of the syntax file, and a
// message quotes at most 80 characters of any token.
#include <gtest/gtest.h>

#include <string>

#include "DistcorrSyntaxHardeningSupport.h"

using hardening::runMeasured;
using hardening::writeFile;

namespace {

constexpr std::size_t kTenMegabytes = 10 * 1000 * 1000;

struct Shape {
    const char* name;
    std::string prefix;  // before the repeated text
    std::string unit;    // repeated up to 10 MB
    std::string suffix;
    std::string message;
};

std::ostream& operator<<(std::ostream& out, const Shape& s) { return out << s.name; }

class SyntaxSize : public ::testing::TestWithParam<Shape> {};

std::string repeated(const std::string& unit, std::size_t size) {
    std::string text;
    text.reserve(size + unit.size());
    while (text.size() < size) text += unit;
    return text;
}

}  // namespace

TEST_P(SyntaxSize, PeakMemoryStaysUnderTwentyTimesTheSyntax) {
    const Shape& shape = GetParam();
    const std::string syntax = shape.prefix + repeated(shape.unit, kTenMegabytes) + shape.suffix;
    const std::string file = writeFile(std::string(shape.name) + ".sps", syntax);
    const auto r = runMeasured({"--quiet", "--data", hardening::smallData(), file});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: " + shape.message + "\n");
    const long limitKilobytes = static_cast<long>(20 * syntax.size() / 1024);
    EXPECT_LT(r.peakKilobytes, limitKilobytes) << "peak " << r.peakKilobytes << " KB for " << syntax.size() << " bytes";
}

std::string place(const char* shape, const std::string& where) {
    return " (" + hardening::tempDir() + "/" + shape + ".sps, " + where + ")";
}

INSTANTIATE_TEST_SUITE_P(
    DistcorrSyntaxHardening, SyntaxSize,
    ::testing::Values(Shape{"Slashes", "DISTANCE CORRELATION ", "/", "\n",
                            "A subcommand name is expected after \"/\", found \"/\"" +
                                place("Slashes", "line 1, column 23") + ". Allowed: ID, CRITERIA, PRINT, PLOT."},
                      Shape{"Parentheses", "DISTANCE CORRELATION ", "(", "\n",
                            "A keyword is expected, found \"(\"" + place("Parentheses", "line 1, column 22") +
                                ". Allowed: VARIABLE."},
                      Shape{"Brackets", "DISTANCE CORRELATION VARIABLE=", "[", "\n",
                            "VARIABLE: \"[\" is not expected inside brackets" + place("Brackets", "line 1, column 32") +
                                "."},
                      Shape{"Equals", "DISTANCE CORRELATION VARIABLE=x1 x2 /CRITERIA CILEVEL", "=", "\n",
                            "CRITERIA CILEVEL: a number is expected, found \"=\"" +
                                place("Equals", "line 1, column 55") + ". Allowed: numbers from 0 to 100."},
                      Shape{"BlankLines", "DISTANCE CORRELATION VARIABLE=x1 x2", "\n", "/FOO.\n",
                            "Subcommand \"FOO\" is not recognized" + place("BlankLines", "line 10000001, column 2") +
                                ". Allowed: ID, CRITERIA, PRINT, PLOT."},
                      Shape{"LongWord", "DISTANCE CORRELATION VARIABLE=x1 ", "x", "\n",
                            "VARIABLE: variable \"" + std::string(77, 'x') + "...\" is not in the active data set" +
                                place("LongWord", "line 1, column 34") + "."},
                      // The list stops at the first name beyond the bound, at column 31 + 3 * 100,000.
                      Shape{"RepeatedNames", "DISTANCE CORRELATION VARIABLE=", "x1 ", "\n",
                            "VARIABLE: a variable list may hold at most 100,000 names; this one holds more" +
                                place("RepeatedNames", "line 1, column 300031") + "."},
                      Shape{"LongNumber", "DISTANCE CORRELATION VARIABLE=x1 x2 /CRITERIA CILEVEL=", "9", "\n",
                            "Number \"" + std::string(77, '9') + "...\" is too large" +
                                place("LongNumber", "line 1, column 55") + "."}));

TEST(DistcorrSyntaxHardening, AMessageQuotesAtMostEightyCharactersOfAToken) {
    // A number of 100,000 characters that is still a double: 101.
    const std::string digits = "101." + std::string(99996, '0');
    const std::string shown = "101." + std::string(73, '0') + "...";
    const std::string data = hardening::smallData();
    // The parser's own messages.
    auto r = runMeasured({"--data", data, "-e", "DISTANCE CORRELATION VARIABLE=x1 x2 /CRITERIA CILEVEL=" + digits});
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: CRITERIA CILEVEL: value " + shown +
                         " is above the maximum of 100 (command line, line 1, column 55). "
                         "Allowed: numbers from 0 to 100.\n");
    r = runMeasured({"--data", data, "-e", "DISTANCE CORRELATION VARIABLE=x1 x2 /PRINT " + digits});
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: PRINT: a keyword is expected, found \"" + shown +
                         "\" (command line, line 1, column 44). "
                         "Allowed: DETAILS, DISTCORRCOEFF, CORREST, DISTVAR, DISTMATRIX.\n");
    // A token the procedure quotes through the host's placeholders.
    r = runMeasured(
        {"--quiet", "--data", data, "-e",
         "DISTANCE CORRELATION VARIABLE=x1 x2 /PRINT DISTMATRIX(CONFIGURE=[x1] SAVE=TRUE OUTFILE=" + digits + ")"});
    EXPECT_NE(r.err.find("Error: DISTANCE CORRELATION: " + shown + " invalid file name param OUTFILE subcom PRINT"),
              std::string::npos)
        << r.err.substr(0, 300);
    EXPECT_LT(r.err.size(), 400u);
}
