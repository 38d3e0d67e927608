// The PRINT subcommand: table flags, DISTMATRIX, CONFIGURE, SAVE and OUTFILE.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DistcorrRunner.h"
#include "InputStageRun.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using InputPrintReaderTest = MixedDataSetTest;

TEST_F(InputPrintReaderTest, TableKeywordsSetTheirFlags) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    const SubCommands::PrintSettings& p = run.settings().printSettings();
    EXPECT_TRUE(p.get_details());
    EXPECT_TRUE(p.get_distanceCorrCoefficient());
    EXPECT_TRUE(p.get_correlationEstimates());
    EXPECT_TRUE(p.get_distanceVariance());
    EXPECT_FALSE(p.get_distanceMatrix());
    EXPECT_FALSE(p.get_save());
}

TEST_F(InputPrintReaderTest, DistMatrixWithoutConfigureStopsSilently) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(SAVE=TRUE).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    // No procedure message, and SAVE is not even looked at.
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_TRUE(run.settings().printSettings().get_distanceMatrix());
    EXPECT_FALSE(run.settings().printSettings().get_save());
}

TEST_F(InputPrintReaderTest, ConfigureListIsStoredInTheOrderWritten) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y z /PRINT DISTMATRIX(CONFIGURE=[z x]).");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_TRUE(run.settings().printSettings().get_distanceMatrix());
    EXPECT_THAT(run.settings().printSettings().get_configList(), ElementsAre("z", "x"));
}

TEST_F(InputPrintReaderTest, ConfigureInOtherLetterCaseIsRefused) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=X).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre("Only input varlist are allowed in CONFIGURE ..."));
    EXPECT_THAT(run.settings().printSettings().get_configList(), IsEmpty());
}

TEST_F(InputPrintReaderTest, ConfigureOutsideTheVariableListIsRefused) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[x z]).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre("Only input varlist are allowed in CONFIGURE ..."));
}

TEST_F(InputPrintReaderTest, SaveWithoutOutfileNamesTheSubcommandAndKeyword) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=x SAVE=TRUE).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    // "Param required for ^1 subcom when ^2 is enabled", filled by the host.
    EXPECT_THAT(messageTexts(), ElementsAre("Param required for PRINT subcom when SAVE is enabled"));
    EXPECT_TRUE(run.settings().printSettings().get_save());
}

TEST_F(InputPrintReaderTest, SaveFalseIgnoresOutfile) {
    const std::string path = makeTempDir() + "/ignored.csv";
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=x SAVE=FALSE OUTFILE='" +
                      path + "').");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_FALSE(run.settings().printSettings().get_save());
    EXPECT_FALSE(run.settings().printSettings().GetOutFileSpec().IsInit());
}

TEST_F(InputPrintReaderTest, SaveTrueWithOutfileSetsTheFileForWriting) {
    const std::string path = makeTempDir() + "/distances.csv";
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[x y] SAVE=true OUTFILE='" +
                      path + "').");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    const SubCommands::PrintSettings& p = run.settings().printSettings();
    EXPECT_TRUE(p.get_save());
    ASSERT_TRUE(p.GetOutFileSpec().IsInit());
    EXPECT_EQ(p.GetOutFileSpec().GetPath(), path);
    EXPECT_TRUE(p.GetOutFileSpec().IsForWriting());
    EXPECT_TRUE(p.GetOutFileSpec().MayReplace());
}

TEST_F(InputPrintReaderTest, EmptyOutfileIsPassedOverSilently) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=x SAVE=TRUE OUTFILE='').");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_TRUE(run.settings().printSettings().get_save());
    EXPECT_FALSE(run.settings().printSettings().GetOutFileSpec().IsInit());
}

TEST_F(InputPrintReaderTest, OutfileInAMissingFolderStopsTheRun) {
    const std::string path = makeTempDir() + "/no-such-folder/distances.csv";
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=x SAVE=TRUE OUTFILE='" +
                      path + "').");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_FALSE(run.settings().printSettings().GetOutFileSpec().IsInit());
}

TEST_F(InputPrintReaderTest, OutfileThatIsNoNameIsReportedButDoesNotFail) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=x SAVE=TRUE OUTFILE=123).");
    ASSERT_EQ(run.parseStatus(), 0u);
    // "^1 invalid file name param ^2 subcom ^3 ...", filled by the host.
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), ElementsAre("123 invalid file name param OUTFILE subcom PRINT ..."));
    EXPECT_TRUE(run.settings().printSettings().get_save());
    EXPECT_FALSE(run.settings().printSettings().GetOutFileSpec().IsInit());
}
