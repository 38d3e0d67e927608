// The selection from approximate statistics: statistics whose comparisons are
// in doubt (with each other, with the observed value) are recomputed, the
// elements the selections leave at k and k + 1 get their recipe values, and
// the unrounded p-value and bounds are those of the recipe's values, bit for
// bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "DistanceCorrPermutationSelection.h"
#include "LiteralPermutationRecipe.h"

namespace {

using Outcome = DistanceCorrPermutationSelection::Outcome;

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

struct Settled {
    bool ok;
    Outcome outcome;
    std::vector<std::uint64_t> recomputed;  // every permutation asked for
};

// The selection fed with approximate values, recomputing from truth.
Settled settle(const std::vector<double>& approximate, const std::vector<double>& truth, double observed, double alpha,
               double c0, double c1) {
    DistanceCorrPermutationSelection selection(approximate.size(), alpha, c0, c1);
    for (std::size_t t = 0; t < approximate.size(); ++t) selection.setApproximate(t, approximate[t]);
    Settled s{false, {}, {}};
    s.ok = selection.settle(
        observed,
        [&](const std::vector<std::uint64_t>& wanted, std::vector<double>& values) {
            EXPECT_TRUE(std::is_sorted(wanted.begin(), wanted.end()));
            values.clear();
            for (std::uint64_t t : wanted) {
                values.push_back(truth[t]);
                s.recomputed.push_back(t);
            }
        },
        s.outcome);
    return s;
}

void expectRecipeOutcome(const Settled& s, const std::vector<double>& truth, double observed, double alpha) {
    ASSERT_TRUE(s.ok);
    const literal::Outcome want = literal::rawOutcome(truth, observed, alpha);
    EXPECT_TRUE(sameBits(s.outcome.pValue, want.pValue)) << s.outcome.pValue << " " << want.pValue;
    EXPECT_TRUE(sameBits(s.outcome.lower, want.lower)) << s.outcome.lower << " " << want.lower;
    EXPECT_TRUE(sameBits(s.outcome.upper, want.upper)) << s.outcome.upper << " " << want.upper;
}

// Approximate values within the bound c0 + c1 v of the truth.
std::vector<double> perturb(const std::vector<double>& truth, double c0, double c1, std::mt19937& rng) {
    std::uniform_real_distribution<double> unit(-0.999, 0.999);
    std::vector<double> out(truth.size());
    for (std::size_t t = 0; t < truth.size(); ++t) {
        const double v = truth[t] + unit(rng) * c0;
        out[t] = std::max(0.0, std::min(1.0, v + unit(rng) * c1 * v * 0.5));
    }
    return out;
}

TEST(DistanceCorrPermutationSelection, SeparatedStatisticsRecomputeOnlyTheSelectedElements) {
    std::vector<double> truth(200);
    for (std::size_t t = 0; t < truth.size(); ++t) truth[t] = 0.001 * static_cast<double>(t) + 1e-5;
    std::shuffle(truth.begin(), truth.end(), std::mt19937(4));
    std::mt19937 rng(5);
    const std::vector<double> approximate = perturb(truth, 1e-12, 1e-12, rng);
    const Settled s = settle(approximate, truth, 0.0905, 0.05, 1e-12, 1e-12);
    expectRecipeOutcome(s, truth, 0.0905, 0.05);
    // Elements at k and k + 1 of both selections, nothing else.
    EXPECT_LE(s.recomputed.size(), 4u);
    EXPECT_GE(s.recomputed.size(), 2u);
}

TEST(DistanceCorrPermutationSelection, StatisticAtTheObservedValueIsRecomputed) {
    // Position 7 sits just above the observed value; its recipe value sits
    // just below, so it must not be counted.
    std::vector<double> truth(100);
    for (std::size_t t = 0; t < truth.size(); ++t) truth[t] = 0.01 * static_cast<double>(t) + 0.003;
    const double observed = 0.5;
    truth[7] = observed - 1e-13;
    std::vector<double> approximate = truth;
    approximate[7] = observed + 1e-13;
    const Settled s = settle(approximate, truth, observed, 0.05, 1e-12, 0.0);
    expectRecipeOutcome(s, truth, observed, 0.05);
    EXPECT_NE(std::find(s.recomputed.begin(), s.recomputed.end(), 7u), s.recomputed.end());
    // The uncorrected count would differ.
    EXPECT_NE(literal::rawOutcome(approximate, observed, 0.05).pValue, s.outcome.pValue);
}

TEST(DistanceCorrPermutationSelection, NearTiesDecideTheSelectionsAsTheRecipesValuesDo) {
    // Distinct values, and near-copies (differing by noise below the bound)
    // of the smallest and largest ones, where the selections fall: the noise
    // decides which element lands next to the selected one, and the bounds
    // interpolate towards it.
    std::mt19937 rng(8);
    std::uniform_real_distribution<double> noise(-1e-13, 1e-13);
    std::size_t recomputed = 0;
    for (int trial = 0; trial < 40; ++trial) {
        std::vector<double> truth;
        for (int t = 0; t < 150; ++t) truth.push_back(0.01 + 0.002 * t);
        for (int t = 0; t < 15; ++t) {
            truth.push_back(0.01 + 0.002 * t + noise(rng));
            truth.push_back(0.01 + 0.002 * (149 - t) + noise(rng));
        }
        std::shuffle(truth.begin(), truth.end(), rng);
        const std::vector<double> approximate = perturb(truth, 1e-12, 0.0, rng);
        for (double alpha : {0.05, 0.1, 0.2}) {
            const Settled s = settle(approximate, truth, 0.25, alpha, 1e-12, 0.0);
            expectRecipeOutcome(s, truth, 0.25, alpha);
            recomputed += s.recomputed.size();
        }
    }
    // Not vacuous: far more than the four selected elements were settled.
    EXPECT_GT(recomputed, 40u * 3u * 4u);
}

TEST(DistanceCorrPermutationSelection, RandomStatisticsWithinTheirBounds) {
    std::mt19937 rng(21);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    int settledCases = 0;
    for (int trial = 0; trial < 300; ++trial) {
        const std::size_t count = 1 + rng() % 120;
        // Few distinct levels, so that near-ties are common.
        const double levels = 1 + rng() % 12;
        std::vector<double> truth(count);
        for (double& v : truth) v = std::floor(unit(rng) * levels) / levels + 1e-14 * unit(rng);
        const double c0 = trial % 2 ? 1e-12 : 1e-15;
        const double c1 = trial % 3 ? 1e-12 : 0.0;
        const std::vector<double> approximate = perturb(truth, c0, c1, rng);
        const double observed = truth[rng() % count];
        const double alpha = 0.01 + 0.89 * unit(rng);
        const Settled s = settle(approximate, truth, observed, alpha, c0, c1);
        if (!s.ok) continue;  // too many in doubt: the caller takes the recipe
        expectRecipeOutcome(s, truth, observed, alpha);
        ++settledCases;
    }
    EXPECT_GT(settledCases, 100);
}

TEST(DistanceCorrPermutationSelection, OneStatistic) {
    const Settled s = settle({0.4}, {0.41}, 0.405, 0.05, 0.02, 0.0);
    expectRecipeOutcome(s, {0.41}, 0.405, 0.05);
}

TEST(DistanceCorrPermutationSelection, GivesUpWhenMostStatisticsAreInDoubt) {
    // All equal: every comparison is in doubt.
    const std::vector<double> same(100, 0.3);
    EXPECT_FALSE(settle(same, same, 0.9, 0.05, 1e-12, 0.0).ok);
}

}  // namespace
