#include "PermutationStream.h"

#include <limits>
#include <numeric>
#include <utility>

PermutationStream::PermutationStream(std::uint64_t seed) : engine_(static_cast<std::uint32_t>(seed & 0xFFFFFFFFULL)) {}

void PermutationStream::shuffle(std::vector<std::size_t>& index) {
    std::iota(index.begin(), index.end(), std::size_t{0});
    const std::size_t n = index.size();
    for (std::size_t s = 0; s + 1 < n; ++s) {
        const std::size_t m = n - 1 - s;
        const auto r = static_cast<std::uint32_t>(engine_());
        const std::size_t q = r % (m + 1);
        std::swap(index[m], index[q]);
    }
}

void PermutationStream::skip(std::uint64_t permutations, std::size_t n) {
    if (n < 2) return;
    const unsigned long long perPermutation = n - 1;
    for (std::uint64_t t = 0; t < permutations; ++t) engine_.discard(perPermutation);
}

std::uint64_t PermutationStream::wholeNumber(double value) {
    if (!(value > 0.0)) return 0;
    if (value >= 18446744073709551616.0) return std::numeric_limits<std::uint64_t>::max();
    return static_cast<std::uint64_t>(value);
}
