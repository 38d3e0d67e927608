// A real DISTANCE CORRELATION permutation test long enough for the live
// progress line: seen through a pseudo-terminal, the line names the
// permutation test and its fraction done, and it is cleared before the tables.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <regex>

#include "DistcorrRunner.h"

namespace {

// The progress lines drawn: each starts with "\r" and ends with ESC [ K.
std::vector<std::string> progressLines(const std::string& terminal) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    while ((at = terminal.find('\r', at)) != std::string::npos) {
        const std::size_t end = terminal.find("\033[K", at);
        if (end == std::string::npos) break;
        if (end > at + 1) lines.push_back(terminal.substr(at + 1, end - at - 1));
        at = end;
    }
    return lines;
}

TEST(DistcorrPermutationProgress, LongPermutationTestShowsItsFractionDone) {
    const std::string folder = makeTempDir();
    const std::string data = folder + "/data.csv";
    {
        std::ofstream out(data);
        out << "x,y\n";
        for (int i = 1; i <= 400; ++i) out << std::sin(i * 1.7) * 10 << ',' << std::cos(i * 0.3) * i / 50.0 << '\n';
    }
    // About 2.5 s on one thread of the development machine.
    const DistcorrResult r = runDistcorrOnTerminal(
        {"--threads", "1", "--data", data, "-e",
         "DISTANCE CORRELATION VARIABLE=x y /CRITERIA PERMUTATION(MAXITERATIONS=200000) /PRINT DISTCORRCOEFF."});
    EXPECT_EQ(r.exitCode, 0) << r.out;
    const std::vector<std::string> lines = progressLines(r.out);
    ASSERT_FALSE(lines.empty()) << r.out;
    const std::regex fraction("DISTANCE CORRELATION \\(command line, line 1\\)  0:0[0-9]  permutation test [0-9]+%.*");
    int withFraction = 0;
    for (const std::string& line : lines) withFraction += std::regex_match(line, fraction) ? 1 : 0;
    EXPECT_GT(withFraction, 0) << r.out;
    // Cleared before the tables are printed.
    const std::size_t table = r.out.find("Distance Correlation Coefficients");
    ASSERT_NE(table, std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("permutation test", table), std::string::npos);
    EXPECT_NE(r.out.rfind("\r\033[K", table), std::string::npos);
}

}  // namespace
