#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

// The random permutations of a permutation test: a 32-bit Mersenne Twister
// (MT19937, the same outputs as std::mt19937) seeded with the low 32 bits of
// the seed, each permutation drawn by a backward Fisher-Yates shuffle with a
// plain remainder (no rejection of biased draws), so that a seed always gives
// the same shuffles. Permutation t of n cases uses the (n - 1) raw outputs
// after the first t * (n - 1). Copying the stream saves its state.
//
// The generator's state is renewed 624 words at a time, four words side by
// side, so that drawing, and skipping to another permutation's start for
// another thread, cost little.
class PermutationStream {
public:
    explicit PermutationStream(std::uint64_t seed);

    // Fills index with 0 .. n - 1 (n = index.size()) and shuffles it:
    // for m = n - 1 down to 1, q = next output mod (m + 1), swap m and q.
    void shuffle(std::vector<std::size_t>& index);
    // Skips the draws of this many permutations of n cases.
    void skip(std::uint64_t permutations, std::size_t n);
    // The next raw 32-bit output.
    std::uint32_t draw() {
        if (position_ == kWords) renew();
        return temper(state_[position_++]);
    }

    // A non-negative count or seed given as a number: truncated, saturating
    // above the unsigned 64-bit range; NaN and negatives count as 0.
    static std::uint64_t wholeNumber(double value);

private:
    static constexpr std::size_t kWords = 624;

    static std::uint32_t temper(std::uint32_t y) {
        y ^= y >> 11;
        y ^= (y << 7) & 0x9d2c5680u;
        y ^= (y << 15) & 0xefc60000u;
        return y ^ (y >> 18);
    }
    // The next 624 words of state (the twist); position_ back to 0.
    void renew();
    // Passes over count raw outputs.
    void discard(std::uint64_t count);

    std::uint32_t state_[kWords];
    std::size_t position_;  // next word to temper; kWords: renew first
};
