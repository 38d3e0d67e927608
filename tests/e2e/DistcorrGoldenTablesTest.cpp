// The layout of the golden expected documents: which tables, in which order,
// with which columns, rows, footnotes and messages, and the hand-checked
// values. DistcorrGoldenTest proves that distcorr writes exactly these
// documents; this file pins down what they must say.
#include <gtest/gtest.h>

#include <cmath>

#include "GoldenCheck.h"

namespace {

using golden::childLabels;
using golden::expectedDocument;
using golden::findItem;
using golden::leafColumnLabels;
using golden::outputOf;
using golden::stringArray;
using Strings = std::vector<std::string>;

Strings itemNames(const rapidjson::Document& doc) {
    Strings names;
    for (const auto& item : outputOf(doc)["items"].GetArray()) names.push_back(item["name"].GetString());
    return names;
}

std::vector<double> rowOf(const rapidjson::Value& table, rapidjson::SizeType row) {
    return golden::numberArray(table["cells"][row]);
}

Strings numbered(std::size_t count) {
    Strings labels;
    for (std::size_t i = 1; i <= count; ++i) labels.push_back(std::to_string(i));
    return labels;
}

Strings messagesOf(const rapidjson::Document& doc) {
    Strings texts;
    for (const auto& m : doc["runs"][0]["messages"].GetArray())
        texts.push_back(std::string(m["level"].GetString()) + ": " + m["text"].GetString());
    return texts;
}

const Strings kCi95 = {"Confidence Interval 95.00/Lower", "Confidence Interval 95.00/Upper"};
const Strings kPerm05 = {"Permutation Confidence Interval 0.05/Lower", "Permutation Confidence Interval 0.05/Upper"};

Strings concat(std::initializer_list<Strings> parts) {
    Strings all;
    for (const Strings& p : parts) all.insert(all.end(), p.begin(), p.end());
    return all;
}

// x = (1..5), y = (1, 2, 9, 4, 4), by hand with a_ij = |x_i - x_j|, b_ij = |y_i - y_j|:
//   sum a b = 140, sum_i (row sum a)(row sum b) = 554, sum a = 40, sum b = 72
//   dCov  = 140/25 - 2*554/125 + 40*72/625  = 168/125  = 1.344
//   dVarX = 100/25 - 2*334/125 + 1600/625   = 152/125  = 1.216
//   dVarY = 380/25 - 2*1194/125 + 5184/625  = 2744/625 = 4.3904
//   dCor  = 1.344 / sqrt(1.216 * 4.3904)    = 0.581675 -> 0.5817
// (R energy: dcov(x,y)^2 = 1.344, dcor(x,y)^2 = 0.5816750507.)
// Interval, n = 5: z = atanh(0.581675) = 0.66499, se = 1/sqrt(2);
//   tanh(z - 1.96 se) < 0 -> 0, tanh(z + 1.96 se) = tanh(2.05089) = 0.96745 -> 0.9675.
// Descriptives: x mean 3, sd sqrt(10/4) = 1.5811; y mean 4, sd sqrt(38/4) = 3.0822.
TEST(GoldenFiveTables, HandValuesInTheFourTables) {
    const auto doc = expectedDocument("five_tables");
    EXPECT_EQ(itemNames(doc), (Strings{"Distance Correlation Details", "Distance Correlation Coefficients",
                                       "Distance Correlation Estimation Summary", "Distance Variance"}));
    const auto& details = *findItem(doc, "Distance Correlation Details");
    EXPECT_EQ(std::string(details["title"].GetString()), "Descriptive Statistics");
    EXPECT_EQ(details["format"]["decimals"].GetInt(), 3);
    EXPECT_EQ(leafColumnLabels(details["columnDimension"]),
              (Strings{"Variable", "Label", "N", "Mean", "Std. Deviation", "Minimum", "Maximum"}));
    EXPECT_EQ(childLabels(details["rowDimension"]), numbered(2));
    EXPECT_EQ(std::string(details["cells"][0][1].GetString()), "First measure");
    EXPECT_EQ(std::string(details["cells"][1][1].GetString()), "y");  // no label: the name
    EXPECT_EQ(details["cells"][0][3].GetDouble(), 3.0);
    EXPECT_EQ(details["cells"][0][4].GetDouble(), 1.5811);
    EXPECT_EQ(details["cells"][1][3].GetDouble(), 4.0);
    EXPECT_EQ(details["cells"][1][4].GetDouble(), 3.0822);

    const auto& coeff = *findItem(doc, "Distance Correlation Coefficients");
    EXPECT_EQ(leafColumnLabels(coeff["columnDimension"]), concat({{"dCor Value"}, kCi95}));
    EXPECT_EQ(std::string(coeff["rowDimension"]["label"].GetString()), "Variable");
    EXPECT_EQ(childLabels(coeff["rowDimension"]), Strings{"x vs. y"});
    EXPECT_EQ(rowOf(coeff, 0), (std::vector<double>{0.5817, 0.0, 0.9675}));
    EXPECT_EQ(coeff["footnotes"].Size(), 0u);
    ASSERT_EQ(coeff["footnoteRefs"].Size(), 1u);
    EXPECT_EQ(coeff["footnoteRefs"][0].GetInt(), 0);

    const auto& est = *findItem(doc, "Distance Correlation Estimation Summary");
    EXPECT_EQ(std::string(est["title"].GetString()), "Distance Correlation Estimates");
    EXPECT_EQ(leafColumnLabels(est["columnDimension"]), concat({{"dCov", "dCor"}, kCi95}));
    EXPECT_EQ(std::string(est["rowDimension"]["label"].GetString()), "Variable Pair");
    EXPECT_EQ(rowOf(est, 0), (std::vector<double>{1.344, 0.5817, 0.0, 0.9675}));
    EXPECT_EQ(est["footnotes"].Size(), 0u);
    EXPECT_EQ(est["footnoteRefs"].Size(), 0u);

    const auto& dvar = *findItem(doc, "Distance Variance");
    EXPECT_EQ(leafColumnLabels(dvar["columnDimension"]), Strings{"dVar"});
    EXPECT_EQ(childLabels(dvar["rowDimension"]), (Strings{"x", "y"}));
    EXPECT_EQ(rowOf(dvar, 0), std::vector<double>{1.216});
    EXPECT_EQ(rowOf(dvar, 1), std::vector<double>{4.3904});
}

TEST(GoldenFiveTables, NoPlotRequestedMeansNoChart) {
    const auto doc = expectedDocument("five_tables");
    for (const auto& item : outputOf(doc)["items"].GetArray()) EXPECT_STRNE(item["type"].GetString(), "chart");
}

TEST(GoldenFiveNoTables, NoPrintKeywordsStillGiveAnEmptyProcedureDocument) {
    const auto doc = expectedDocument("five_no_tables");
    EXPECT_EQ(std::string(outputOf(doc)["procedure"].GetString()), "Distance Correlation");
    EXPECT_EQ(outputOf(doc)["items"].Size(), 0u);
    EXPECT_TRUE(messagesOf(doc).empty());
}

TEST(GoldenCiLevel, ConfidenceLevelInTheLabelHasTwoDecimals) {
    // 99.999 is written with two decimals: 100.00.
    const auto doc = expectedDocument("five_ci_level_rounding");
    const auto& coeff = *findItem(doc, "Distance Correlation Coefficients");
    EXPECT_EQ(leafColumnLabels(coeff["columnDimension"]),
              (Strings{"dCor Value", "Confidence Interval 100.00/Lower", "Confidence Interval 100.00/Upper"}));
}

TEST(GoldenPermutation, ReplicatesFootnoteAndColumnOrder) {
    const auto doc = expectedDocument("twelve_permutation");
    const auto& coeff = *findItem(doc, "Distance Correlation Coefficients");
    // MAXITERATIONS=999.9 runs 999 permutations.
    EXPECT_EQ(stringArray(coeff["footnotes"]), Strings{"Number of Replicates 999"});
    EXPECT_EQ(coeff["footnoteRefs"].Size(), 1u);
    EXPECT_EQ(leafColumnLabels(coeff["columnDimension"]), concat({{"dCor Value"}, kPerm05, kCi95, {"Sig."}}));
    EXPECT_EQ(coeff["cells"][0].Size(), 6u);

    const auto& est = *findItem(doc, "Distance Correlation Estimation Summary");
    EXPECT_EQ(leafColumnLabels(est["columnDimension"]), concat({{"dCov", "dCor"}, kPerm05, kCi95, {"Sig."}}));
    EXPECT_EQ(est["cells"][0].Size(), 7u);
    EXPECT_EQ(est["footnotes"].Size(), 0u);
    EXPECT_EQ(est["footnoteRefs"].Size(), 0u);
}

TEST(GoldenPermutation, PermutationWithoutQualifiersUsesTheDefaults) {
    // Seed 2000000 is checked by the recomputed p-value and bounds.
    const auto doc = expectedDocument("twelve_permutation_defaults");
    const auto& coeff = *findItem(doc, "Distance Correlation Coefficients");
    EXPECT_EQ(stringArray(coeff["footnotes"]), Strings{"Number of Replicates 1000"});
    EXPECT_EQ(leafColumnLabels(coeff["columnDimension"]), concat({{"dCor Value"}, kPerm05, kCi95, {"Sig."}}));
}

TEST(GoldenThreeVariables, PairsInOrderAndRowsAlignAcrossTables) {
    const auto doc = expectedDocument("twelve_three_variables");
    const Strings pairs = {"a vs. b", "a vs. c", "b vs. c"};
    const auto& coeff = *findItem(doc, "Distance Correlation Coefficients");
    const auto& est = *findItem(doc, "Distance Correlation Estimation Summary");
    EXPECT_EQ(childLabels(coeff["rowDimension"]), pairs);
    EXPECT_EQ(childLabels(est["rowDimension"]), pairs);
    const Strings ci90 = {"Confidence Interval 90.00/Lower", "Confidence Interval 90.00/Upper"};
    const Strings perm10 = {"Permutation Confidence Interval 0.10/Lower", "Permutation Confidence Interval 0.10/Upper"};
    EXPECT_EQ(leafColumnLabels(coeff["columnDimension"]), concat({{"dCor Value"}, perm10, ci90, {"Sig."}}));
    EXPECT_EQ(stringArray(coeff["footnotes"]), Strings{"Number of Replicates 500"});
    for (rapidjson::SizeType k = 0; k < 3; ++k) {
        const std::vector<double> c = rowOf(coeff, k), e = rowOf(est, k);
        EXPECT_EQ(std::vector<double>(e.begin() + 1, e.end()), c) << pairs[k];
    }
    EXPECT_EQ(childLabels((*findItem(doc, "Distance Variance"))["rowDimension"]), (Strings{"a", "b", "c"}));
    EXPECT_EQ(childLabels((*findItem(doc, "Distance Correlation Details"))["rowDimension"]), numbered(3));
}

TEST(GoldenMatrix, OneHundredFiftyCasesAreCutToOneHundredWithIdentifierRows) {
    const auto doc = expectedDocument("ids150_matrix");
    EXPECT_EQ(itemNames(doc), (Strings{"Distance Correlation Details", "Distance Matrix for Variable a",
                                       "Distance Matrix for Variable b"}));
    // 153 rows, three incomplete (two adjacent, one without ID): 150 cases.
    EXPECT_EQ((*findItem(doc, "Distance Correlation Details"))["cells"][0][2].GetDouble(), 150.0);
    for (const char* name : {"Distance Matrix for Variable a", "Distance Matrix for Variable b"}) {
        const auto& m = *findItem(doc, name);
        EXPECT_EQ(std::string(m["title"].GetString()), name);
        EXPECT_EQ(m["minColumnWidth"].GetInt(), 70);
        EXPECT_EQ(m["format"]["decimals"].GetInt(), 3);
        EXPECT_EQ(stringArray(m["footnotes"]),
                  (Strings{"First 100 records are printed.", "Distance Matrix data limit reached ..."}));
        ASSERT_EQ(m["footnoteRefs"].Size(), 2u);
        EXPECT_EQ(m["footnoteRefs"][0].GetInt(), 0);
        EXPECT_EQ(m["footnoteRefs"][1].GetInt(), 1);
        EXPECT_EQ(leafColumnLabels(m["columnDimension"]), numbered(100));
        EXPECT_EQ(std::string(m["rowDimension"]["label"].GetString()), "id");
        EXPECT_TRUE(m["rowDimension"]["showLabel"].GetBool());
        const Strings rows = childLabels(m["rowDimension"]);
        ASSERT_EQ(rows.size(), 100u);
        ASSERT_EQ(m["cells"].Size(), 100u);
        EXPECT_EQ(m["cells"][99].Size(), 100u);
        EXPECT_EQ(rows[0], "1001");
        EXPECT_EQ(rows[4], "17");    // ID 17.9
        EXPECT_EQ(rows[11], "1012");  // ID 1012.75
        EXPECT_EQ(rows[19], "1022");  // the cases of IDs 1020 and 1021 were incomplete
        EXPECT_EQ(rows[57], "1061");  // the case after 1059 had no ID
        EXPECT_EQ(rows[99], "1103");
    }
    EXPECT_EQ(messagesOf(doc), Strings{"warning: Performance improvement ..."});
}

TEST(GoldenMatrix, PerformanceWarningIsShownOnceOnStandardError) {
    const DistcorrResult r = runDistcorr({"--quiet", "--data", golden::dataFile("ids150.csv"),
                                          golden::syntaxFile("ids150_matrix")});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.err, "Warning: DISTANCE CORRELATION: Performance improvement ...\n");
}

