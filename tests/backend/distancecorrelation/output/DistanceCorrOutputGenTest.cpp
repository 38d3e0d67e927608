// The output stage as a whole: when it produces something, the order of its
// items, and its two text helpers.
#include <gtest/gtest.h>

#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"

TEST(DistanceCorrOutputGen, NoPairResultsProducesNothingAndStops) {
    OutputRun run;
    run.descriptives.push_back(variableWithValues("x", {1, 2, 3}));
    run.descriptives.push_back(variableWithValues("y", {2, 1, 3}));
    run.settings.print().set_details(true);
    run.settings.print().set_distanceVariance(true);

    EXPECT_EQ(run.start(), 1);
    // Not even the descriptive statistics: no document is handed over at all.
    EXPECT_EQ(outputDocument(), nullptr);
}

TEST(DistanceCorrOutputGen, NoDescriptiveResultsProducesNothingAndStops) {
    OutputRun run;
    run.results.push_back(pairResult("x", "y", 0.5, 0.25, 0.1, 0.8, 0.2, 0.7, 0.03));
    run.settings.print().set_distanceCorrelationCoefficient(true);

    EXPECT_EQ(run.start(), 1);
    EXPECT_EQ(outputDocument(), nullptr);
}

TEST(DistanceCorrOutputGen, NothingRequestedStillHandsOverAnEmptyDocument) {
    OutputRun run;
    fillTwoVariables(run);

    EXPECT_EQ(run.start(), 0);
    const rapidjson::Document* doc = outputDocument();
    ASSERT_NE(doc, nullptr);
    ASSERT_TRUE(doc->IsObject());
    EXPECT_EQ(stringMember(*doc, "procedure"), "Distance Correlation");
    ASSERT_TRUE(doc->HasMember("items"));
    EXPECT_TRUE((*doc)["items"].IsArray());
    EXPECT_EQ((*doc)["items"].Size(), 0u);
}

TEST(DistanceCorrOutputGen, ItemsFollowTheFixedOrderWithEstimatesBeforeDistanceVariance) {
    OutputRun run;
    fillTwoVariables(run);
    SubCommands::PrintSettings& print = run.settings.print();
    print.set_details(true);
    print.set_distanceCorrelationCoefficient(true);
    print.set_correlationEstimates(true);
    print.set_distanceVariance(true);
    print.set_distanceMatrix(true);
    print.set_configList({"y", "x"});
    run.settings.plot().set_scatterPlotEnabled(true);
    run.settings.plot().set_xAxisName("x");
    run.settings.plot().set_yAxisName("y");

    EXPECT_EQ(run.start(), 0);
    const std::vector<std::string> expected{"Distance Correlation Details",
                                            "Distance Correlation Coefficients",
                                            "Distance Correlation Estimation Summary",
                                            "Distance Variance",
                                            "Distance Matrix for Variable y",
                                            "Distance Matrix for Variable x",
                                            "Scatter Plot of pairwise distances"};
    EXPECT_EQ(itemNames(), expected);
    const std::vector<std::string> types{"table", "table", "table", "table", "table", "table", "chart"};
    EXPECT_EQ(itemTypes(), types);
    EXPECT_TRUE(host::HostSession::instance().messages().empty());
}

TEST(DistanceCorrOutputGen, TablesShareTheCommonFrame) {
    OutputRun run;
    fillTwoVariables(run);
    SubCommands::PrintSettings& print = run.settings.print();
    print.set_details(true);
    print.set_distanceCorrelationCoefficient(true);
    print.set_correlationEstimates(true);
    print.set_distanceVariance(true);
    print.set_distanceMatrix(true);
    print.set_configList({"x"});
    run.start();

    const std::vector<const rapidjson::Value*> items = outputItems();
    ASSERT_EQ(items.size(), 5u);
    const int decimals[] = {3, 4, 4, 4, 3};
    const int minWidth[] = {100, 100, 100, 100, 70};
    for (std::size_t i = 0; i < items.size(); ++i) {
        const rapidjson::Value& t = *items[i];
        SCOPED_TRACE(stringMember(t, "name"));
        EXPECT_TRUE(t["showTitle"].GetBool());
        EXPECT_EQ(t["minColumnWidth"].GetInt(), minWidth[i]);
        EXPECT_EQ(t["maxColumnWidth"].GetInt(), 300);
        EXPECT_EQ(t["format"]["type"].GetInt(), 5);
        EXPECT_EQ(t["format"]["width"].GetInt(), 10);
        EXPECT_EQ(t["format"]["decimals"].GetInt(), decimals[i]);
    }
}

TEST(DistanceCorrOutputGen, CompositTransFillsTheFirstMarkerOnly) {
    OutputRun run;
    DistanceCorrOutputGen gen(run.procedure, run.source, run.settings, run.results,
                              run.descriptives, run.common);
    EXPECT_EQ(gen.getCompositTrans("Confidence Interval ^1", "95.00", ""),
              "Confidence Interval 95.00");
    EXPECT_EQ(gen.getCompositTrans("^1 and ^1", "a", ""), "a and ^1");
    EXPECT_EQ(gen.getCompositTrans("^2 before ^1", "one", "two"), "two before one");
    EXPECT_EQ(gen.getCompositTrans("^1 vs ^2 vs ^2", "a", "b"), "a vs b vs ^2");
    EXPECT_EQ(gen.getCompositTrans("No marker here", "a", "b"), "No marker here");
    EXPECT_EQ(gen.getCompositTrans("Only ^2", "a", "b"), "Only b");
    EXPECT_EQ(gen.getCompositTrans("", "a", "b"), "");
    // Inserted texts are taken as they are, even when they hold a marker.
    EXPECT_EQ(gen.getCompositTrans("[^1] [^2]", "^2", "x"), "[^2] [x]");
}

TEST(DistanceCorrOutputGen, RoundWritesTwoDecimals) {
    EXPECT_EQ(_round(99.999), "100.00");
    EXPECT_EQ(_round(95), "95.00");
    EXPECT_EQ(_round(0.9), "0.90");
    EXPECT_EQ(_round(0.05), "0.05");
    EXPECT_EQ(_round(0), "0.00");
}
