// PRINT DISTMATRIX CONFIGURE=...: the distance matrix tables.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"

namespace {

const char* kWarning = "Performance improvement ...";
const char* kCutNote = "First 100 records are printed.";
const char* kLimitNote = "Distance Matrix data limit reached ...";

// Two variables of n cases; x has the values 1..n, so its distances are |i - j|.
void fillCases(OutputRun& run, std::size_t n) {
    std::vector<double> y(n);
    for (std::size_t i = 0; i < n; ++i) y[i] = static_cast<double>((i * 7) % 11);
    run.descriptives.push_back(variableWithValues("x", countingValues(n)));
    run.descriptives.push_back(variableWithValues("y", y));
    run.results.push_back(pairResult("x", "y", 0.5, 0.25, 0.1, 0.8, 0, 0, 0));
}

void requestMatrices(OutputRun& run, const std::vector<std::string>& names) {
    run.settings.print().set_distanceMatrix(true);
    run.settings.print().set_configList(names);
}

std::vector<std::string> numbered(std::size_t n) {
    std::vector<std::string> labels;
    for (std::size_t i = 1; i <= n; ++i) labels.push_back(std::to_string(i));
    return labels;
}

}  // namespace

TEST(DistanceCorrMatrixTable, MatrixOf150CasesIsCutTo100WithBothFootnotes) {
    OutputRun run;
    fillCases(run, 150);
    requestMatrices(run, {"x"});
    ASSERT_EQ(run.start(), 0);

    const rapidjson::Value* t = findItem("Distance Matrix for Variable x");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember(*t, "title"), "Distance Matrix for Variable x");
    EXPECT_EQ((*t)["minColumnWidth"].GetInt(), 70);
    EXPECT_EQ((*t)["format"]["decimals"].GetInt(), 3);
    const std::vector<std::string> notes{kCutNote, kLimitNote};
    EXPECT_EQ(stringArray(*t, "footnotes"), notes);
    EXPECT_EQ(intArray(*t, "footnoteRefs"), (std::vector<int>{0, 1}));

    EXPECT_EQ(columnLabels(*t), numbered(100));
    EXPECT_EQ(rowLabels(*t), numbered(100));
    EXPECT_EQ(stringMember((*t)["rowDimension"], "label"), " ");
    EXPECT_TRUE(treeLabelShown((*t)["rowDimension"]));
    ASSERT_EQ(rowCount(*t), 100u);
    for (std::size_t r = 0; r < 100; ++r) ASSERT_EQ((*t)["cells"][static_cast<rapidjson::SizeType>(r)].Size(), 100u);
    // Distances of the values 1..150 are |i - j|.
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 99), 99.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 57, 3), 54.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 99, 99), 0.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 99, 0), 99.0);

    // The first analysed variable has more than 100 cases: warned once.
    EXPECT_EQ(messagesWithText(kWarning), 1u);
}

TEST(DistanceCorrMatrixTable, WarningIsIssuedOnceForSeveralLargeMatrices) {
    OutputRun run;
    fillCases(run, 150);
    requestMatrices(run, {"x", "y"});
    run.start();

    EXPECT_EQ(countItems("Distance Matrix for Variable x"), 1u);
    EXPECT_EQ(countItems("Distance Matrix for Variable y"), 1u);
    EXPECT_EQ(messagesWithText(kWarning), 1u);
    ASSERT_EQ(host::HostSession::instance().messages().size(), 1u);
    EXPECT_EQ(host::HostSession::instance().messages()[0].level, host::MessageLevel::Warning);
}

TEST(DistanceCorrMatrixTable, WarningLooksAtTheFirstAnalysedVariableOnly) {
    // The first variable is large and only the second (small) one is printed.
    OutputRun large;
    large.descriptives.push_back(variableWithValues("big", countingValues(101)));
    large.descriptives.push_back(variableWithValues("small", countingValues(5)));
    large.results.push_back(pairResult("big", "small", 0.5, 0, 0, 0, 0, 0, 0));
    requestMatrices(large, {"small"});
    large.start();
    EXPECT_EQ(countItems("Distance Matrix for Variable small"), 1u);
    EXPECT_EQ(messagesWithText(kWarning), 1u);

    // The first variable is small and the printed second one is large.
    OutputRun small;
    small.descriptives.push_back(variableWithValues("small", countingValues(5)));
    small.descriptives.push_back(variableWithValues("big", countingValues(101)));
    small.results.push_back(pairResult("small", "big", 0.5, 0, 0, 0, 0, 0, 0));
    requestMatrices(small, {"big"});
    small.start();
    const rapidjson::Value* t = findItem("Distance Matrix for Variable big");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(rowCount(*t), 100u);
    EXPECT_EQ(messagesWithText(kWarning), 0u);
}

