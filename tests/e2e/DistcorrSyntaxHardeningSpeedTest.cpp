// A command that names every variable of a wide data set is read in time
// proportional to its length: the parser, the host's variable checks and the
// procedure's input stage look names up instead of scanning lists. The check
// reads the CPU time of the child (getrusage) and compares it with a run that
// only loads the same data, with a wide margin: quadratic reading took
// seconds here, linear reading takes a few milliseconds.
#include <gtest/gtest.h>

#include <string>

#include "DistcorrSyntaxHardeningSupport.h"

using hardening::runMeasured;
using hardening::writeFile;

TEST(DistcorrSyntaxHardening, TenThousandNamesInVariableAndConfigureAreReadInLinearTime) {
    constexpr int kNames = 10000;
    // v1 .. v10001: the last one is left out of VARIABLE, so that CONFIGURE is
    // refused only after every name has been read and checked.
    std::string header, row, names;
    for (int i = 1; i <= kNames + 1; ++i) {
        const std::string name = "v" + std::to_string(i);
        header += (i > 1 ? "," : "") + name;
        row += (i > 1 ? "," : "") + std::to_string(i % 7);
        if (i <= kNames) names += " " + name;
    }
    const std::string data = writeFile("wide.csv", header + "\n" + row + "\n" + row + "\n");
    const std::string syntax =
        writeFile("wide.sps", "DISTANCE CORRELATION VARIABLE=" + names + "\n /PRINT DISTMATRIX(CONFIGURE=[" + names +
                                  " v" + std::to_string(kNames + 1) + "]).\n");

    const auto loadOnly = runMeasured({"--data", data});
    const auto withCommand = runMeasured({"--quiet", "--data", data, syntax});
    ASSERT_EQ(loadOnly.exitCode, 0) << loadOnly.err;
    EXPECT_EQ(withCommand.exitCode, 1);
    EXPECT_EQ(withCommand.err, "Error: DISTANCE CORRELATION: Only input varlist are allowed in CONFIGURE ...\n");
    const double commandSeconds = withCommand.cpuSeconds - loadOnly.cpuSeconds;
    EXPECT_LT(commandSeconds, 1.0) << "load " << loadOnly.cpuSeconds << " s, with the command "
                                   << withCommand.cpuSeconds << " s";
}
