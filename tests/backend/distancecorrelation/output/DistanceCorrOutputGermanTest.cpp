// The output in German: visible texts come from the string table, table
// names and variable names stay as they are.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OutputDocumentReader.h"
#include "OutputTestSettings.h"

namespace {

class GermanOutput : public ::testing::Test {
protected:
    void SetUp() override {
        host::HostSession& session = host::HostSession::instance();
        session.setResourceDir(std::string(DC_SOURCE_DIR) + "/host/resources");
        session.setLanguage("de");
    }
    void TearDown() override {
        host::HostSession& session = host::HostSession::instance();
        session.setLanguage("");
        session.setResourceDir("");
    }
};

}  // namespace

TEST_F(GermanOutput, CoefficientsTableIsTranslated) {
    OutputRun run;
    fillTwoVariables(run);
    run.settings.print().set_distanceCorrelationCoefficient(true);
    run.settings.criteria().set_permEnabled(true);
    ASSERT_EQ(run.start(), 0);

    // The name is the table's identity and is not translated.
    const rapidjson::Value* t = findItem("Distance Correlation Coefficients");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember(*t, "title"), "Distanzkorrelationskoeffizienten");
    const std::vector<std::string> columns{"dCor-Wert",   "Untergrenze", "Obergrenze",
                                           "Untergrenze", "Obergrenze",  "Sig."};
    EXPECT_EQ(columnLabels(*t), columns);
    const std::vector<HeaderGroup> groups = headerGroups((*t)["columnDimension"]);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].label, "Permutations-Konfidenzintervall 0.05");
    EXPECT_EQ(groups[1].label, "Konfidenzintervall 95.00");
    EXPECT_EQ(stringArray(*t, "footnotes"),
              std::vector<std::string>{"Anzahl der Replikationen 1000"});
    EXPECT_EQ(rowLabels(*t), std::vector<std::string>{"x gegen y"});
    EXPECT_TRUE(host::HostSession::instance().messages().empty());
}

TEST_F(GermanOutput, VariableNamesAreNotTranslated) {
    OutputRun run;
    fillTwoVariables(run);
    run.descriptives[0].varName = "Mean";
    run.descriptives[1].varName = "Lower";
    run.settings.print().set_distanceVariance(true);
    run.start();

    const rapidjson::Value* t = findItem("Distance Variance");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(stringMember(*t, "title"), "Distanzvarianz");
    EXPECT_EQ(stringMember((*t)["rowDimension"], "label"), "Variable");
    EXPECT_EQ(rowLabels(*t), (std::vector<std::string>{"Mean", "Lower"}));
}

TEST_F(GermanOutput, MatrixTitleAndFootnotesAreComposedAfterTranslation) {
    OutputRun run;
    run.descriptives.push_back(variableWithValues("x", countingValues(120)));
    run.descriptives.push_back(variableWithValues("y", countingValues(120)));
    run.results.push_back(pairResult("x", "y", 1, 1, 1, 1, 0, 0, 0));
    run.settings.print().set_distanceMatrix(true);
    run.settings.print().set_configList({"x"});
    run.start();

    const std::vector<const rapidjson::Value*> items = outputItems();
    ASSERT_EQ(items.size(), 1u);
    const rapidjson::Value& t = *items[0];
    EXPECT_EQ(stringMember(t, "title"), "Distanzmatrix für Variable x");
    // The composed title has no entry of its own, so the name is the title.
    EXPECT_EQ(stringMember(t, "name"), "Distanzmatrix für Variable x");
    const std::vector<std::string> notes{"Die ersten 100 Fälle werden angezeigt.",
                                         "Datengrenze der Distanzmatrix erreicht ..."};
    EXPECT_EQ(stringArray(t, "footnotes"), notes);
}

TEST_F(GermanOutput, ChartTitleIsTranslated) {
    OutputRun run;
    fillTwoVariables(run);
    run.settings.plot().set_scatterPlotEnabled(true);
    run.settings.plot().set_xAxisName("x");
    run.settings.plot().set_yAxisName("y");
    run.start();

    const rapidjson::Value* chart = findItem("Streudiagramm der paarweisen Distanzen");
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(stringArray(*chart, "gpl").at(6),
              "GUIDE: text.title(label(\"Streudiagramm der paarweisen Distanzen\"))");
}
