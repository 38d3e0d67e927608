// The stream's own Mersenne Twister gives the outputs of std::mt19937 (the
// published MT19937) for any seed, across many renewals of its state, and
// skipping passes over exactly the outputs that drawing would use.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "PermutationStream.h"

namespace {

TEST(PermutationStreamGenerator, DrawsTheOutputsOfStdMt19937) {
    for (std::uint64_t seed : {0ull, 1ull, 5489ull, 2000000ull, 4294967295ull, 123456789012ull}) {
        std::mt19937 reference(static_cast<std::uint32_t>(seed & 0xFFFFFFFFULL));
        PermutationStream stream(seed);
        // 10,000 outputs: sixteen renewals of the 624-word state.
        for (int k = 0; k < 10000; ++k) ASSERT_EQ(stream.draw(), reference()) << "seed " << seed << " output " << k;
    }
}

TEST(PermutationStreamGenerator, TenThousandthOutputOfTheDefaultSeed) {
    // The published check value of MT19937: the 10,000th output from seed 5489.
    PermutationStream stream(5489);
    std::uint32_t last = 0;
    for (int k = 0; k < 10000; ++k) last = stream.draw();
    EXPECT_EQ(last, 4123659995u);
}

TEST(PermutationStreamGenerator, SkippingPassesOverTheOutputsOfThosePermutations) {
    std::mt19937 rng(3);
    for (int trial = 0; trial < 200; ++trial) {
        const std::size_t n = 2 + rng() % 1000;
        const std::uint64_t permutations = rng() % 500;
        const std::uint64_t seed = rng();
        PermutationStream skipped(seed);
        std::mt19937 reference(static_cast<std::uint32_t>(seed));
        // Start anywhere within the state, then skip.
        const unsigned before = rng() % 700;
        for (unsigned k = 0; k < before; ++k) ASSERT_EQ(skipped.draw(), reference());
        skipped.skip(permutations, n);
        reference.discard(permutations * (n - 1));
        for (int k = 0; k < 5; ++k) ASSERT_EQ(skipped.draw(), reference()) << "trial " << trial;
    }
    // One case or none draws nothing.
    PermutationStream a(8), b(8);
    a.skip(1000, 1);
    a.skip(1000, 0);
    EXPECT_EQ(a.draw(), b.draw());
}

}  // namespace
