// The CRITERIA subcommand and its defaults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputStageRun.h"

using ::testing::IsEmpty;

using InputCriteriaReaderTest = MixedDataSetTest;

TEST_F(InputCriteriaReaderTest, OmittedCriteriaKeepsTheDefaults) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTVAR.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    const SubCommands::CriteriaSettings& c = run.settings().criteriaSettings();
    EXPECT_EQ(c.get_normalization(), "NONE");
    EXPECT_EQ(c.get_ciLevel(), 95.0);
    EXPECT_FALSE(c.get_permEnabled());
}

TEST_F(InputCriteriaReaderTest, PermutationWithoutQualifiersKeepsItsDefaults) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /CRITERIA PERMUTATION.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    const SubCommands::CriteriaSettings& c = run.settings().criteriaSettings();
    EXPECT_TRUE(c.get_permEnabled());
    EXPECT_EQ(c.get_permSeed(), 2000000.0);
    EXPECT_EQ(c.get_permMaxIterations(), 1000.0);
    EXPECT_EQ(c.get_permSigLevel(), 0.05);
    EXPECT_EQ(c.get_normalization(), "NONE");
    EXPECT_EQ(c.get_ciLevel(), 95.0);
}

TEST_F(InputCriteriaReaderTest, EveryValueIsRead) {
    InputStageRun run(
        "DISTANCE CORRELATION VARIABLE=x y /CRITERIA NORMALIZATION=zscore CILEVEL=90 "
        "PERMUTATION(SEED=7 MAXITERATIONS=50 SIGNIFICANCELEVEL=0.01).");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    const SubCommands::CriteriaSettings& c = run.settings().criteriaSettings();
    EXPECT_EQ(c.get_normalization(), "ZSCORE");  // upper-cased
    EXPECT_EQ(c.get_ciLevel(), 90.0);
    EXPECT_TRUE(c.get_permEnabled());
    EXPECT_EQ(c.get_permSeed(), 7.0);
    EXPECT_EQ(c.get_permMaxIterations(), 50.0);
    EXPECT_EQ(c.get_permSigLevel(), 0.01);
}

TEST_F(InputCriteriaReaderTest, QualifiersNotGivenKeepTheirDefaults) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /CRITERIA PERMUTATION(SEED=12).");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    const SubCommands::CriteriaSettings& c = run.settings().criteriaSettings();
    EXPECT_EQ(c.get_permSeed(), 12.0);
    EXPECT_EQ(c.get_permMaxIterations(), 1000.0);
    EXPECT_EQ(c.get_permSigLevel(), 0.05);
}

TEST_F(InputCriteriaReaderTest, CriteriaWithoutPermutationLeavesTheTestOff) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /CRITERIA NORMALIZATION=ROBUST.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    EXPECT_EQ(run.settings().criteriaSettings().get_normalization(), "ROBUST");
    EXPECT_EQ(run.settings().criteriaSettings().get_ciLevel(), 95.0);
    EXPECT_FALSE(run.settings().criteriaSettings().get_permEnabled());
}