TEST(DistanceCorrMatrixTable, MatrixOfExactly100CasesIsNotCutAndNotWarned) {
    OutputRun run;
    fillCases(run, 100);
    requestMatrices(run, {"x"});
    run.start();

    const rapidjson::Value* t = findItem("Distance Matrix for Variable x");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringArray(*t, "footnotes"), std::vector<std::string>{kLimitNote});
    EXPECT_EQ(intArray(*t, "footnoteRefs"), std::vector<int>{0});
    EXPECT_EQ(rowCount(*t), 100u);
    EXPECT_EQ(columnLabels(*t).size(), 100u);
    EXPECT_EQ(messagesWithText(kWarning), 0u);
}

TEST(DistanceCorrMatrixTable, SmallMatrixShowsEveryCase) {
    OutputRun run;
    fillCases(run, 3);
    requestMatrices(run, {"y"});
    run.start();

    const rapidjson::Value* t = findItem("Distance Matrix for Variable y");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(columnLabels(*t), numbered(3));
    EXPECT_EQ(rowLabels(*t), numbered(3));
    // y values are 0, 7, 3: distances |0-7| = 7, |0-3| = 3, |7-3| = 4.
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 1), 7.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 0, 2), 3.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 2, 1), 4.0);
    EXPECT_DOUBLE_EQ(numberAt(*t, 1, 1), 0.0);
    EXPECT_EQ(stringArray(*t, "footnotes"), std::vector<std::string>{kLimitNote});
}

TEST(DistanceCorrMatrixTable, IdentifiersWith40CasesLeaveRowsNumbered) {
    OutputRun run;
    fillCases(run, 40);
    std::string idName = "caseid";
    run.settings.id().setIdEnabled(true);
    run.settings.id().setIdName(idName);
    for (std::size_t i = 0; i < 40; ++i) run.common.idValues.push_back(500.0 + static_cast<double>(i));
    requestMatrices(run, {"x"});
    run.start();

    const rapidjson::Value* t = findItem("Distance Matrix for Variable x");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember((*t)["rowDimension"], "label"), "caseid");
    EXPECT_TRUE(treeLabelShown((*t)["rowDimension"]));
    EXPECT_EQ(rowLabels(*t), numbered(40));
    EXPECT_EQ(columnLabels(*t), numbered(40));
}

TEST(DistanceCorrMatrixTable, IdentifiersWith150CasesLabelTheRowsWithTheirWholePart) {
    OutputRun run;
    fillCases(run, 150);
    std::string idName = "caseid";
    run.settings.id().setIdEnabled(true);
    run.settings.id().setIdName(idName);
    // Case c has the identifier 1000 + c + 0.9, except the first: 17.9.
    for (std::size_t i = 0; i < 150; ++i) run.common.idValues.push_back(1000.9 + static_cast<double>(i));
    run.common.idValues[0] = 17.9;
    requestMatrices(run, {"x"});
    run.start();

    const rapidjson::Value* t = findItem("Distance Matrix for Variable x");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember((*t)["rowDimension"], "label"), "caseid");
    std::vector<std::string> expected{"17"};
    for (std::size_t r = 1; r < 100; ++r) expected.push_back(std::to_string(1000 + r));
    EXPECT_EQ(rowLabels(*t), expected);
    // Columns are always numbered.
    EXPECT_EQ(columnLabels(*t), numbered(100));
}

TEST(DistanceCorrMatrixTable, UnknownNameGivesNoTableAndNoMessage) {
    OutputRun run;
    fillCases(run, 5);
    requestMatrices(run, {"nosuchvar", "X"});  // names compare case-sensitively
    EXPECT_EQ(run.start(), 0);

    EXPECT_TRUE(outputItems().empty());
    EXPECT_TRUE(host::HostSession::instance().messages().empty());
}

TEST(DistanceCorrMatrixTable, NameListedTwiceGivesTwoTablesInListOrder) {
    OutputRun run;
    fillCases(run, 4);
    requestMatrices(run, {"y", "x", "y"});
    run.start();

    const std::vector<std::string> names{"Distance Matrix for Variable y",
                                         "Distance Matrix for Variable x",
                                         "Distance Matrix for Variable y"};
    EXPECT_EQ(itemNames(), names);
}

TEST(DistanceCorrMatrixTable, AbsentWithoutTheDistMatrixKeyword) {
    OutputRun run;
    fillCases(run, 150);
    run.settings.print().set_configList({"x"});
    run.start();

    EXPECT_TRUE(outputItems().empty());
    EXPECT_EQ(messagesWithText(kWarning), 0u);
}

TEST(DistanceCorrMatrixTable, BuilderStatuses) {
    OutputRun run;
    requestMatrices(run, {"x"});
    DistanceCorrOutputGen gen(run.procedure, run.source, run.settings, run.results,
                              run.descriptives, run.common);
    // Requested with no analysed variable.
    EXPECT_EQ(gen.generateDistanceMatrix(), 1);
    std::string name = "x";
    EXPECT_EQ(gen.generateMatrix2D({}, name), 1);
    EXPECT_EQ(gen.generateMatrix2D({{0.0, 1.0}, {1.0, 0.0}}, name), 0);
}
