// The O(n log n) distance sums of two single variables against the literal
// double loops over all case pairs, on data with ties, constants, far from
// zero, and n from 1 to 400.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "DistanceSums.h"
#include "PairDistanceSums.h"

namespace {

struct Literal {
    DistanceSums xy, xx, yy;
};

Literal literal(const std::vector<double>& x, const std::vector<double>& y) {
    const std::size_t n = x.size();
    std::vector<long double> a(n, 0), b(n, 0);
    Literal l;
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) {
            const long double dx = std::fabs(static_cast<long double>(x[i]) - x[j]);
            const long double dy = std::fabs(static_cast<long double>(y[i]) - y[j]);
            a[i] += dx;
            b[i] += dy;
            l.xy.s1 += dx * dy;
            l.xx.s1 += dx * dx;
            l.yy.s1 += dy * dy;
        }
    long double at = 0, bt = 0;
    for (std::size_t i = 0; i < n; ++i) {
        l.xy.s2 += a[i] * b[i];
        l.xx.s2 += a[i] * a[i];
        l.yy.s2 += b[i] * b[i];
        at += a[i];
        bt += b[i];
    }
    l.xy.s3 = at * bt;
    l.xx.s3 = at * at;
    l.yy.s3 = bt * bt;
    return l;
}

void expectClose(const DistanceSums& ours, const DistanceSums& literal, const char* what) {
    const long double scale = std::fabs(literal.s1) + std::fabs(literal.s2) + std::fabs(literal.s3) + 1e-300L;
    EXPECT_LE(std::fabs(ours.s1 - literal.s1) / scale, 1e-14L) << what << " s1";
    EXPECT_LE(std::fabs(ours.s2 - literal.s2) / scale, 1e-14L) << what << " s2";
    EXPECT_LE(std::fabs(ours.s3 - literal.s3) / scale, 1e-14L) << what << " s3";
}

std::vector<double> draw(std::mt19937_64& rng, std::size_t n, int kind) {
    std::normal_distribution<double> normal;
    std::uniform_int_distribution<int> level(0, 3);
    std::vector<double> v(n);
    for (auto& x : v) {
        switch (kind) {
            case 0:
                x = normal(rng);
                break;
            case 1:
                x = level(rng);
                break;  // ties
            case 2:
                x = 1e6 + normal(rng);
                break;  // far from zero
            case 3:
                x = 0.1;
                break;  // constant
            default:
                x = std::exp(3 * normal(rng));
                break;  // skewed
        }
    }
    return v;
}

TEST(PairDistanceSumsTest, AgreesWithTheLiteralSums) {
    std::mt19937_64 rng(11);
    for (std::size_t n : {1u, 2u, 3u, 4u, 7u, 16u, 17u, 100u, 401u}) {
        for (int kx = 0; kx < 5; ++kx) {
            for (int ky = 0; ky < 5; ++ky) {
                const std::vector<double> x = draw(rng, n, kx);
                const std::vector<double> y = draw(rng, n, ky);
                const PairDistanceSums ours(x, y);
                const Literal l = literal(x, y);
                SCOPED_TRACE(testing::Message() << "n " << n << " kinds " << kx << " " << ky);
                expectClose(ours.cross(), l.xy, "xy");
                expectClose(ours.xx(), l.xx, "xx");
                expectClose(ours.yy(), l.yy, "yy");
            }
        }
    }
}

TEST(PairDistanceSumsTest, ConstantColumnsHaveExactlyZeroSums) {
    const std::vector<double> x{0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1};
    const std::vector<double> y{1, 5, 2, 8, 3, 3, 9};
    const PairDistanceSums s(x, y);
    EXPECT_EQ(s.cross().s1, 0.0L);
    EXPECT_EQ(s.cross().s2, 0.0L);
    EXPECT_EQ(s.xx().s2, 0.0L);
    EXPECT_GT(s.yy().s1, 0.0L);
}

TEST(PairDistanceSumsTest, ThreeCasesByHand) {
    // x = 0, 1, 3 and y = 0, 2, 1: a = (0,1,3; 1,0,2; 3,2,0), b = (0,2,1; 2,0,1; 1,1,0).
    // S1 = 2 (1*2 + 3*1 + 2*1) = 14; rows a = 4, 3, 5 and b = 3, 3, 2: S2 = 12 + 9 + 10 = 31; S3 = 12 * 8 = 96.
    const PairDistanceSums s({0, 1, 3}, {0, 2, 1});
    // The values are centred on their means first, so the sums carry rounding.
    EXPECT_NEAR(static_cast<double>(s.cross().s1), 14.0, 1e-13);
    EXPECT_NEAR(static_cast<double>(s.cross().s2), 31.0, 1e-13);
    EXPECT_NEAR(static_cast<double>(s.cross().s3), 96.0, 1e-13);
    // V product (14 - 62/3 + 96/9) / 9 = 4 / 9.
    EXPECT_NEAR(static_cast<double>(s.cross().vProduct(3)), 4.0 / 9.0, 1e-15);
}

}  // namespace
