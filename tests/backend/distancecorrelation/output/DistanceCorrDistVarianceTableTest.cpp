// PRINT DISTVAR: the distance variance table.
#include <gtest/gtest.h>

#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"

TEST(DistanceCorrDistVarianceTable, ListsEveryVariableOnceInOrder) {
    OutputRun run;
    fillTwoVariables(run);
    run.descriptives[0].distVariance = 1.2345;
    run.descriptives[1].distVariance = 0.5;
    run.settings.print().set_distanceVariance(true);
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* t = findItem("Distance Variance");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember(*t, "title"), "Distance Variance");
    EXPECT_EQ((*t)["format"]["decimals"].GetInt(), 4);
    EXPECT_TRUE(stringArray(*t, "footnotes").empty());
    EXPECT_EQ(columnLabels(*t), std::vector<std::string>{"dVar"});
    EXPECT_EQ(stringMember((*t)["rowDimension"], "label"), "Variable");
    EXPECT_TRUE(treeLabelShown((*t)["rowDimension"]));
    // One pair, two variables: both are listed.
    EXPECT_EQ(rowLabels(*t), (std::vector<std::string>{"x", "y"}));
    ASSERT_EQ(rowCount(*t), 2u);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 0), 1.2345);
    EXPECT_DOUBLE_EQ(numberAt(*t, 1, 0), 0.5);
}

TEST(DistanceCorrDistVarianceTable, VariableNamesAreShownAsTheyAre) {
    OutputRun run;
    fillTwoVariables(run);
    // Names that are also keys of the string table stay untranslated.
    run.descriptives[0].varName = "Mean";
    run.descriptives[1].varName = "vs.";
    run.settings.print().set_distanceVariance(true);
    run.start();

    const rapidjson::Value* t = findItem("Distance Variance");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(rowLabels(*t), (std::vector<std::string>{"Mean", "vs."}));
}

TEST(DistanceCorrDistVarianceTable, AbsentWhenNotRequested) {
    OutputRun run;
    fillTwoVariables(run);
    run.settings.print().set_details(true);
    run.start();
    EXPECT_EQ(findItem("Distance Variance"), nullptr);
    EXPECT_EQ(itemNames(), std::vector<std::string>{"Distance Correlation Details"});
}
