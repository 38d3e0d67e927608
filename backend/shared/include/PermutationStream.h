#pragma once
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

// The random permutations of a permutation test: a 32-bit Mersenne Twister
// seeded with the low 32 bits of the seed, each permutation drawn by a
// backward Fisher-Yates shuffle with a plain remainder (no rejection of
// biased draws), so that a seed always gives the same shuffles. Permutation t
// of n cases uses the (n - 1) raw outputs after the first t * (n - 1).
// Copying the stream saves its state.
class PermutationStream {
public:
    explicit PermutationStream(std::uint64_t seed);

    // Fills index with 0 .. n - 1 (n = index.size()) and shuffles it:
    // for m = n - 1 down to 1, q = next output mod (m + 1), swap m and q.
    void shuffle(std::vector<std::size_t>& index);
    // Skips the draws of this many permutations of n cases.
    void skip(std::uint64_t permutations, std::size_t n);

    // A non-negative count or seed given as a number: truncated, saturating
    // above the unsigned 64-bit range; NaN and negatives count as 0.
    static std::uint64_t wholeNumber(double value);

private:
    std::mt19937 engine_;
};
