// A real DISTANCE CORRELATION permutation test long enough for the live
// progress line: seen through a pseudo-terminal, the line names the
// permutation test and its fraction done, and it is cleared before the tables.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <regex>

#include "DistcorrRunner.h"

namespace {

TEST(DistcorrPermutationProgress, LongPermutationTestShowsItsFractionDone) {
    const std::string folder = makeTempDir();
    const std::string data = folder + "/data.csv";
    {
        std::ofstream out(data);
        out << "x,y\n";
        for (int i = 1; i <= 400; ++i) out << std::sin(i * 1.7) * 10 << ',' << std::cos(i * 0.3) * i / 50.0 << '\n';
    }
    // About 2 s on one thread of the development machine.
    const DistcorrResult r = runDistcorrOnTerminal(
        {"--threads", "1", "--data", data, "-e",
         "DISTANCE CORRELATION VARIABLE=x y /CRITERIA PERMUTATION(MAXITERATIONS=200000) /PRINT DISTCORRCOEFF."});
    EXPECT_EQ(r.exitCode, 0) << r.out;
    // A line drawn at the start of the terminal's line, with the phase and its fraction.
    const std::regex fraction("\\rDISTANCE CORRELATION \\(command line, line 1\\)  0:0[0-9]  permutation test [0-9]+%");
    EXPECT_TRUE(std::regex_search(r.out, fraction)) << r.out;
    // Cleared before the tables are printed.
    const std::size_t table = r.out.find("Distance Correlation Coefficients");
    ASSERT_NE(table, std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("permutation test", table), std::string::npos);
    EXPECT_NE(r.out.rfind("\r\033[K", table), std::string::npos);
}

}  // namespace
