// The PLOT subcommand: the scatter plot's axis variables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputStageRun.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using InputPlotReaderTest = MixedDataSetTest;

TEST_F(InputPlotReaderTest, BothAxesFromTheVariableListAreAccepted) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y z /PLOT SCATTERPLOT(XAXIS=z YAXIS=x).");
    ASSERT_EQ(run.parseStatus(), 0u);
    ASSERT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_TRUE(run.settings().plotSettings().get_scatterPlotEnabled());
    EXPECT_EQ(run.settings().plotSettings().get_xAxisName(), "z");
    EXPECT_EQ(run.settings().plotSettings().get_yAxisName(), "x");
}

TEST_F(InputPlotReaderTest, AxisInOtherLetterCaseIsRefusedAndEndsTheReading) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PLOT SCATTERPLOT(XAXIS=X YAXIS=y).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre("Only input varlist are allowed in SCATTERPLOT ..."));
    EXPECT_EQ(run.settings().plotSettings().get_xAxisName(), "");
    // YAXIS is not examined after a refused XAXIS.
    EXPECT_EQ(run.settings().plotSettings().get_yAxisName(), "");
}

TEST_F(InputPlotReaderTest, YAxisOutsideTheVariableListIsRefused) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PLOT SCATTERPLOT(XAXIS=x YAXIS=z).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre("Only input varlist are allowed in SCATTERPLOT ..."));
    EXPECT_EQ(run.settings().plotSettings().get_xAxisName(), "x");
}

TEST_F(InputPlotReaderTest, MissingXAxisFailsSilentlyButYAxisIsStillRead) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PLOT SCATTERPLOT(YAXIS=y).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_EQ(run.settings().plotSettings().get_yAxisName(), "y");
}

TEST_F(InputPlotReaderTest, MissingYAxisFailsSilently) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /PLOT SCATTERPLOT(XAXIS=x).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_EQ(run.settings().plotSettings().get_xAxisName(), "x");
}
