// The VARIABLE list: validation, labels and the case data it reads.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputStageRun.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using InputGlobalReaderTest = MixedDataSetTest;

TEST_F(InputGlobalReaderTest, OneVariableIsRefusedAndReadsNoData) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_FALSE(run.settings().get_Subcommand_Global());
    EXPECT_THAT(messageTexts(), ElementsAre("At least two var names ..."));
    EXPECT_TRUE(run.settings().globalSettings().getGlobalData().empty());
    EXPECT_THAT(run.settings().globalSettings().getGlobalVarLabels(), IsEmpty());
    // The names are stored whatever the outcome.
    EXPECT_THAT(run.settings().globalSettings().getGlobalVarNames(), ElementsAre("x"));
}

TEST_F(InputGlobalReaderTest, OnlyTheFirstNonScaleVariableIsReported) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x group grade y.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre(needScaleText("group", "nominal")));
    EXPECT_TRUE(run.settings().globalSettings().getGlobalData().empty());
    EXPECT_THAT(run.settings().globalSettings().getGlobalVarLabels(), IsEmpty());
}

TEST_F(InputGlobalReaderTest, AnOrdinalAnalysisVariableIsRefused) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=grade group x.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre(needScaleText("grade", "ordinal")));
}

TEST_F(InputGlobalReaderTest, LabelsFallBackToTheName) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y z.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    EXPECT_THAT(run.settings().globalSettings().getGlobalVarLabels(),
                ElementsAre("Height (cm)", "Weight (kg)", "z"));
}

TEST_F(InputGlobalReaderTest, NamesAreKeptAsWritten) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=X Z.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    EXPECT_THAT(run.settings().globalSettings().getGlobalVarNames(), ElementsAre("X", "Z"));
    EXPECT_THAT(run.settings().globalSettings().getGlobalVarLabels(), ElementsAre("Height (cm)", "z"));
}

TEST_F(InputGlobalReaderTest, DataIsColumnMajorWithEveryCaseAndMissingValuesKept) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=z y x.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    // Columns in the order of the list; the empty cells and the user-missing
    // -99 of y arrive as the missing value, and no case is dropped.
    const auto& data = run.settings().globalSettings().getGlobalData();
    ASSERT_EQ(data.size(), 3u);
    EXPECT_THAT(data[0], ElementsAre(3.0, 4.0, -1.0, 6.0, kMissing));
    EXPECT_THAT(data[1], ElementsAre(10.0, kMissing, 30.0, kMissing, 50.0));
    EXPECT_THAT(data[2], ElementsAre(1.5, 2.5, 3.5, 4.5, 5.5));
}
