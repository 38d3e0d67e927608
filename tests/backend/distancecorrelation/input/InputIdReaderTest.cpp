// The ID subcommand: which variables may identify cases, and their data.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputStageRun.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using InputIdReaderTest = MixedDataSetTest;

TEST_F(InputIdReaderTest, ScaleIdVariableIsReadCaseByCase) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /ID VARIABLE=caseno.");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    const SubCommands::IDSettings& id = run.settings().idSettings();
    EXPECT_TRUE(id.getIdEnabled());
    EXPECT_EQ(id.getIdName(), "caseno");
    EXPECT_THAT(id.getIdData(), ElementsAre(101.0, 102.0, 103.0, 104.0, 105.0));
}

TEST_F(InputIdReaderTest, OrdinalIdVariableIsAccepted) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /ID VARIABLE=grade.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_EQ(run.settings().idSettings().getIdName(), "grade");
    EXPECT_THAT(run.settings().idSettings().getIdData(), ElementsAre(1.0, 2.0, 3.0, 1.0, 2.0));
}

TEST_F(InputIdReaderTest, NominalIdVariableIsRefused) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /ID VARIABLE=group.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre(needScaleText("group", "nominal")));
    EXPECT_THAT(run.settings().idSettings().getIdData(), IsEmpty());
    EXPECT_EQ(run.settings().idSettings().getIdName(), "");
}

TEST_F(InputIdReaderTest, NoIdSubcommandLeavesItDisabled) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_TRUE(run.settings().get_SubCommand_ID());
    EXPECT_FALSE(run.settings().idSettings().getIdEnabled());
}