TEST(GoldenMatrix, ExactlyOneHundredCasesAreNotCutAndRowsAreNumbered) {
    const auto doc = expectedDocument("ids100_matrix");
    const auto& m = *findItem(doc, "Distance Matrix for Variable a");
    EXPECT_EQ(stringArray(m["footnotes"]), Strings{"Distance Matrix data limit reached ..."});
    ASSERT_EQ(m["footnoteRefs"].Size(), 1u);
    EXPECT_EQ(m["footnoteRefs"][0].GetInt(), 0);
    EXPECT_EQ(std::string(m["rowDimension"]["label"].GetString()), "id");
    EXPECT_EQ(childLabels(m["rowDimension"]), numbered(100));
    EXPECT_EQ(leafColumnLabels(m["columnDimension"]), numbered(100));
    EXPECT_TRUE(messagesOf(doc).empty());
}

TEST(GoldenMatrix, FortyCasesWithIdentifiersHaveNumberedRows) {
    const auto doc = expectedDocument("ids40_matrix");
    const auto& m = *findItem(doc, "Distance Matrix for Variable b");
    EXPECT_EQ(std::string(m["rowDimension"]["label"].GetString()), "id");
    EXPECT_EQ(childLabels(m["rowDimension"]), numbered(40));
    EXPECT_EQ(leafColumnLabels(m["columnDimension"]), numbered(40));
    EXPECT_EQ(stringArray(m["footnotes"]), Strings{"Distance Matrix data limit reached ..."});
    EXPECT_TRUE(messagesOf(doc).empty());
}

