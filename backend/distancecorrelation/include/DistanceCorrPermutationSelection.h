#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

// The p-value and the percentile interval of one pair from statistics that
// are known only to within an error bound (the permutation kernel's), equal
// to what the recipe's two selections and its count give on the recipe's own
// values, bit for bit.
//
// The interval reads the elements that std::nth_element leaves at k and k + 1.
// Which elements those are depends only on the outcomes of the comparisons
// the selection makes, so the selection is replayed on the approximate
// values: every comparison whose two values lie within their error bounds of
// each other (and every statistic within its bound of the observed value) is
// settled by recomputing the statistics concerned with the recipe, and the
// replay starts again, until no comparison is in doubt. The recipe's
// selections then make the same moves; the elements they leave at k and k + 1
// are recomputed with the recipe before the interpolation.
//
// Each statistic takes 8 bytes: an approximate one holds its value on a fixed
// grid fine enough for the bound, together with its permutation number; an
// exact one holds an entry of a table of recomputed values, whose size is
// capped (kMaxExact). Beyond the cap settle() gives up and the caller
// computes every statistic with the recipe.
class DistanceCorrPermutationSelection {
public:
    struct Outcome {
        double pValue = 0.0;
        double lower = 0.0;
        double upper = 0.0;
    };
    // Writes the recipe's values of the given permutations (ascending, no
    // repeats) in the same order.
    using Recompute = std::function<void(const std::vector<std::uint64_t>&, std::vector<double>&)>;

    static constexpr std::size_t kMaxExact = std::size_t{1} << 16;

    // count statistics (at least one), significance level alpha; the error
    // bound of a value v is c0 + c1 * v.
    DistanceCorrPermutationSelection(std::uint64_t count, double alpha, double c0, double c1);

    // Statistic t as the kernel computed it, in [0, 1].
    void setApproximate(std::uint64_t t, double value);

    // False when more statistics would have to be recomputed than the cap (or
    // three quarters of them) allows; otherwise fills outcome.
    bool settle(double observed, const Recompute& recompute, Outcome& outcome);

    // Number of statistics recomputed so far (tests and benchmarks).
    std::size_t recomputed() const { return exact_.size() + finalRecomputed_; }

private:
    static constexpr std::uint64_t kExactFlag = std::uint64_t{1} << 63;

    struct Decoded {
        double value;
        double error;  // 0 for a recipe value
    };

    Decoded decode(std::uint64_t code) const;
    std::uint64_t permutationOf(std::uint64_t code) const;
    // Adds the recipe's values of the given permutations to the table and
    // marks their codes exact; false beyond the cap. Codes in permutation order.
    bool makeExact(std::vector<std::uint64_t>& permutations, const Recompute& recompute);
    // Both selections with the recorded elements; true when no comparison was in doubt.
    bool replay(std::vector<std::uint64_t>& doubtful, std::uint64_t (&selected)[4]);
    void restoreOrder();

    std::uint64_t count_;
    std::size_t lowIndex_;
    std::size_t highIndex_;
    double alpha_;
    double c0_;
    double c1_;
    unsigned numberBits_;  // low bits holding the permutation number
    double halfStep_;      // half the grid step of approximate values
    double gridError_;     // rounding to the grid
    std::vector<std::uint64_t> codes_;
    std::vector<std::pair<std::uint64_t, double>> exact_;  // permutation, recipe value
    std::size_t finalRecomputed_ = 0;
};
