// The fused matrix recipe (no n x n buffers, four permutations per pass)
// against the engine's six-argument recipe and the independent transcription,
// bit for bit, on ordinary and on extreme data: NaN, infinities, values whose
// squares overflow or underflow, constant and tied columns.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "DistanceCorrPermutationLiteral.h"
#include "EngineTestSettings.h"
#include "LiteralPermutationRecipe.h"
#include "PermutationTestData.h"

namespace {

using Matrix = DistanceCorrAlgo::Matrix;

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Columns of every kind, and extremes the double recipe overflows or
// underflows on.
std::vector<double> extremeColumn(int kind, std::size_t n, std::mt19937_64& rng) {
    std::normal_distribution<double> normal(0.0, 1.0);
    std::vector<double> v(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double z = normal(rng);
        switch (kind) {
            case 0:
                v[i] = z * 1e80;
                break;  // squares of the sums overflow
            case 1:
                v[i] = z * 1e155;
                break;  // squares overflow
            case 2:
                v[i] = z * 1e-160;
                break;  // squares underflow
            case 3:
                v[i] = i == 1 ? std::numeric_limits<double>::quiet_NaN() : z;
                break;
            case 4:
                v[i] = i == 0 ? -std::numeric_limits<double>::infinity() : z;
                break;
            case 5:
                v[i] = z * 1e307;
                break;  // distances overflow
            default:
                v[i] = std::round(z);
                break;
        }
    }
    return v;
}

// Every permutation of the batch through the fused recipe, against both
// references; returns the number of statistics compared.
std::size_t compare(const std::vector<double>& x, const std::vector<double>& y, std::mt19937& engine,
                    std::size_t batches) {
    EngineRun run;
    const std::size_t n = x.size();
    const Matrix a = literal::centred(x);
    DistanceCorrPermutationLiteral fused(a, y);
    Matrix distance;
    Matrix centredY;
    std::vector<double> rowMeans;
    std::vector<double> colMeans;
    std::size_t compared = 0;
    for (std::size_t batch = 0; batch < batches; ++batch) {
        const std::size_t count = 1 + batch % DistanceCorrPermutationLiteral::kLanes;
        std::vector<std::vector<std::size_t>> indices(count, std::vector<std::size_t>(n));
        std::vector<const std::vector<std::size_t>*> pointers;
        for (auto& index : indices) {
            literal::shuffle(index, engine);
            pointers.push_back(&index);
        }
        double out[DistanceCorrPermutationLiteral::kLanes];
        fused.evaluate(pointers.data(), count, out);
        for (std::size_t l = 0; l < count; ++l) {
            const std::vector<double> permuted = literal::permuted(y, indices[l]);
            const double engineRecipe =
                run.algo.computeDistanceCorrelation(a, permuted, distance, rowMeans, colMeans, centredY);
            const double transcription = literal::statistic(a, permuted);
            EXPECT_TRUE(sameBits(out[l], engineRecipe)) << out[l] << " " << engineRecipe << " n=" << n;
            EXPECT_TRUE(sameBits(out[l], transcription)) << out[l] << " " << transcription << " n=" << n;
            ++compared;
        }
    }
    return compared;
}

TEST(DistanceCorrPermutationLiteral, BitForBitOnEveryKindOfData) {
    std::mt19937_64 rng(515);
    std::mt19937 engine(9);
    std::size_t compared = 0;
    for (std::size_t n : {1, 2, 3, 4, 5, 6, 7, 9, 12, 16, 31, 64, 101}) {
        for (permdata::Kind kx : permdata::allKinds()) {
            for (permdata::Kind ky : permdata::allKinds()) {
                const std::vector<double> x = permdata::column(kx, n, rng);
                const std::vector<double> y = permdata::related(x, ky, rng);
                compared += compare(x, y, engine, n > 60 ? 2 : 5);
            }
        }
    }
    EXPECT_GT(compared, 10000u);
}

TEST(DistanceCorrPermutationLiteral, BitForBitOnExtremeData) {
    std::mt19937_64 rng(77);
    std::mt19937 engine(78);
    std::size_t nonTrivial = 0;  // statistics strictly between 0 and 1
    for (std::size_t n : {2, 3, 5, 8, 13, 40}) {
        for (int kx = 0; kx < 7; ++kx) {
            for (int ky = 0; ky < 7; ++ky) {
                const std::vector<double> x = extremeColumn(kx, n, rng);
                const std::vector<double> y = extremeColumn(ky, n, rng);
                compare(x, y, engine, 6);
                const double s = literal::statistic(literal::centred(x), y);
                if (s > 0.0 && s < 1.0) ++nonTrivial;
            }
        }
    }
    EXPECT_GT(nonTrivial, 10u);
}

TEST(DistanceCorrPermutationLiteral, NaNRatioGivesOne) {
    // A NaN in the fixed column makes its centred matrix NaN: the ratio is
    // NaN, which the clamp "smaller of 1 and r, then larger of 0" turns into 1.
    const std::vector<double> x{0.0, std::numeric_limits<double>::quiet_NaN(), 2.0, 5.0};
    const std::vector<double> y{1.0, 2.0, 3.0, 4.0};
    const Matrix a = literal::centred(x);
    DistanceCorrPermutationLiteral fused(a, y);
    EXPECT_EQ(fused.evaluate({0, 1, 2, 3}), 1.0);
    EXPECT_EQ(fused.evaluate({3, 1, 0, 2}), 1.0);
}

TEST(DistanceCorrPermutationLiteral, BadArgumentsAreRejected) {
    const Matrix a = literal::centred({1, 2, 3});
    const std::vector<double> two{1, 2};
    EXPECT_THROW(DistanceCorrPermutationLiteral(a, two), std::runtime_error);
    const std::vector<double> three{3, 1, 2};
    DistanceCorrPermutationLiteral fused(a, three);
    EXPECT_THROW(fused.evaluate({0, 1}), std::invalid_argument);
    EXPECT_THROW(fused.evaluate({0, 1, 7}), std::out_of_range);
    const Matrix none;
    const std::vector<double> empty;
    DistanceCorrPermutationLiteral nothing(none, empty);
    EXPECT_THROW(nothing.evaluate(std::vector<std::size_t>{}), std::runtime_error);
}

}  // namespace