const Strings kGpl = {"SOURCE: s = userSource(id(\"Distance Correlation/chart1\"))",
                      "DATA: xdata  = col(source(s), name(\"xdata\"))",
                      "DATA: ydata  = col(source(s), name(\"ydata\"))",
                      "GRAPH: begin()",
                      "GUIDE: axis(dim(2),label(\"z\"))",
                      "GUIDE: axis(dim(1),label(\"x\"))",
                      "GUIDE: text.title(label(\"Scatter Plot of pairwise distances\"))",
                      "ELEMENT: point(position(xdata*ydata))",
                      "GRAPH: end()"};

TEST(GoldenScatter, GplStatementsAndPointsInUpperTriangleOrder) {
    const auto doc = expectedDocument("five_scatter");
    EXPECT_EQ(itemNames(doc), (Strings{"Distance Correlation Details", "Scatter Plot of pairwise distances"}));
    const auto& chart = *findItem(doc, "Scatter Plot of pairwise distances");
    EXPECT_EQ(stringArray(chart["gpl"]), kGpl);
    EXPECT_EQ(std::string(chart["data"]["id"].GetString()), "Distance Correlation/chart1");
    // Pairs (1,2), (1,3), (1,4), (1,5), (2,3), ... of x = (1..5) and z = (2, 7, 1, 8, 2).
    EXPECT_EQ(golden::numberArray(chart["data"]["xdata"]), (std::vector<double>{1, 2, 3, 4, 1, 2, 3, 1, 2, 1}));
    EXPECT_EQ(golden::numberArray(chart["data"]["ydata"]), (std::vector<double>{5, 1, 6, 0, 6, 1, 5, 7, 1, 6}));
    // z has an empty title in the dictionary; the host gives no label, so the name shows.
    EXPECT_EQ(std::string((*findItem(doc, "Distance Correlation Details"))["cells"][2][1].GetString()), "z");
}

