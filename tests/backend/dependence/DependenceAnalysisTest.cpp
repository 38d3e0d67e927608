// The engine's comparisons, case selection and per-row results.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <vector>

#include "DependenceAnalysis.h"

namespace {

const double kMissing = -DBL_MAX;

DependenceSettings threeVariables() {
    DependenceSettings s;
    s.variables = {
        {"a", {1, 2, 3, 4, 5, 6, kMissing}}, {"b", {2, 1, 4, 3, 6, 5, 7}}, {"c", {kMissing, 3, 1, 2, 5, 9, 8}}};
    return s;
}

TEST(DependenceAnalysisTest, AllPairsOfOneListInOrder) {
    DependenceSettings s = threeVariables();
    std::vector<DependenceResult> results;
    DependenceAnalysis analysis(s, results);
    const auto c = analysis.comparisons();
    ASSERT_EQ(c.size(), 3u);
    EXPECT_EQ(c[0].label, "a vs. b");
    EXPECT_EQ(c[1].label, "a vs. c");
    EXPECT_EQ(c[2].label, "b vs. c");
}

TEST(DependenceAnalysisTest, CrossPairsAndSets) {
    DependenceSettings s = threeVariables();
    s.with = {s.variables[2]};
    s.variables.pop_back();
    std::vector<DependenceResult> results;
    {
        DependenceAnalysis analysis(s, results);
        const auto c = analysis.comparisons();
        ASSERT_EQ(c.size(), 2u);
        EXPECT_EQ(c[0].label, "a vs. c");
        EXPECT_EQ(c[1].label, "b vs. c");
    }
    s.mode = DependenceMode::Sets;
    DependenceAnalysis analysis(s, results);
    const auto c = analysis.comparisons();
    ASSERT_EQ(c.size(), 1u);
    EXPECT_EQ(c[0].label, "(a, b) vs. (c)");
    EXPECT_EQ(c[0].x.size(), 2u);
}

TEST(DependenceAnalysisTest, ListwiseAndPairwiseCases) {
    DependenceSettings s = threeVariables();
    std::vector<DependenceResult> results;
    DependenceAnalysis listwise(s, results);
    const auto c = listwise.comparisons();
    // Case 0 lacks c, case 6 lacks a: listwise drops both everywhere.
    EXPECT_EQ(listwise.casesOf(c[0]), (std::vector<std::size_t>{1, 2, 3, 4, 5}));
    s.missing = DependenceMissing::Pairwise;
    DependenceAnalysis pairwise(s, results);
    EXPECT_EQ(pairwise.casesOf(c[0]).size(), 6u);  // a vs. b: case 6 only
    EXPECT_EQ(pairwise.casesOf(c[2]).size(), 6u);  // b vs. c: case 0 only
}

TEST(DependenceAnalysisTest, TooFewCasesLeaveTheRowEmpty) {
    DependenceSettings s;
    s.variables = {{"a", {1, 2, 3, kMissing, 5}}, {"b", {2, 1, 4, 3, kMissing}}};
    std::vector<DependenceResult> results;
    DependenceAnalysis analysis(s, results);
    // Three complete cases: the U-statistic needs four.
    EXPECT_EQ(analysis.start(), 1u);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].n, 3u);
    EXPECT_FALSE(results[0].computed);
    EXPECT_TRUE(std::isnan(results[0].correlation));

    // The V-statistic needs two.
    s.statistic = DependenceStatistic::V;
    s.test = DependenceTest::None;
    results.clear();
    DependenceAnalysis v(s, results);
    EXPECT_EQ(v.start(), 0u);
    EXPECT_TRUE(results[0].computed);
    EXPECT_TRUE(std::isnan(results[0].pValue));
}

TEST(DependenceAnalysisTest, PerfectDependenceByHand) {
    // b = 2a: dCor (V) is 1, bcdCor (U) is 1, the t-test's T infinite, p 0.
    DependenceSettings s;
    s.variables = {{"a", {1, 4, 2, 8, 5, 7}}, {"b", {2, 8, 4, 16, 10, 14}}};
    std::vector<DependenceResult> results;
    DependenceAnalysis u(s, results);
    ASSERT_EQ(u.start(), 0u);
    EXPECT_NEAR(results[0].correlation, 1.0, 1e-14);
    EXPECT_EQ(results[0].df, 6.0 * 3 / 2 - 1);
    EXPECT_EQ(results[0].pValue, 0.0);
    s.statistic = DependenceStatistic::V;
    s.test = DependenceTest::Permutation;
    s.replicates = 99;
    results.clear();
    DependenceAnalysis v(s, results);
    ASSERT_EQ(v.start(), 0u);
    EXPECT_NEAR(results[0].correlation, 1.0, 1e-14);
    // Only permutations that keep the order (the identity, by chance) reach
    // the observed value; 6! = 720 orders: almost surely k = 0.
    EXPECT_LE(results[0].pValue, 2.0 / 100);
}

}  // namespace
