// The shared permuted sums give DISTANCE CORRELATION's permuted statistic bit
// for bit when its kernel's rules are applied on top of them (usable data,
// the 1e-8 zero threshold with its band, the conditioning limit, the clamp),
// and S1, S2 agree with the literal sums for any permutation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "DistanceCorrPermutationKernel.h"
#include "PermutationStream.h"
#include "PermutedCrossSums.h"

namespace {

// DISTANCE CORRELATION's permuted statistic rebuilt from the shared sums.
struct SharedKernel {
    PermutedCrossSums sums;
    bool zero = false;
    bool usable = true;
    long double normaliser = 0;

    SharedKernel(const std::vector<double>& x, const std::vector<double>& y) : sums(x, y) {
        const long double cells = static_cast<long double>(x.size()) * x.size();
        const auto classify = [](long double v) {
            const long double limit = DistanceCorrPermutationKernel::kZeroVariance;
            return v > limit * (1 + 1e-6L) ? 1 : v < limit * (1 - 1e-6L) ? 0 : -1;
        };
        const int cx = classify(sums.fixedSquares() / cells);
        const int cy = classify(sums.shuffledSquares() / cells);
        if (cx < 0 || cy < 0) {
            usable = false;
            return;
        }
        zero = cx == 0 || cy == 0;
        if (zero) return;
        normaliser = std::sqrt(sums.fixedSquares() * sums.shuffledSquares());
        const bool precise = sums.fixedExtreme() * sums.shuffledExtreme() * cells >
                             DistanceCorrPermutationKernel::kDoubleConditionLimit * normaliser;
        if (!precise) sums.useDoubleSweep();
    }

    double evaluate(const std::vector<std::size_t>& index) {
        if (zero) return 0.0;
        const long double s2 = sums.s2(index);
        const long double halfS1 = sums.halfS1(index);
        const long double n = static_cast<long double>(sums.size());
        const long double crossSum = 2 * halfS1 - 2 * s2 / n + sums.s3() / (n * n);
        const double r = static_cast<double>(crossSum / normaliser);
        return std::max(0.0, std::min(1.0, r));
    }
};

std::vector<double> draw(std::mt19937_64& rng, std::size_t n, int kind) {
    std::normal_distribution<double> normal;
    std::vector<double> v(n);
    for (auto& x : v) {
        const double z = normal(rng);
        x = kind == 0 ? z : kind == 1 ? std::round(2 * z) : kind == 2 ? 1e5 + z : kind == 3 ? z * z * z * 1e3 : 4.0;
    }
    return v;
}

TEST(PermutedCrossSumsTest, GivesDistanceCorrelationsPermutedStatisticBitForBit) {
    std::mt19937_64 rng(5);
    std::size_t compared = 0;
    for (std::size_t n : {2u, 3u, 5u, 31u, 200u}) {
        for (int kx = 0; kx < 5; ++kx) {
            for (int ky = 0; ky < 5; ++ky) {
                const std::vector<double> x = draw(rng, n, kx);
                std::vector<double> y = draw(rng, n, ky);
                for (std::size_t i = 0; i < n; ++i) y[i] += (kx == ky ? 0.3 * x[i] : 0.0);
                DistanceCorrPermutationKernel theirs(x, y);
                SharedKernel ours(x, y);
                ASSERT_EQ(theirs.usable(), ours.usable);
                if (!ours.usable) continue;
                PermutationStream stream(n * 31 + kx * 5 + ky);
                std::vector<std::size_t> index(n);
                for (int t = 0; t < 25; ++t) {
                    stream.shuffle(index);
                    const double a = theirs.evaluate(index).value;
                    const double b = ours.evaluate(index);
                    ASSERT_EQ(std::memcmp(&a, &b, sizeof a), 0)
                        << "n " << n << " kinds " << kx << ky << ": " << a << " vs " << b;
                    ++compared;
                }
            }
        }
    }
    EXPECT_GT(compared, 2000u);
}

TEST(PermutedCrossSumsTest, SumsOfAPermutationAgreeWithTheLiteralSums) {
    std::mt19937_64 rng(8);
    for (bool doubles : {false, true}) {
        const std::size_t n = 60;
        const std::vector<double> x = draw(rng, n, 0);
        const std::vector<double> y = draw(rng, n, 1);
        PermutedCrossSums sums(x, y);
        if (doubles) sums.useDoubleSweep();
        PermutationStream stream(3);
        std::vector<std::size_t> index(n);
        for (int t = 0; t < 10; ++t) {
            stream.shuffle(index);
            long double s1 = 0, s2 = 0;
            std::vector<long double> a(n, 0), b(n, 0);
            for (std::size_t i = 0; i < n; ++i)
                for (std::size_t j = 0; j < n; ++j) {
                    const long double dx = std::fabs(static_cast<long double>(x[i]) - x[j]);
                    const long double dy = std::fabs(static_cast<long double>(y[index[i]]) - y[index[j]]);
                    s1 += dx * dy;
                    a[i] += dx;
                    b[i] += dy;
                }
            for (std::size_t i = 0; i < n; ++i) s2 += a[i] * b[i];
            EXPECT_NEAR(static_cast<double>(2 * sums.halfS1(index)), static_cast<double>(s1), 1e-10 * s1);
            EXPECT_NEAR(static_cast<double>(sums.s2(index)), static_cast<double>(s2), 1e-12 * s2);
        }
    }
}

}  // namespace
