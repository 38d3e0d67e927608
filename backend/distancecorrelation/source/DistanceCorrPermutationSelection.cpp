#include "DistanceCorrPermutationSelection.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "DistanceCorrAlgo.h"

namespace {

unsigned bitWidth(std::uint64_t value) {
    unsigned bits = 0;
    while (value != 0) {
        ++bits;
        value >>= 1;
    }
    return bits;
}

void sortUnique(std::vector<std::uint64_t>& values) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

// Replays rarely need more than a few rounds; beyond this many the caller's
// recipe for every statistic is the cheaper way.
constexpr int kMaxRounds = 64;

}  // namespace

DistanceCorrPermutationSelection::DistanceCorrPermutationSelection(std::uint64_t count, double alpha, double c0,
                                                                   double c1)
    : count_(count), alpha_(alpha), c0_(c0), c1_(c1) {
    if (count == 0) throw std::invalid_argument("No statistics to select from");
    numberBits_ = std::max(1u, bitWidth(count - 1));
    if (numberBits_ > 62) throw std::length_error("Too many permutations");
    // Codes below bit 63: the value's grid position (up to 2^K, K + 1 bits)
    // above the permutation number.
    const int gridBits = 62 - static_cast<int>(numberBits_);
    halfStep_ = std::ldexp(1.0, -(gridBits + 1));
    // Converting 2q + 1 to double may round once more.
    gridError_ = (1 + c1) * halfStep_ + std::ldexp(1.0, -52);
    codes_.assign(count, 0);
    const auto [low, high] = DistanceCorrAlgo::selectionIndices(alpha, count);
    lowIndex_ = low;
    highIndex_ = high;
}

void DistanceCorrPermutationSelection::setApproximate(std::uint64_t t, double value) {
    const double clamped = std::max(0.0, std::min(1.0, value));
    const auto grid = static_cast<std::uint64_t>(clamped / (2 * halfStep_));
    codes_[t] = (grid << numberBits_) | t;
}

DistanceCorrPermutationSelection::Decoded DistanceCorrPermutationSelection::decode(std::uint64_t code) const {
    if (code & kExactFlag) return {exact_[code & ~kExactFlag].second, 0.0};
    const std::uint64_t grid = code >> numberBits_;
    const double value = static_cast<double>(2 * grid + 1) * halfStep_;
    return {value, c0_ + c1_ * value + gridError_};
}

std::uint64_t DistanceCorrPermutationSelection::permutationOf(std::uint64_t code) const {
    if (code & kExactFlag) return exact_[code & ~kExactFlag].first;
    return code & ((std::uint64_t{1} << numberBits_) - 1);
}

bool DistanceCorrPermutationSelection::makeExact(std::vector<std::uint64_t>& permutations, const Recompute& recompute) {
    sortUnique(permutations);
    const std::size_t limit = std::min<std::uint64_t>(kMaxExact, count_ - count_ / 4);
    if (exact_.size() + permutations.size() > limit) return false;
    std::vector<double> values;
    recompute(permutations, values);
    for (std::size_t m = 0; m < permutations.size(); ++m) {
        codes_[permutations[m]] = kExactFlag | exact_.size();
        exact_.emplace_back(permutations[m], values[m]);
    }
    return true;
}

bool DistanceCorrPermutationSelection::replay(std::vector<std::uint64_t>& doubtful, std::uint64_t (&selected)[4]) {
    const auto mark = [&](std::uint64_t code) {
        if (code & kExactFlag) return;
        doubtful.push_back(permutationOf(code));
        // Keep the list short; its length decides the fallback anyway.
        if (doubtful.size() > 2 * kMaxExact) sortUnique(doubtful);
    };
    const auto less = [&](std::uint64_t a, std::uint64_t b) {
        const Decoded da = decode(a);
        const Decoded db = decode(b);
        if ((da.error > 0 || db.error > 0) && std::fabs(da.value - db.value) <= da.error + db.error) {
            mark(a);
            mark(b);
        }
        return da.value < db.value;
    };
    const auto first = codes_.begin();
    const std::size_t last = count_ - 1;
    std::nth_element(first, first + static_cast<std::ptrdiff_t>(lowIndex_), codes_.end(), less);
    selected[0] = codes_[lowIndex_];
    selected[1] = codes_[std::min(lowIndex_ + 1, last)];
    std::nth_element(first + static_cast<std::ptrdiff_t>(lowIndex_), first + static_cast<std::ptrdiff_t>(highIndex_),
                     codes_.end(), less);
    selected[2] = codes_[highIndex_];
    selected[3] = codes_[std::min(highIndex_ + 1, last)];
    sortUnique(doubtful);
    return doubtful.empty();
}

void DistanceCorrPermutationSelection::restoreOrder() {
    for (std::uint64_t position = 0; position < count_; ++position) {
        for (std::uint64_t t = permutationOf(codes_[position]); t != position; t = permutationOf(codes_[position])) {
            std::swap(codes_[position], codes_[t]);
        }
    }
}

bool DistanceCorrPermutationSelection::settle(double observed, const Recompute& recompute, Outcome& outcome) {
    // The p-value's comparisons with the observed value.
    std::vector<std::uint64_t> doubtful;
    for (std::uint64_t t = 0; t < count_; ++t) {
        const Decoded d = decode(codes_[t]);
        if (std::fabs(d.value - observed) <= d.error) {
            doubtful.push_back(t);
            if (doubtful.size() > kMaxExact) return false;
        }
    }
    std::uint64_t selected[4];
    for (int round = 0;; ++round) {
        if (!doubtful.empty() && !makeExact(doubtful, recompute)) return false;
        doubtful.clear();
        if (replay(doubtful, selected)) break;
        if (round + 1 == kMaxRounds) return false;
        restoreOrder();
    }

    // The selections now move the elements as the recipe's do; the elements
    // they leave at k and k + 1 get their recipe values.
    std::vector<std::uint64_t> needed;
    for (std::uint64_t code : selected) {
        if (!(code & kExactFlag)) needed.push_back(permutationOf(code));
    }
    sortUnique(needed);
    std::vector<double> neededValues;
    if (!needed.empty()) recompute(needed, neededValues);
    finalRecomputed_ += needed.size();
    const auto valueOf = [&](std::uint64_t code) {
        if (code & kExactFlag) return exact_[code & ~kExactFlag].second;
        const auto at = std::lower_bound(needed.begin(), needed.end(), permutationOf(code));
        return neededValues[static_cast<std::size_t>(at - needed.begin())];
    };
    outcome.lower =
        DistanceCorrAlgo::percentileAt(count_, 100 * alpha_ / 2, lowIndex_, valueOf(selected[0]), valueOf(selected[1]));
    outcome.upper = DistanceCorrAlgo::percentileAt(count_, (1 - alpha_ / 2) * 100, highIndex_, valueOf(selected[2]),
                                                   valueOf(selected[3]));

    // Every comparison with the observed value is decided (or exact).
    std::uint64_t atLeastObserved = 0;
    for (std::uint64_t code : codes_) {
        if (decode(code).value >= observed) ++atLeastObserved;
    }
    outcome.pValue = static_cast<double>(atLeastObserved) / static_cast<double>(count_);
    return true;
}
