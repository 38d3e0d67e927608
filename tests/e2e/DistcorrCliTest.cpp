// The distcorr program as a user runs it: options, exit statuses, messages.
#include <gtest/gtest.h>

#include "DistcorrRunner.h"

namespace {
const std::string kSmall = fixture("e2e/small.csv");
}

TEST(DistcorrCli, HelpExplainsOptionsAndExitStatus) {
    DistcorrResult r = runDistcorr({"--help"});
    EXPECT_EQ(r.exitCode, 0);
    for (const char* text : {"--data", "--schema", "--output", "--html", "--quiet", "--lang", "-e", "Exit status",
                             "docs/commands.md"})
        EXPECT_NE(r.out.find(text), std::string::npos) << text;
}

TEST(DistcorrCli, MissingDataOptionIsAUsageError) {
    DistcorrResult r = runDistcorr({"-e", "DISTANCE CORRELATION VARIABLE=x y."});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--data"), std::string::npos) << r.err;
}

TEST(DistcorrCli, UnknownOptionIsAUsageError) {
    EXPECT_EQ(runDistcorr({"--data", kSmall, "--bogus"}).exitCode, 2);
}

TEST(DistcorrCli, SyntaxFileAndExecuteTogetherIsAUsageError) {
    DistcorrResult r = runDistcorr({"--data", kSmall, fixture("e2e/two-commands.sps"), "-e", "X."});
    EXPECT_EQ(r.exitCode, 2);
}

TEST(DistcorrCli, UnreadableSyntaxFileIsAUsageError) {
    DistcorrResult r = runDistcorr({"--data", kSmall, "/nonexistent/commands.sps"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("/nonexistent/commands.sps"), std::string::npos) << r.err;
}

TEST(DistcorrCli, MissingDataFileExitsWithThree) {
    DistcorrResult r = runDistcorr({"--data", "/nonexistent/data.csv", "-e", "DISTANCE CORRELATION VARIABLE=x y."});
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_NE(r.err.find("/nonexistent/data.csv"), std::string::npos) << r.err;
}

TEST(DistcorrCli, RaggedCsvNamesFileAndLine) {
    DistcorrResult r = runDistcorr({"--data", fixture("e2e/ragged.csv"), "-e", "DISTANCE CORRELATION VARIABLE=a b."});
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_NE(r.err.find("ragged.csv:3"), std::string::npos) << r.err;
}

TEST(DistcorrCli, WithoutCommandsListsTheDictionary) {
    DistcorrResult r = runDistcorr({"--data", kSmall});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.out.find("5 cases, 6 variables"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("grp  numeric  nominal"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("lvl  numeric  ordinal"), std::string::npos) << r.out;
}

TEST(DistcorrCli, UnknownCommandIsAnError) {
    DistcorrResult r = runDistcorr({"--data", kSmall, "-e", "FREQUENCIES VARIABLES=x."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("Unknown command \"FREQUENCIES\" (command line, line 1)"), std::string::npos) << r.err;
}

TEST(DistcorrCli, SyntaxErrorShowsLineAndColumnAndExitsOne) {
    DistcorrResult r = runDistcorr({"--data", kSmall, "-e", "DISTANCE CORRELATION VARIABLE=x y\n  /PRINT BOGUS."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("Error: DISTANCE CORRELATION:"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("BOGUS"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("line 2"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("column 10"), std::string::npos) << r.err;
    // The procedure stopped after parsing: no step line, no tables.
    EXPECT_EQ(r.err.find("distancecorr_entry"), std::string::npos) << r.err;
}

TEST(DistcorrCli, ValidCommandRunsTheProcedure) {
    DistcorrResult r = runDistcorr({"--data", kSmall, "-e", "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_NE(r.out.find("Distance Correlation Coefficients"), std::string::npos) << r.out;
    // dCor of x = (1..5) and y = (1, 2, 9, 4, 4): 0.581675 by hand.
    EXPECT_NE(r.out.find("0.5817"), std::string::npos) << r.out;
}

TEST(DistcorrCli, SyntaxFileRunsEveryCommandInOrder) {
    const std::string out = makeTempDir() + "/out.json";
    DistcorrResult r = runDistcorr({"--data", kSmall, fixture("e2e/two-commands.sps"), "--output", out});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    rapidjson::Document doc = parseJsonFile(out);
    ASSERT_TRUE(doc.IsObject());
    ASSERT_TRUE(doc["runs"].IsArray());
    ASSERT_EQ(doc["runs"].Size(), 2u);
    EXPECT_NE(std::string(doc["runs"][1]["command"].GetString()).find("CILEVEL=90"), std::string::npos);
}

TEST(DistcorrCli, CommandsFromStandardInput) {
    DistcorrResult r = runDistcorr({"--data", kSmall, "-"}, "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF.\n");
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.out.find("0.5817"), std::string::npos) << r.out;
}

TEST(DistcorrCli, SilentStopGetsAHostNote) {
    // DISTMATRIX without CONFIGURE stops the procedure without a message of its own.
    DistcorrResult r = runDistcorr({"--data", kSmall, "-e", "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.err.find("DISTANCE CORRELATION produced no output."), std::string::npos) << r.err;
}
