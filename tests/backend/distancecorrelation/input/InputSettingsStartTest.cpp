// The input stage's status rules and the defaults of a minimal command.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputStageRun.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using InputSettingsStartTest = MixedDataSetTest;

TEST_F(InputSettingsStartTest, TwoScaleVariablesAloneSucceedWithEveryDefault) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x z.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());

    const DistanceCorrInputSettings& s = run.settings();
    EXPECT_THAT(s.globalSettings().getGlobalVarNames(), ElementsAre("x", "z"));
    EXPECT_THAT(s.globalSettings().getGlobalVarList(), IsEmpty());
    EXPECT_EQ(s.globalSettings().getGlobalData().size(), 2u);

    EXPECT_FALSE(s.idSettings().getIdEnabled());
    EXPECT_EQ(s.idSettings().getIdName(), "");
    EXPECT_THAT(s.idSettings().getIdData(), IsEmpty());

    EXPECT_EQ(s.criteriaSettings().get_normalization(), "NONE");
    EXPECT_EQ(s.criteriaSettings().get_ciLevel(), 95.0);
    EXPECT_EQ(s.criteriaSettings().get_permSeed(), 2000000.0);
    EXPECT_EQ(s.criteriaSettings().get_permMaxIterations(), 1000.0);
    EXPECT_EQ(s.criteriaSettings().get_permSigLevel(), 0.05);
    EXPECT_FALSE(s.criteriaSettings().get_permEnabled());

    const SubCommands::PrintSettings& print = s.printSettings();
    EXPECT_FALSE(print.get_details());
    EXPECT_FALSE(print.get_distanceCorrCoefficient());
    EXPECT_FALSE(print.get_correlationEstimates());
    EXPECT_FALSE(print.get_distanceVariance());
    EXPECT_FALSE(print.get_distanceMatrix());
    EXPECT_FALSE(print.get_save());
    EXPECT_THAT(print.get_configList(), IsEmpty());
    EXPECT_FALSE(print.GetOutFileSpec().IsInit());

    EXPECT_FALSE(s.plotSettings().get_scatterPlotEnabled());
    EXPECT_EQ(s.plotSettings().get_xAxisName(), "");
    EXPECT_EQ(s.plotSettings().get_yAxisName(), "");
}

TEST_F(InputSettingsStartTest, CriteriaNeverStopsTheRun) {
    // Values at the edges of the grammar's bounds: the reader adds no check of its own.
    InputStageRun run(
        "DISTANCE CORRELATION VARIABLE=x y /CRITERIA NORMALIZATION=LOG CILEVEL=0 "
        "PERMUTATION(SEED=0 MAXITERATIONS=0 SIGNIFICANCELEVEL=1).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    EXPECT_EQ(run.settings().criteriaSettings().get_normalization(), "LOG");
    EXPECT_EQ(run.settings().criteriaSettings().get_ciLevel(), 0.0);
    EXPECT_EQ(run.settings().criteriaSettings().get_permMaxIterations(), 0.0);
    EXPECT_EQ(run.settings().criteriaSettings().get_permSigLevel(), 1.0);
}

TEST_F(InputSettingsStartTest, CriteriaStatusIsAlwaysZero) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y /CRITERIA CILEVEL=100.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.settings().prepareInputSetting(kCriteria), 0u);
}

TEST_F(InputSettingsStartTest, UnknownSubcommandNumberFails) {
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x y.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.settings().prepareInputSetting(static_cast<subCommand>(5)), 1u);
}

TEST_F(InputSettingsStartTest, FailingReaderStopsWithoutShowingTheInternalError) {
    host::HostSession::instance().setQuiet(true);
    InputStageRun run("DISTANCE CORRELATION VARIABLE=x.");
    ASSERT_EQ(run.parseStatus(), 0u);
    host::HostSession::instance().setQuiet(false);
    ::testing::internal::CaptureStderr();
    const unsigned status = run.start();
    const std::string err = ::testing::internal::GetCapturedStderr();
    host::HostSession::instance().setQuiet(true);

    EXPECT_EQ(status, 1u);
    // Only the reader's own message reaches the user.
    EXPECT_THAT(messageTexts(), ElementsAre("At least two var names ..."));
    EXPECT_THAT(err, HasSubstr("At least two var names ..."));
    EXPECT_THAT(err, Not(HasSubstr("Error encountered while syntax parsing.")));
}

TEST_F(InputSettingsStartTest, LaterSubcommandsAreNotReadAfterAFailure) {
    // The ID reader fails, so the PLOT error below is never reached.
    InputStageRun run(
        "DISTANCE CORRELATION VARIABLE=x y /ID VARIABLE=group "
        "/PLOT SCATTERPLOT(XAXIS=z YAXIS=y).");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 1u);
    EXPECT_THAT(messageTexts(), ElementsAre(needScaleText("group", "nominal")));
    EXPECT_FALSE(run.settings().plotSettings().get_scatterPlotEnabled());
}

TEST(InputSettingsEmptyDataTest, EmptyDataSetGivesNoColumnsAndNoIdData) {
    useDataSet("empty");
    InputStageRun run("DISTANCE CORRELATION VARIABLE=a b /ID VARIABLE=c.");
    ASSERT_EQ(run.parseStatus(), 0u);
    EXPECT_EQ(run.start(), 0u);
    EXPECT_THAT(messageTexts(), IsEmpty());
    // No case ever enlarged the data: not even empty columns exist.
    EXPECT_TRUE(run.settings().globalSettings().getGlobalData().empty());
    EXPECT_TRUE(run.settings().idSettings().getIdEnabled());
    EXPECT_THAT(run.settings().idSettings().getIdData(), IsEmpty());
    EXPECT_THAT(run.settings().globalSettings().getGlobalVarLabels(), ElementsAre("a", "b"));
}
