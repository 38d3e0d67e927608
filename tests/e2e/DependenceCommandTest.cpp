// DEPENDENCE through distcorr on a small fixture (tests/fixtures/dependence):
// every estimate and test in the output document against the values energy
// computed for the same cases (pairs_expected.csv, made by
// tests/backend/dependence/reference/fixture_values.R), the text table, the
// missing-data rules, reproducible permutation p-values, and the messages.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "DistcorrRunner.h"

namespace {

const std::string kPairs = fixture("dependence/pairs.csv");

struct Expected {
    double n, dcor, dcov, bcdcor, dcovU, T, df, p, pdcor, pdcov;
};

double number(const std::string& text) { return text == "NA" ? std::nan("") : std::stod(text); }

std::map<std::string, Expected> expectedValues() {
    std::map<std::string, Expected> out;
    std::istringstream in(readWholeFile(fixture("dependence/pairs_expected.csv")));
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::vector<std::string> f;
        std::istringstream fields(line);
        std::string field;
        while (std::getline(fields, field, ',')) f.push_back(field);
        out[f[0]] = {number(f[1]), number(f[2]), number(f[3]), number(f[4]), number(f[5]),
                     number(f[6]), number(f[7]), number(f[8]), number(f[9]), number(f[10])};
    }
    return out;
}

const Expected& expected(const std::string& label) {
    static const std::map<std::string, Expected> values = expectedValues();
    return values.at(label);
}

struct Outcome {
    DistcorrResult result;
    rapidjson::Document document;
};

Outcome run(const std::string& command, const std::string& data = kPairs) {
    static int counter = 0;
    const std::string json = makeTempDir() + "/out" + std::to_string(++counter) + ".json";
    Outcome r;
    r.result = runDistcorr({"--data", data, "-e", command, "--output", json});
    r.document = parseJsonFile(json);
    return r;
}

const rapidjson::Value& table(const Outcome& r) { return r.document["runs"][0]["output"]["items"][0]; }

// The cells of row `row` as numbers (texts such as N are read as numbers).
std::vector<double> cells(const Outcome& r, rapidjson::SizeType row) {
    std::vector<double> out;
    for (const auto& c : table(r)["cells"][row].GetArray())
        out.push_back(c.IsNumber() ? c.GetDouble() : c.IsString() ? std::stod(c.GetString()) : std::nan(""));
    return out;
}

std::string rowLabel(const Outcome& r, rapidjson::SizeType row) {
    return table(r)["rowDimension"]["children"][row]["label"].GetString();
}

void expectAgree(double ours, double energy, const char* what) {
    EXPECT_NEAR(ours, energy, 1e-10 * std::fabs(energy) + 1e-300) << what;
}

TEST(DependenceCommandTest, SimplestFormPrintsBiasCorrectedDcorAndTheTTest) {
    const Outcome r = run("DEPENDENCE VARIABLES=x y.");
    EXPECT_EQ(r.result.exitCode, 0) << r.result.err;
    EXPECT_EQ(r.result.err, "");
    EXPECT_EQ(r.result.out,
              "Dependence\n"
              "\n"
              "Bias-Corrected Distance Correlation [a,b,c]\n"
              "=========================================================================\n"
              "                                                            t-Test\n"
              "                                                     --------------------\n"
              "Pair     N   bcdCor (U, squared)  dCov (U, squared)        T  df     Sig.\n"
              "-------------------------------------------------------------------------\n"
              "x vs. y  16               0.9708             7.6306  41.0489  103  0.0000\n"
              "=========================================================================\n"
              "a. Bias-corrected distance correlation and covariance: U-statistics on the squared scale (can be "
              "negative), exponent 1.\n"
              "b. t-test of independence: T = sqrt(M - 1) R / sqrt(1 - R^2), df = M - 1, M = N(N - 3)/2, one-sided "
              "p.\n"
              "c. Missing values: listwise, cases complete on every named variable.\n"
              "\n");
    const Expected& e = expected("x vs. y");
    const std::vector<double> c = cells(r, 0);
    ASSERT_EQ(c.size(), 6u);
    EXPECT_EQ(c[0], 16);
    expectAgree(c[1], e.bcdcor, "bcdcor");
    expectAgree(c[2], e.dcovU, "dcovU");
    expectAgree(c[3], e.T, "T");
    EXPECT_EQ(c[4], e.df);
    expectAgree(c[5], e.p, "p");
}