TEST(GoldenScatter, SameVariableOnBothAxesPutsPointsOnTheDiagonal) {
    const auto doc = expectedDocument("five_scatter_same_axis");
    EXPECT_EQ(itemNames(doc), Strings{"Scatter Plot of pairwise distances"});
    const auto& chart = *findItem(doc, "Scatter Plot of pairwise distances");
    EXPECT_EQ(stringArray(chart["gpl"])[4], "GUIDE: axis(dim(2),label(\"y\"))");
    EXPECT_EQ(stringArray(chart["gpl"])[5], "GUIDE: axis(dim(1),label(\"y\"))");
    EXPECT_EQ(chart["data"]["xdata"].Size(), 10u);
    EXPECT_EQ(golden::numberArray(chart["data"]["xdata"]), golden::numberArray(chart["data"]["ydata"]));
}

TEST(GoldenScatter, TwoCasesGiveOnePoint) {
    const auto doc = expectedDocument("two_cases");
    const auto& chart = *findItem(doc, "Scatter Plot of pairwise distances");
    // u = (1.5, 4), v = (2, -1).
    EXPECT_EQ(golden::numberArray(chart["data"]["xdata"]), std::vector<double>{2.5});
    EXPECT_EQ(golden::numberArray(chart["data"]["ydata"]), std::vector<double>{3.0});
    // Two cases: n - 3 wraps around, the interval collapses onto the clamped dCor of 1.
    EXPECT_EQ(rowOf(*findItem(doc, "Distance Correlation Coefficients"), 0), (std::vector<double>{1, 1, 1}));
}

