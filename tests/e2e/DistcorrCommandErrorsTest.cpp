// Commands the input stage refuses, run through distcorr: each prints exactly
// its message as "Error: DISTANCE CORRELATION: <text>" on standard error,
// nothing else from the procedure, and exits with 1.
#include <gtest/gtest.h>

#include <fstream>

#include "DistcorrRunner.h"
#include "GoldenCheck.h"

namespace {

// id, x, y scale (id integer), grp nominal, lvl ordinal; five cases.
const std::string kLevels = golden::dataFile("levels.csv");

DistcorrResult run(const std::string& data, const std::string& command) {
    return runDistcorr({"--quiet", "--data", data, "-e", "DISTANCE CORRELATION " + command});
}

void expectOnlyError(const std::string& command, const std::string& message) {
    const DistcorrResult r = run(kLevels, command);
    EXPECT_EQ(r.exitCode, 1) << command;
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: " + message + "\n") << command;
}

TEST(DistcorrCommandErrors, ValidCommandWithCriteriaRunsSilently) {
    const DistcorrResult r =
        run(golden::dataFile("twelve.csv"), "VARIABLE=a b c /CRITERIA NORMALIZATION=ZSCORE PERMUTATION.");
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.err, "");
}

TEST(DistcorrCommandErrors, OneVariableIsNotEnough) {
    expectOnlyError("VARIABLE=x /PRINT DISTCORRCOEFF.", "At least two var names ...");
}

TEST(DistcorrCommandErrors, OnlyTheFirstNonScaleVariableIsReported) {
    expectOnlyError("VARIABLE=x grp lvl.",
                    "Variable \"grp\" named on VARIABLE is nominal; a scale (continuous) variable is needed there.");
    expectOnlyError("VARIABLE=x lvl grp.",
                    "Variable \"lvl\" named on VARIABLE is ordinal; a scale (continuous) variable is needed there.");
}

TEST(DistcorrCommandErrors, OrdinalIdIsAcceptedNominalIdIsNot) {
    const DistcorrResult ordinal = run(kLevels, "VARIABLE=x y /ID VARIABLE=lvl /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(ordinal.exitCode, 0);
    EXPECT_EQ(ordinal.err, "");
    expectOnlyError("VARIABLE=x y /ID VARIABLE=grp /PRINT DISTCORRCOEFF.",
                    "Variable \"grp\" named on VARIABLE is nominal; a scale (continuous) variable is needed there.");
}

TEST(DistcorrCommandErrors, DistmatrixWithoutConfigureStopsWithoutAMessage) {
    const std::string out = makeTempDir() + "/out.json";
    const DistcorrResult r = runDistcorr({"--quiet", "--data", kLevels, "--output", out, "-e",
                                          "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF DISTMATRIX."});
    EXPECT_EQ(r.exitCode, 0);
    // Only the host's own note that the command showed nothing.
    EXPECT_EQ(r.err, "Note: DISTANCE CORRELATION produced no output.\n");
    const rapidjson::Document doc = golden::parseJsonExactly(out);
    ASSERT_TRUE(doc.IsObject());
    EXPECT_FALSE(doc["runs"][0].HasMember("output"));
}

TEST(DistcorrCommandErrors, ConfigureMustNameVariablesAsWrittenInVariable) {
    expectOnlyError("VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[id]).", "Only input varlist are allowed in CONFIGURE ...");
    // The data set matches X to x, but CONFIGURE must repeat the spelling of VARIABLE.
    expectOnlyError("VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[X]).", "Only input varlist are allowed in CONFIGURE ...");
}

TEST(DistcorrCommandErrors, SaveNeedsAnOutfile) {
    expectOnlyError("VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[x] SAVE=TRUE).",
                    "Param required for PRINT subcom when SAVE is enabled");
}

TEST(DistcorrCommandErrors, OutfileThatIsNotAFileNameIsReportedAndTheRunGoesOn) {
    const std::string out = makeTempDir() + "/out.json";
    const DistcorrResult r =
        runDistcorr({"--quiet", "--data", kLevels, "--output", out, "-e",
                     "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[x] SAVE=TRUE OUTFILE=5)."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: 5 invalid file name param OUTFILE subcom PRINT ...\n");
    const rapidjson::Document doc = golden::parseJsonExactly(out);
    ASSERT_TRUE(doc.IsObject());
    ASSERT_TRUE(doc["runs"][0].HasMember("output"));
    EXPECT_EQ(doc["runs"][0]["output"]["items"].Size(), 1u);  // the matrix table
}

TEST(DistcorrCommandErrors, ScatterplotAxesMustBeAnalysisVariables) {
    expectOnlyError("VARIABLE=x y /PLOT SCATTERPLOT(XAXIS=X YAXIS=y).",
                    "Only input varlist are allowed in SCATTERPLOT ...");
}

TEST(DistcorrCommandErrors, FailedComputationWritesOnlyTheStep4Line) {
    // CILEVEL=100 asks for the normal quantile at probability 1.
    const std::string out = makeTempDir() + "/out.json";
    const DistcorrResult r = runDistcorr({"--data", kLevels, "--output", out, "-e",
                                          "DISTANCE CORRELATION VARIABLE=x y /CRITERIA CILEVEL=100 /PRINT DISTCORRCOEFF."});
    EXPECT_EQ(r.err, "distancecorr_entry: Step4 Unknown error occurred.\n"
                     "Note: DISTANCE CORRELATION produced no output.\n");
    EXPECT_EQ(r.out.find("Distance Correlation Coefficients"), std::string::npos) << r.out;
    const rapidjson::Document doc = golden::parseJsonExactly(out);
    ASSERT_TRUE(doc.IsObject());
    EXPECT_FALSE(doc["runs"][0].HasMember("output"));
}

}  // namespace