TEST(DependenceCommandTest, ListwiseByDefaultPairwiseOnRequest) {
    const Outcome listwise = run("DEPENDENCE VARIABLES=x y w.");
    ASSERT_EQ(listwise.result.exitCode, 0) << listwise.result.err;
    EXPECT_EQ(rowLabel(listwise, 0), "x vs. y");
    EXPECT_EQ(rowLabel(listwise, 1), "x vs. w");
    EXPECT_EQ(rowLabel(listwise, 2), "y vs. w");
    std::vector<double> c = cells(listwise, 0);
    EXPECT_EQ(c[0], 15);  // case 3 has no w
    expectAgree(c[1], expected("x vs. y listwise").bcdcor, "bcdcor listwise");
    c = cells(listwise, 1);
    expectAgree(c[1], expected("x vs. w").bcdcor, "negative bcdcor");
    expectAgree(c[5], expected("x vs. w").p, "p");

    const Outcome pairwise = run("DEPENDENCE VARIABLES=x y w /MISSING PAIRWISE.");
    c = cells(pairwise, 0);
    EXPECT_EQ(c[0], 16);
    expectAgree(c[1], expected("x vs. y").bcdcor, "bcdcor pairwise");
    EXPECT_EQ(cells(pairwise, 1)[0], 15);
}

TEST(DependenceCommandTest, VStatisticOnTheRootScale) {
    const Outcome r = run("DEPENDENCE VARIABLES=x WITH y w /CRITERIA STATISTIC=V /TEST NONE.");
    ASSERT_EQ(r.result.exitCode, 0) << r.result.err;
    EXPECT_NE(r.result.out.find("dCor (V, root)  dCov (V, root)"), std::string::npos) << r.result.out;
    std::vector<double> c = cells(r, 0);
    ASSERT_EQ(c.size(), 3u);
    expectAgree(c[1], expected("x vs. y listwise").dcor, "dcor");
    expectAgree(c[2], expected("x vs. y listwise").dcov, "dcov");
    c = cells(r, 1);
    expectAgree(c[1], expected("x vs. w").dcor, "dcor");
}

TEST(DependenceCommandTest, SetsOfVariablesAsVectors) {
    const Outcome r = run("DEPENDENCE VARIABLES=x z WITH y w /CRITERIA MODE=SETS.");
    ASSERT_EQ(r.result.exitCode, 0) << r.result.err;
    EXPECT_EQ(rowLabel(r, 0), "(x, z) vs. (y, w)");
    const Expected& e = expected("x z vs. y w");
    const std::vector<double> c = cells(r, 0);
    EXPECT_EQ(c[0], e.n);
    expectAgree(c[1], e.bcdcor, "bcdcor");
    expectAgree(c[2], e.dcovU, "dcovU");
    expectAgree(c[3], e.T, "T");
    expectAgree(c[5], e.p, "p");
}

TEST(DependenceCommandTest, PartialDistanceCorrelation) {
    Outcome r = run("DEPENDENCE VARIABLES=x y CONTROL=z.");
    ASSERT_EQ(r.result.exitCode, 0) << r.result.err;
    EXPECT_NE(r.result.out.find("pdCor (U, squared)  pdCov (U, squared)"), std::string::npos) << r.result.out;
    std::vector<double> c = cells(r, 0);
    ASSERT_EQ(c.size(), 3u);  // no test unless asked for
    expectAgree(c[1], expected("x vs. y | z").pdcor, "pdcor");
    expectAgree(c[2], expected("x vs. y | z").pdcov, "pdcov");

    r = run("DEPENDENCE VARIABLES=x y CONTROL=z w /TEST PERMUTATION(SEED=5 REPLICATES=199).");
    ASSERT_EQ(r.result.exitCode, 0) << r.result.err;
    c = cells(r, 0);
    EXPECT_EQ(c[0], 15);
    expectAgree(c[1], expected("x vs. y | z w").pdcor, "pdcor");
    // y is almost a function of x whatever z and w: no replicate reaches it.
    EXPECT_DOUBLE_EQ(c[3], 1.0 / 200);
}