TEST(GoldenGerman, TablesChartAndFootnotesAreTranslated) {
    const auto doc = expectedDocument("twelve_german");
    // Table names are identities and stay English, except the matrix table named by its title.
    EXPECT_EQ(itemNames(doc), (Strings{"Distance Correlation Details", "Distance Correlation Coefficients",
                                       "Distance Correlation Estimation Summary", "Distance Variance",
                                       "Distanzmatrix für Variable b", "Streudiagramm der paarweisen Distanzen"}));
    const auto& details = *findItem(doc, "Distance Correlation Details");
    EXPECT_EQ(std::string(details["title"].GetString()), "Deskriptive Statistiken");
    EXPECT_EQ(leafColumnLabels(details["columnDimension"]),
              (Strings{"Variable", "Beschriftung", "N", "Mittelwert", "Std.-Abweichung", "Minimum", "Maximum"}));

    const auto& coeff = *findItem(doc, "Distance Correlation Coefficients");
    EXPECT_EQ(std::string(coeff["title"].GetString()), "Distanzkorrelationskoeffizienten");
    EXPECT_EQ(leafColumnLabels(coeff["columnDimension"]),
              (Strings{"dCor-Wert", "Permutations-Konfidenzintervall 0.05/Untergrenze",
                       "Permutations-Konfidenzintervall 0.05/Obergrenze", "Konfidenzintervall 95.00/Untergrenze",
                       "Konfidenzintervall 95.00/Obergrenze", "Sig."}));
    EXPECT_EQ(childLabels(coeff["rowDimension"]), Strings{"a gegen b"});
    EXPECT_EQ(stringArray(coeff["footnotes"]), Strings{"Anzahl der Replikationen 300"});

    const auto& est = *findItem(doc, "Distance Correlation Estimation Summary");
    EXPECT_EQ(std::string(est["title"].GetString()), "Schätzungen der Distanzkorrelation");
    EXPECT_EQ(std::string(est["rowDimension"]["label"].GetString()), "Variablenpaar");

    const auto& dvar = *findItem(doc, "Distance Variance");
    EXPECT_EQ(std::string(dvar["title"].GetString()), "Distanzvarianz");
    EXPECT_EQ(childLabels(dvar["rowDimension"]), (Strings{"a", "b"}));  // names are not looked up

    const auto& matrix = *findItem(doc, "Distanzmatrix für Variable b");
    EXPECT_EQ(std::string(matrix["title"].GetString()), "Distanzmatrix für Variable b");
    EXPECT_EQ(stringArray(matrix["footnotes"]), Strings{"Datengrenze der Distanzmatrix erreicht ..."});

    const auto& chart = *findItem(doc, "Streudiagramm der paarweisen Distanzen");
    EXPECT_EQ(stringArray(chart["gpl"])[6], "GUIDE: text.title(label(\"Streudiagramm der paarweisen Distanzen\"))");
}

