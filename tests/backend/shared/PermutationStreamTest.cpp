// The shared permutation stream draws exactly the shuffles of a literal
// MT19937 backward Fisher-Yates with r mod (m + 1), from the low 32 bits of
// the seed.
#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "PermutationStream.h"

namespace {

std::vector<std::size_t> literalShuffle(std::mt19937& engine, std::size_t n) {
    std::vector<std::size_t> index(n);
    std::iota(index.begin(), index.end(), std::size_t{0});
    for (std::size_t m = n - 1; n > 1 && m >= 1; --m) {
        const std::uint32_t r = engine();
        std::swap(index[m], index[r % (m + 1)]);
    }
    return index;
}

TEST(PermutationStreamTest, ShufflesAsTheLiteralRecipe) {
    for (std::uint64_t seed : {0ull, 1ull, 2000000ull, 4294967295ull}) {
        for (std::size_t n : {1u, 2u, 3u, 10u, 257u}) {
            std::mt19937 engine(static_cast<std::uint32_t>(seed));
            PermutationStream stream(seed);
            std::vector<std::size_t> index(n);
            for (int t = 0; t < 20; ++t) {
                stream.shuffle(index);
                EXPECT_EQ(index, literalShuffle(engine, n)) << "seed " << seed << " n " << n << " t " << t;
            }
        }
    }
}

TEST(PermutationStreamTest, ThreeCasesByHand) {
    // MT19937 seeded with 5489 starts 3499211612, 581869302: m = 2 takes
    // 3499211612 mod 3 = 2 (no swap), m = 1 takes 581869302 mod 2 = 0.
    PermutationStream stream(5489);
    std::vector<std::size_t> index(3);
    stream.shuffle(index);
    EXPECT_EQ(index, (std::vector<std::size_t>{1, 0, 2}));
}

TEST(PermutationStreamTest, OnlyTheLowThirtyTwoBitsOfTheSeedCount) {
    PermutationStream a(7), b(7 + (1ull << 32));
    std::vector<std::size_t> ia(50), ib(50);
    a.shuffle(ia);
    b.shuffle(ib);
    EXPECT_EQ(ia, ib);
}

TEST(PermutationStreamTest, SkipLeavesTheStreamWhereDrawingWould) {
    PermutationStream drawn(99), skipped(99);
    std::vector<std::size_t> index(40), other(40);
    for (int t = 0; t < 7; ++t) drawn.shuffle(index);
    skipped.skip(7, 40);
    drawn.shuffle(index);
    skipped.shuffle(other);
    EXPECT_EQ(index, other);
}

TEST(PermutationStreamTest, WholeNumbersTruncateAndSaturate) {
    EXPECT_EQ(PermutationStream::wholeNumber(12.9), 12u);
    EXPECT_EQ(PermutationStream::wholeNumber(-3.0), 0u);
    EXPECT_EQ(PermutationStream::wholeNumber(std::nan("")), 0u);
    EXPECT_EQ(PermutationStream::wholeNumber(1e30), UINT64_MAX);
}

}  // namespace