TEST(DependenceCommandTest, PermutationPValuesRepeatExactly) {
    const std::string command =
        "DEPENDENCE VARIABLES=x y z w /CRITERIA STATISTIC=V EXPONENT=0.5 /TEST PERMUTATION(SEED=42 REPLICATES=499) "
        "/MISSING PAIRWISE.";
    const Outcome a = run(command);
    const Outcome b = run(command);
    ASSERT_EQ(a.result.exitCode, 0) << a.result.err;
    EXPECT_EQ(a.result.out, b.result.out);
    for (rapidjson::SizeType row = 0; row < 6; ++row) {
        const double p = cells(a, row)[3];
        EXPECT_EQ(p, cells(b, row)[3]);
        const double k = p * 500 - 1;  // p = (k + 1) / (R + 1)
        EXPECT_NEAR(k, std::round(k), 1e-9);
    }
    const Outcome other =
        run("DEPENDENCE VARIABLES=x y z w /CRITERIA STATISTIC=V EXPONENT=0.5 "
            "/TEST PERMUTATION(SEED=43 REPLICATES=499) /MISSING PAIRWISE.");
    EXPECT_NE(a.result.out, other.result.out);
}

void expectError(const std::string& command, const std::string& message, const std::string& data = kPairs) {
    const DistcorrResult r = runDistcorr({"--quiet", "--data", data, "-e", command});
    EXPECT_EQ(r.exitCode, 1) << command;
    EXPECT_NE(r.err.find("Error: DEPENDENCE: " + message), std::string::npos) << command << "\n" << r.err;
    EXPECT_EQ(r.out, "") << command;
}

TEST(DependenceCommandTest, MessagesForBadCommands) {
    expectError("DEPENDENCE VARIABLES=x name.", "VARIABLES: variable \"name\" is a text variable");
    expectError("DEPENDENCE VARIABLES=x grp.",
                "Variable \"grp\" named on VARIABLES is nominal; a scale (continuous) variable is needed there.");
    expectError("DEPENDENCE VARIABLES=x WITH grp.", "Variable \"grp\" named on WITH is nominal");
    expectError("DEPENDENCE VARIABLES=x y /CRITERIA EXPONENT=2.", "CRITERIA EXPONENT: value 2 must be less than 2");
    expectError("DEPENDENCE VARIABLES=x y /CRITERIA EXPONENT=0.", "CRITERIA EXPONENT: value 0 must be greater than 0");
    expectError("DEPENDENCE VARIABLES=x y WITH qq.", "WITH: variable \"qq\" is not in the active data set");
    expectError("DEPENDENCE VARIABLES=x y /TEST TTEST NONE.", "TEST: name one test: TTEST, PERMUTATION or NONE.");
    expectError("DEPENDENCE VARIABLES=x y /CRITERIA STATISTIC=V /TEST TTEST.",
                "TEST TTEST: the t-test is a test of the bias-corrected statistic");
    expectError("DEPENDENCE VARIABLES=x y CONTROL=z /TEST TTEST.", "TEST TTEST: there is no t-test of partial");
    expectError("DEPENDENCE VARIABLES=x y CONTROL=z /CRITERIA STATISTIC=V.",
                "CRITERIA STATISTIC: partial distance correlation is a bias-corrected statistic");
    expectError("DEPENDENCE VARIABLES=x.", "VARIABLES: at least two variables are needed");
    expectError("DEPENDENCE VARIABLES=x y CONTROL=y.", "CONTROL: variable \"y\" is also compared");
    expectError("DEPENDENCE VARIABLES=x y /CRITERIA MODE=SETS.", "CRITERIA MODE: SETS compares two sets");
    expectError("DEPENDENCE VARIABLES=x y /MISSING LISTWISE PAIRWISE.", "MISSING: name one of LISTWISE or PAIRWISE.");
    expectError("DEPENDENCE VARIABLES=x y /TEST PERMUTATION(REPLICATES=9.5).",
                "TEST PERMUTATION REPLICATES: the number of replicates must be a whole number");
}

TEST(DependenceCommandTest, TooFewCases) {
    expectError("DEPENDENCE VARIABLES=x y.",
                "Too few complete cases: no comparison has the 4 cases its statistic needs.",
                fixture("dependence/three.csv"));
    // The V-statistic needs two.
    const DistcorrResult r = runDistcorr({"--data", fixture("dependence/three.csv"), "-e",
                                          "DEPENDENCE VARIABLES=x y /CRITERIA STATISTIC=V /TEST NONE."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
}

}  // namespace
