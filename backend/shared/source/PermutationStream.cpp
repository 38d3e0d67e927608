#include "PermutationStream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t kShift = 397;  // the twist's middle distance
constexpr std::uint32_t kUpper = 0x80000000u;
constexpr std::uint32_t kLower = 0x7fffffffu;
constexpr std::uint32_t kMatrix = 0x9908b0dfu;

// Four words side by side: every step of the twist is the same for each.
typedef std::uint32_t Words __attribute__((vector_size(4 * sizeof(std::uint32_t))));

// New word from the word, its successor and the word kShift further on.
template <typename T>
[[gnu::always_inline]] inline T twist(T word, T successor, T far) {
    const T y = (word & kUpper) | (successor & kLower);
    return far ^ (y >> 1) ^ (-(y & 1u) & kMatrix);
}

[[gnu::always_inline]] inline void twistFour(std::uint32_t* s, std::size_t i, std::size_t far) {
    Words word;
    Words successor;
    Words distant;
    std::memcpy(&word, s + i, sizeof word);
    std::memcpy(&successor, s + i + 1, sizeof successor);
    std::memcpy(&distant, s + far, sizeof distant);
    const Words result = twist(word, successor, distant);
    std::memcpy(s + i, &result, sizeof result);
}

}  // namespace

PermutationStream::PermutationStream(std::uint64_t seed) : position_(kWords) {
    // The published single-integer seeding.
    state_[0] = static_cast<std::uint32_t>(seed & 0xFFFFFFFFULL);
    for (std::size_t i = 1; i < kWords; ++i) {
        state_[i] = 1812433253u * (state_[i - 1] ^ (state_[i - 1] >> 30)) + static_cast<std::uint32_t>(i);
    }
}

void PermutationStream::renew() {
    std::uint32_t* s = state_;
    constexpr std::size_t kFirst = kWords - kShift;  // 227: words whose partner is not yet renewed
    std::size_t i = 0;
    // Words 0 .. 226 take the old word 397 further on; four at a time reads
    // old words only.
    for (; i + 4 <= kFirst; i += 4) twistFour(s, i, i + kShift);
    for (; i < kFirst; ++i) s[i] = twist(s[i], s[i + 1], s[i + kShift]);
    // Words 227 .. 622 (396, a multiple of four) take the word renewed 227
    // places before; a block of four reads only words renewed in earlier
    // blocks and old successors.
    static_assert((kWords - 1 - kFirst) % 4 == 0, "whole blocks of four");
    for (; i < kWords - 1; i += 4) twistFour(s, i, i - kFirst);
    s[kWords - 1] = twist(s[kWords - 1], s[0], s[kShift - 1]);
    position_ = 0;
}

void PermutationStream::discard(std::uint64_t count) {
    while (count > kWords - position_) {
        count -= kWords - position_;
        renew();
    }
    position_ += static_cast<std::size_t>(count);
}

void PermutationStream::shuffle(std::vector<std::size_t>& index) {
    std::iota(index.begin(), index.end(), std::size_t{0});
    const std::size_t n = index.size();
    for (std::size_t s = 0; s + 1 < n; ++s) {
        const std::size_t m = n - 1 - s;
        const std::uint32_t r = draw();
        // The remainder in 32 bits where m + 1 fits them: the same value, a
        // cheaper division.
        const std::size_t q =
            m < std::numeric_limits<std::uint32_t>::max() ? r % static_cast<std::uint32_t>(m + 1) : r % (m + 1);
        std::swap(index[m], index[q]);
    }
}

void PermutationStream::skip(std::uint64_t permutations, std::size_t n) {
    if (n < 2) return;
    const std::uint64_t perPermutation = n - 1;
    // As few calls as the count allows without overflowing the draw count.
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() / perPermutation;
    while (permutations > 0) {
        const std::uint64_t now = std::min(permutations, most);
        discard(now * perPermutation);
        permutations -= now;
    }
}

std::uint64_t PermutationStream::wholeNumber(double value) {
    if (!(value > 0.0)) return 0;
    if (value >= 18446744073709551616.0) return std::numeric_limits<std::uint64_t>::max();
    return static_cast<std::uint64_t>(value);
}
