// The fast permuted statistic against an independent transcription of the
// matrix recipe: random, heavy-tailed, tied, discrete and constant data.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "DistanceCorrPermutationKernel.h"
#include "LiteralPermutationRecipe.h"
#include "PermutationTestData.h"

namespace {

using permdata::Kind;

std::vector<std::size_t> identity(std::size_t n) {
    std::vector<std::size_t> index(n);
    std::iota(index.begin(), index.end(), std::size_t{0});
    return index;
}

// Largest share of its error bound that a statistic's difference from the
// recipe used, over every call of largestDifference.
double worstShareOfBound = 0.0;

// Largest difference between kernel and matrix recipe over `permutations`
// shuffles (the first one is the identity). Every difference must lie within
// the kernel's error bound.
double largestDifference(const std::vector<double>& x, const std::vector<double>& y, int permutations,
                         std::uint32_t seed) {
    DistanceCorrPermutationKernel kernel(x, y);
    EXPECT_TRUE(kernel.usable());
    const literal::Matrix a = literal::centred(x);
    std::mt19937 engine(seed);
    std::vector<std::size_t> index = identity(x.size());
    double worst = 0.0;
    for (int t = 0; t < permutations; ++t) {
        if (t > 0) literal::shuffle(index, engine);
        const double expected = literal::statistic(a, literal::permuted(y, index));
        const DistanceCorrPermutationKernel::Statistic fast = kernel.evaluate(index);
        EXPECT_GE(fast.value, 0.0);
        EXPECT_LE(fast.value, 1.0);
        if (fast.exact) {
            EXPECT_EQ(fast.value, expected);
        } else {
            const double bound = kernel.c0() + kernel.c1() * fast.value;
            EXPECT_LE(std::fabs(fast.value - expected), bound) << "n=" << x.size();
            worstShareOfBound = std::max(worstShareOfBound, std::fabs(fast.value - expected) / bound);
        }
        worst = std::max(worst, std::fabs(fast.value - expected));
    }
    return worst;
}

TEST(DistanceCorrPermutationKernel, MatchesMatrixRecipeOnEveryKindOfData) {
    const std::vector<std::size_t> sizes{1, 2, 3, 4, 5, 7, 10, 17, 33, 64, 100, 157, 300};
    std::mt19937_64 rng(20240611);
    double worst = 0.0;
    for (std::size_t n : sizes) {
        for (Kind kx : permdata::allKinds()) {
            for (Kind ky : permdata::allKinds()) {
                const std::vector<double> x = permdata::column(kx, n, rng);
                const std::vector<double> y = permdata::related(x, ky, rng);
                const double d = largestDifference(x, y, n > 100 ? 4 : 12, static_cast<std::uint32_t>(rng()));
                EXPECT_LE(d, 1e-12) << "n=" << n << " x " << permdata::name(kx) << " y " << permdata::name(ky);
                worst = std::max(worst, d);
            }
        }
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.3e", worst);
    RecordProperty("largest_difference", text);
}

TEST(DistanceCorrPermutationKernel, MatchesMatrixRecipeOnStronglyDependentData) {
    // Statistics near 1, where the clamp matters.
    std::mt19937_64 rng(7);
    for (std::size_t n : {2, 3, 8, 50, 250}) {
        std::vector<double> x = permdata::column(Kind::Normal, n, rng);
        EXPECT_LE(largestDifference(x, x, 6, 11), 1e-12);
        std::vector<double> y(n);
        for (std::size_t i = 0; i < n; ++i) y[i] = 3.0 * x[i] - 2.0;
        EXPECT_LE(largestDifference(x, y, 6, 12), 1e-12);
    }
}

TEST(DistanceCorrPermutationKernel, BothPrecisionsMatchMatrixRecipe) {
    // Smooth data take the double sums. One value a million times the spread
    // of the rest in each column makes the extreme products dwarf the centred
    // sums (by about n^2/4), and from a few hundred cases the sums are kept in
    // long double.
    std::mt19937_64 rng(17);
    for (std::size_t n : {5, 60, 280}) {
        const std::vector<double> x = permdata::column(Kind::Normal, n, rng);
        const std::vector<double> y = permdata::related(x, Kind::Normal, rng);
        EXPECT_FALSE(DistanceCorrPermutationKernel(x, y).precise());
        EXPECT_LE(largestDifference(x, y, 8, 21), 1e-12);
    }
    for (std::size_t n : {250, 300}) {
        std::vector<double> x = permdata::column(Kind::Normal, n, rng);
        std::vector<double> y = permdata::related(x, Kind::Normal, rng);
        x[3] = 1e6;
        y[n / 2] = -1e6;
        EXPECT_TRUE(DistanceCorrPermutationKernel(x, y).precise());
        EXPECT_LE(largestDifference(x, y, 8, 22), 1e-12);
    }
}

TEST(DistanceCorrPermutationKernel, ErrorBoundHoldsOnIllConditionedData) {
    // Far from zero, one huge outlier, clustered values with a lone
    // straggler, very different scales in the two columns, a variance just
    // above the zero threshold: the kernel either declines or stays within
    // its bound of the recipe.
    std::mt19937_64 rng(404);
    std::normal_distribution<double> normal(0.0, 1.0);
    std::size_t checked = 0;
    for (std::size_t n : {3, 8, 30, 90, 200}) {
        for (int shape = 0; shape < 7; ++shape) {
            std::vector<double> x(n);
            std::vector<double> y(n);
            for (std::size_t i = 0; i < n; ++i) {
                const double z = normal(rng);
                const double w = normal(rng);
                switch (shape) {
                    case 0:
                        x[i] = 1e9 + z;
                        y[i] = -3e12 + 1e3 * w;
                        break;
                    case 1:
                        x[i] = i == 0 ? 1e8 : z;
                        y[i] = i == n - 1 ? -1e8 : w + z;
                        break;
                    case 2:
                        x[i] = i == 1 ? 1.0 : 1e-9 * z;
                        y[i] = z * z + w;
                        break;
                    case 3:
                        x[i] = 1e-3 * z;
                        y[i] = 1e40 * (z + w);
                        break;
                    case 4:
                        x[i] = 2.1e-4 * (i % 2);
                        y[i] = w;
                        break;  // dVar just above 1e-8
                    case 5:
                        x[i] = 1e60 * z;
                        y[i] = 1e60 * std::fabs(z + 0.1 * w);
                        break;
                    default:
                        x[i] = std::round(4 * z) * 1e-2;
                        y[i] = std::round(z + w);
                        break;
                }
            }
            DistanceCorrPermutationKernel kernel(x, y);
            if (!kernel.usable() || kernel.alwaysZero()) continue;
            largestDifference(x, y, 10, static_cast<std::uint32_t>(rng()));
            ++checked;
        }
    }
    EXPECT_GE(checked, 25u);
    char text[32];
    std::snprintf(text, sizeof text, "%.3e", worstShareOfBound);
    RecordProperty("worst_share_of_bound", text);
}

TEST(DistanceCorrPermutationKernel, ThreeCasesByHand) {
    // x = (1,2,3) against y = (1,3,2): sum A.B = 252/81, sum A^2 = sum B^2 = 360/81,
    // so the statistic is 252/360 = 0.7. Unpermuted y = x gives 1.
    DistanceCorrPermutationKernel kernel({1, 2, 3}, {1, 2, 3});
    ASSERT_TRUE(kernel.usable());
    EXPECT_NEAR(kernel.evaluate({0, 2, 1}).value, 0.7, 1e-15);
    EXPECT_NEAR(kernel.evaluate({0, 1, 2}).value, 1.0, 1e-15);
}

TEST(DistanceCorrPermutationKernel, TwoDistinctCasesAlwaysGiveOne) {
    // n = 2: both centred matrices are +-d/2, so the statistic is 1 either way round.
    DistanceCorrPermutationKernel kernel({0.0, 5.0}, {2.0, -1.0});
    EXPECT_NEAR(kernel.evaluate({0, 1}).value, 1.0, 1e-15);
    EXPECT_NEAR(kernel.evaluate({1, 0}).value, 1.0, 1e-15);
}

TEST(DistanceCorrPermutationKernel, OneCaseGivesExactZero) {
    DistanceCorrPermutationKernel kernel({4.0}, {9.0});
    ASSERT_TRUE(kernel.usable());
    const DistanceCorrPermutationKernel::Statistic s = kernel.evaluate({0});
    EXPECT_EQ(s.value, 0.0);
    EXPECT_TRUE(s.exact);
}

TEST(DistanceCorrPermutationKernel, NoCasesIsInsufficientData) {
    DistanceCorrPermutationKernel kernel({}, {});
    EXPECT_THROW(kernel.evaluate({}), std::runtime_error);
}

TEST(DistanceCorrPermutationKernel, ConstantColumnsGiveExactZero) {
    std::mt19937_64 rng(3);
    const std::vector<double> varying = permdata::column(Kind::Normal, 40, rng);
    const std::vector<double> constant(40, -2.5);
    std::mt19937 engine(5);
    std::vector<std::size_t> index = identity(40);
    for (const auto& columns :
         {std::make_pair(varying, constant), std::make_pair(constant, varying), std::make_pair(constant, constant)}) {
        DistanceCorrPermutationKernel kernel(columns.first, columns.second);
        ASSERT_TRUE(kernel.usable());
        for (int t = 0; t < 5; ++t) {
            literal::shuffle(index, engine);
            const DistanceCorrPermutationKernel::Statistic s = kernel.evaluate(index);
            EXPECT_EQ(s.value, 0.0);
            EXPECT_TRUE(s.exact);
            EXPECT_EQ(literal::statistic(literal::centred(columns.first), literal::permuted(columns.second, index)),
                      0.0);
        }
    }
}

TEST(DistanceCorrPermutationKernel, NonFiniteOrHugeValuesAreLeftToTheMatrixRecipe) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const std::vector<double> fine{1, 2, 3, 5};
    for (double bad : {nan, inf, -inf, 1e200}) {
        const std::vector<double> broken{1, bad, 3, 4};
        EXPECT_FALSE(DistanceCorrPermutationKernel(broken, fine).usable()) << bad;
        EXPECT_FALSE(DistanceCorrPermutationKernel(fine, broken).usable()) << bad;
    }
    DistanceCorrPermutationKernel declined({1, nan}, {1, 2});
    EXPECT_THROW(declined.evaluate({0, 1}), std::logic_error);
}

TEST(DistanceCorrPermutationKernel, VarianceAtTheZeroThresholdIsLeftToTheMatrixRecipe) {
    // Two cases at distance d: the centred matrix is +-d/2, so dVar = d^2/4.
    // d = 2e-4 puts dVar on the 1e-8 threshold itself.
    EXPECT_FALSE(DistanceCorrPermutationKernel({0.0, 2e-4}, {0.0, 1.0}).usable());
    EXPECT_FALSE(DistanceCorrPermutationKernel({0.0, 1.0}, {0.0, 2e-4}).usable());
    // d = 1e-4: dVar = 2.5e-9, clearly below: exact zero.
    DistanceCorrPermutationKernel below({0.0, 1e-4}, {0.0, 1.0});
    ASSERT_TRUE(below.usable());
    EXPECT_EQ(below.evaluate({1, 0}).value, 0.0);
    EXPECT_TRUE(below.evaluate({1, 0}).exact);
    // d = 3e-4: dVar = 2.25e-8, clearly above: the statistic is 1.
    DistanceCorrPermutationKernel above({0.0, 3e-4}, {0.0, 1.0});
    ASSERT_TRUE(above.usable());
    EXPECT_NEAR(above.evaluate({1, 0}).value, 1.0, 1e-15);
}

TEST(DistanceCorrPermutationKernel, BadArgumentsAreRejected) {
    EXPECT_THROW(DistanceCorrPermutationKernel({1, 2, 3}, {1, 2}), std::invalid_argument);
    DistanceCorrPermutationKernel kernel({1, 2, 3}, {3, 1, 2});
    EXPECT_THROW(kernel.evaluate({0, 1}), std::invalid_argument);
    EXPECT_THROW(kernel.evaluate({0, 1, 7}), std::out_of_range);
}

}  // namespace
