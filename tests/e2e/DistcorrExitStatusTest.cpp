// The exit status of distcorr tells a script whether the analysis ran: 0 when
// every command ran to its end, 1 when a command reported an error or its
// procedure ended it early, 2 for a usage error, 3 when the data could not be
// loaded. Each way to fail is run end to end.
#include <gtest/gtest.h>

#include <fstream>

#include "DistcorrRunner.h"
#include "GoldenCheck.h"

namespace {

const std::string kSmall = fixture("e2e/small.csv");
const std::string kStep4 = "distancecorr_entry: Step4 Unknown error occurred.\n";

DistcorrResult runCommand(const std::string& data, const std::string& command) {
    return runDistcorr({"--quiet", "--data", data, "-e", command});
}

// A CSV file written by the test: a header and rows of numbers.
std::string writeCsv(const std::string& name, const std::string& text) {
    const std::string path = makeTempDir() + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

TEST(DistcorrExitStatus, CompleteRunExitsZero) {
    const DistcorrResult r = runCommand(kSmall, "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
}

TEST(DistcorrExitStatus, SyntaxErrorExitsOne) {
    const DistcorrResult r = runCommand(kSmall, "DISTANCE CORRELATION VARIABLE=x y /PRINT BOGUS.");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("Error: DISTANCE CORRELATION: PRINT: keyword \"BOGUS\" is not recognized"), std::string::npos)
        << r.err;
}

TEST(DistcorrExitStatus, UnknownCommandExitsOne) {
    const DistcorrResult r = runCommand(kSmall, "FREQUENCIES VARIABLES=x.");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: Unknown command \"FREQUENCIES\" (command line, line 1).\n");
}

TEST(DistcorrExitStatus, ThirtyOneVariablesEndTheRunEarlyAndExitOne) {
    // The engine takes at most 30 variables; the 31st makes it fail.
    std::string csv;
    for (int v = 1; v <= 31; ++v) csv += (v > 1 ? "," : "") + std::string("v") + std::to_string(v);
    csv += "\n";
    for (int row = 0; row < 4; ++row) {
        for (int v = 1; v <= 31; ++v) csv += (v > 1 ? "," : "") + std::to_string((row * 7 + v * 3) % 11);
        csv += "\n";
    }
    const DistcorrResult r =
        runCommand(writeCsv("wide.csv", csv), "DISTANCE CORRELATION VARIABLE=v1 TO v31 /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, kStep4 + "Note: DISTANCE CORRELATION produced no output.\n");
}

TEST(DistcorrExitStatus, NoCompleteCaseEndsTheRunEarlyAndExitsOne) {
    const std::string data = writeCsv("gaps.csv", "a,b\n1,\n,2\n3,\n");
    const DistcorrResult r = runCommand(data, "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, kStep4 + "Note: DISTANCE CORRELATION produced no output.\n");
}

TEST(DistcorrExitStatus, MemoryGuardExitsOne) {
    // Two variables need 2 * 2 * n^2 * 8 = 32 n^2 bytes: 1,073,883,168 for 5,793
    // cases, just over the 1 GiB limit (5,792 cases need 1,073,512,448).
    std::string csv = "a,b\n";
    for (int i = 0; i < 5793; ++i) csv += std::to_string(i) + "," + std::to_string(i * 7 % 13) + "\n";
    const DistcorrResult r =
        runCommand(writeCsv("large.csv", csv), "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Warning: DISTANCE CORRELATION: Insufficient memory for Distance Correlation.\n" + kStep4);
}

TEST(DistcorrExitStatus, FailedComputationExitsOne) {
    // CILEVEL=100 asks for the normal quantile at probability 1.
    const DistcorrResult r =
        runCommand(kSmall, "DISTANCE CORRELATION VARIABLE=x y /CRITERIA CILEVEL=100 /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, kStep4 + "Note: DISTANCE CORRELATION produced no output.\n");
}

TEST(DistcorrExitStatus, FailingSavedFileExitsOneAndKeepsTheTables) {
    const std::string dir = makeTempDir();
    ASSERT_EQ(::mkdir((dir + "/dist.schema.json").c_str(), 0755), 0);
    const DistcorrResult r = runDistcorr(
        {"--data", kSmall, "-e",
         "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF DISTMATRIX(CONFIGURE=[x] SAVE=TRUE OUTFILE='" + dir +
             "/dist.csv')."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.out.find("Distance Correlation Coefficients"), std::string::npos) << r.out;
    EXPECT_NE(r.err.find("distancecorr_entry: Step6 Unknown error occurred."), std::string::npos) << r.err;
}

TEST(DistcorrExitStatus, WarningAloneDoesNotFailTheCommand) {
    // A matrix of more than 100 cases is cut and warned about; the run completes.
    const DistcorrResult r = runCommand(golden::dataFile("ids150.csv"),
                                        "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTMATRIX(CONFIGURE=[a]).");
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "Warning: DISTANCE CORRELATION: Performance improvement ...\n");
}

TEST(DistcorrExitStatus, OneFailedCommandAmongGoodOnesExitsOne) {
    const DistcorrResult r = runDistcorr({"--quiet", "--data", kSmall, "-e", "DISTANCE CORRELATION VARIABLE=x y.", "-e",
                                          "DISTANCE CORRELATION VARIABLE=x y /CRITERIA CILEVEL=100.", "-e",
                                          "DISTANCE CORRELATION VARIABLE=x y."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, kStep4 + "Note: DISTANCE CORRELATION produced no output.\n");
}

TEST(DistcorrExitStatus, DataErrorExitsThree) {
    const DistcorrResult r = runCommand(fixture("e2e/ragged.csv"), "DISTANCE CORRELATION VARIABLE=a b.");
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_NE(r.err.find("ragged.csv:3"), std::string::npos) << r.err;
}

TEST(DistcorrExitStatus, UsageErrorExitsTwo) {
    EXPECT_EQ(runDistcorr({"--data", kSmall, "--bogus"}).exitCode, 2);
    EXPECT_EQ(runDistcorr({"--data", kSmall, "--threads", "0", "-e", "X."}).exitCode, 2);
}

// The probe procedure (tests/e2e/probe) shows how the host judges procedures
// other than DISTANCE CORRELATION.
const std::string kProbes = std::string(DC_BINARY_DIR) + "/tests/probe";

TEST(DistcorrExitStatus, TextOfTheProceduresOwnOnStandardErrorFailsTheCommand) {
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE STDERR."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "probe: a line of the procedure's own\nNote: PROBE produced no output.\n");
}

TEST(DistcorrExitStatus, HostNotesDoNotFailTheCommand) {
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE WAIT 1."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "Note: PROBE: waited 1 ms without a progress monitor\n");
}

TEST(DistcorrExitStatus, ExceptionFromAProcedureIsAnErrorNotACrash) {
    const DistcorrResult r =
        runDistcorr({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE THROW.", "-e", "PROBE WAIT 1."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err,
              "Error: PROBE: The procedure stopped with an unexpected error: probe failure\n"
              "Note: PROBE: waited 1 ms without a progress monitor\n");
}

}  // namespace