TEST(GoldenListwise, IncompleteCasesAndCasesWithoutIdAreDropped) {
    // Kept: IDs 101, 105, 106, 107, 108, 109 with a = (2, 7, 1, 3, 6, 9), b = (5, 3, 2, 8, 6, 4).
    const auto doc = expectedDocument("listwise_id");
    const auto& details = *findItem(doc, "Distance Correlation Details");
    EXPECT_EQ(details["cells"][0][2].GetDouble(), 6.0);
    EXPECT_EQ(details["cells"][0][3].GetDouble(), 4.6667);  // 28/6
    EXPECT_EQ(details["cells"][0][5].GetDouble(), 1.0);
    EXPECT_EQ(details["cells"][0][6].GetDouble(), 9.0);
    EXPECT_EQ(details["cells"][1][5].GetDouble(), 2.0);
    EXPECT_EQ(details["cells"][1][6].GetDouble(), 8.0);
    const auto& a = *findItem(doc, "Distance Matrix for Variable a");
    EXPECT_EQ(std::string(a["rowDimension"]["label"].GetString()), "id");
    EXPECT_EQ(childLabels(a["rowDimension"]), numbered(6));
    EXPECT_EQ(rowOf(a, 0), (std::vector<double>{0, 5, 1, 1, 4, 7}));
    EXPECT_EQ(rowOf(*findItem(doc, "Distance Matrix for Variable b"), 0), (std::vector<double>{0, 2, 3, 3, 1, 1}));
}

TEST(GoldenNormalization, RobustScalingOfFiveCasesByHand) {
    // ROBUST divides by the hinge spread: x (1..5) by 4.5 - 1.5 = 3, y (1, 2, 4, 4, 9 sorted)
    // by 6.5 - 1.5 = 5, so dVar(x) = 1.216/9, dVar(y) = 4.3904/25, dCov = 1.344/15.
    const auto doc = expectedDocument("five_robust");
    const auto& dvar = *findItem(doc, "Distance Variance");
    EXPECT_EQ(rowOf(dvar, 0), std::vector<double>{0.1351});
    EXPECT_EQ(rowOf(dvar, 1), std::vector<double>{0.1756});
    const auto& est = *findItem(doc, "Distance Correlation Estimation Summary");
    EXPECT_EQ(rowOf(est, 0)[0], 0.0896);
    EXPECT_EQ(rowOf(est, 0)[1], 0.5817);  // dCor does not change under rescaling
    // y rescaled: (-0.6, -0.4, 1, 0, 0).
    const std::vector<double> y1 = rowOf(*findItem(doc, "Distance Matrix for Variable y"), 0);
    const std::vector<double> hand = {0, 0.2, 1.6, 0.6, 0.6};
    ASSERT_EQ(y1.size(), hand.size());
    for (std::size_t j = 0; j < hand.size(); ++j) EXPECT_NEAR(y1[j], hand[j], 1e-12) << j;
    // The descriptive table keeps the raw units.
    EXPECT_EQ((*findItem(doc, "Distance Correlation Details"))["cells"][1][6].GetDouble(), 9.0);
}

TEST(GoldenNormalization, LinearRescalingsKeepDCorAndLogChangesIt) {
    const auto coefficients = [](const char* name) {
        const auto doc = expectedDocument(name);
        const auto& t = *findItem(doc, "Distance Correlation Coefficients");
        return std::vector<std::vector<double>>{rowOf(t, 0), rowOf(t, 1), rowOf(t, 2)};
    };
    const auto zscore = coefficients("twelve_zscore");
    EXPECT_EQ(coefficients("twelve_minmax"), zscore);
    EXPECT_EQ(coefficients("twelve_robust"), zscore);
    EXPECT_NE(coefficients("twelve_log")[0][0], zscore[0][0]);
    EXPECT_EQ(rowOf(*findItem(expectedDocument("twelve_three_variables"), "Distance Correlation Coefficients"), 0)[0],
              zscore[0][0]);
}

}  // namespace
