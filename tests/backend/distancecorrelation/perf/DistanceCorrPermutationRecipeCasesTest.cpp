// Data sets on which a fast permutation path could part from the literal
// recipe: the recipe's double normaliser overflowing, bounds interpolated to
// a rounding half-way point, and a NaN ratio. Each is run through every way
// of computing the permuted statistics; the unrounded p-values and bounds
// must be the recipe's (computed here by its transcription) bit for bit, and
// the printed (rounded) values are checked as well.
#include <gtest/gtest.h>

#include <vector>

#include "DistanceCorrPermutationKernel.h"
#include "PermutationRecipeRun.h"

namespace {

using How = DistanceCorrAlgo::PermutationStatistics;
const How kAllWays[] = {How::Fast, How::Kernel, How::Recipe, How::MatrixRecipe};

// Every way gives the recipe's unrounded outcome; returns the default way's run.
permrun::EngineOutcome expectRecipeEverywhere(const permrun::Case& c) {
    const std::vector<literal::Outcome> recipe = permrun::runRecipe(c);
    permrun::EngineOutcome fast;
    for (How how : kAllWays) {
        const permrun::EngineOutcome engine = permrun::runEngine(c, how);
        EXPECT_EQ(engine.status, 0);
        EXPECT_TRUE(permrun::identical(engine, recipe)) << "way " << static_cast<int>(how);
        if (how == How::Fast) fast = engine;
    }
    return fast;
}

TEST(DistanceCorrPermutationRecipeCases, NormaliserOverflowsInTheRecipe) {
    // dVarX * dVarY overflows in double: the square root is infinite and
    // every permuted statistic, like the observed one, is 0.
    permrun::Case c;
    c.columns.assign(2, std::vector<double>(40));
    for (int i = 1; i <= 40; ++i) {
        c.columns[0][i - 1] = i * 1e80;
        c.columns[1][i - 1] = (i - 20.0) * (i - 20.0) * 1e80;
    }
    c.seed = 1;
    c.iterations = 200;
    // The kernel, whose sums do not overflow, leaves these data to the recipe.
    EXPECT_FALSE(DistanceCorrPermutationKernel(c.columns[0], c.columns[1]).usable());
    const permrun::EngineOutcome out = expectRecipeEverywhere(c);
    ASSERT_EQ(out.results.size(), 1u);
    EXPECT_EQ(out.results[0].dCor, 0.0);
    EXPECT_EQ(out.raw[0].lower, 0.0);
    EXPECT_EQ(out.raw[0].upper, 0.0);
    EXPECT_EQ(out.raw[0].pValue, 1.0);
}

TEST(DistanceCorrPermutationRecipeCases, MixedScalesOverflowOnlyInTheRecipe) {
    // 1e90 against 1e70: each variance is fine in double, their product is not.
    permrun::Case c;
    c.columns = {{1e90, 3e90, 2e90, 7e90, 5e90, 4e90, 8e90, 6e90, 9e90, 1.5e90, 2.5e90, 3.5e90},
                 {2e70, 1e70, 4e70, 3e70, 6e70, 5e70, 8e70, 9e70, 7e70, 1.5e70, 2.5e70, 3.5e70}};
    c.seed = 5;
    c.iterations = 40;
    EXPECT_FALSE(DistanceCorrPermutationKernel(c.columns[0], c.columns[1]).usable());
    const permrun::EngineOutcome out = expectRecipeEverywhere(c);
    EXPECT_EQ(out.raw[0].upper, 0.0);
    EXPECT_EQ(out.raw[0].pValue, 1.0);
}

TEST(DistanceCorrPermutationRecipeCases, UpperBoundOnARoundingHalfWayPoint) {
    // Pair v1-v2: the recipe's upper bound is 0.98124999999999996, printed 0.9813.
    permrun::Case c;
    c.columns = {{4, 4, 1}, {1, 9, 1}, {16, 16, 1}};
    c.seed = 31773;
    c.iterations = 2;
    const permrun::EngineOutcome out = expectRecipeEverywhere(c);
    ASSERT_EQ(out.results.size(), 3u);
    EXPECT_EQ(out.raw[2].upper, 0.98124999999999996);
    EXPECT_EQ(out.results[2].permUpper, 0.9813);
}

TEST(DistanceCorrPermutationRecipeCases, LowerBoundOnARoundingHalfWayPoint) {
    // Cases (3,9,9,9), (3,9,9,9), (2,4,4,4): pair v1-v2 has the recipe's
    // lower bound 0.26874999999999993, printed 0.2687.
    permrun::Case c;
    c.columns = {{3, 3, 2}, {9, 9, 4}, {9, 9, 4}, {9, 9, 4}};
    c.seed = 42;
    c.iterations = 2;
    const permrun::EngineOutcome out = expectRecipeEverywhere(c);
    ASSERT_EQ(out.results.size(), 6u);
    EXPECT_EQ(out.raw[3].lower, 0.26874999999999993);
    EXPECT_EQ(out.results[3].permLower, 0.2687);
}

TEST(DistanceCorrPermutationRecipeCases, NaNRatioClampsToOne) {
    // LOG of -2 is NaN and of -1 is -infinity: every permuted ratio is NaN,
    // clamped to 1; the observed dCor is 0. Bounds 1 / 1, p-value 1.
    permrun::Case c;
    c.columns = {{-2, -1, 0, 1, 2, 3}, {1, 2, 3, 4, 5, 6}};
    c.normalization = "LOG";
    c.seed = 7;
    c.iterations = 50;
    c.alpha = 0.1;
    const permrun::EngineOutcome out = expectRecipeEverywhere(c);
    EXPECT_EQ(out.results[0].dCor, 0.0);
    EXPECT_EQ(out.results[0].permLower, 1.0);
    EXPECT_EQ(out.results[0].permUpper, 1.0);
    EXPECT_EQ(out.results[0].pValue, 1.0);
}

}  // namespace
