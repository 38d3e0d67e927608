#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

#include "DistanceCorrPermutationSelection.h"
#include "PermutationStream.h"

// The permutation test of one variable pair: its N permuted statistics, the
// p-value and the percentile interval, unrounded and bit for bit those of the
// matrix recipe. The pair's random numbers are the N * (n - 1) that follow in
// the stream it is given, so pairs can later run apart from one another from
// their own starting states.
//
// Where the O(n log n) kernel accepts the data, it computes every statistic
// and the selection settles the doubtful ones with the recipe
// (DistanceCorrPermutationSelection); otherwise, for few cases, or when too
// many statistics are in doubt, the fused recipe computes every statistic.
// Memory: the 8-byte statistics and a constant beyond them (O(n) scratch,
// at most kCheckpoints saved stream states, a capped table of recomputed
// values).
class DistanceCorrPermutationPair {
public:
    using Matrix = std::vector<std::vector<double>>;
    using Outcome = DistanceCorrPermutationSelection::Outcome;

    // Automatic: the kernel from kKernelFromCases cases on; Kernel: whenever
    // it accepts the data (to prove it on small samples); Recipe: the fused
    // recipe for every permutation.
    enum class Method { Automatic, Kernel, Recipe };
    static constexpr std::size_t kKernelFromCases = 64;
    static constexpr std::uint64_t kCheckpoints = 32;

    // centredX: the fixed variable's centred matrix (n x n) from the observed
    // statistics, fixed its column, shuffled the column that is permuted.
    DistanceCorrPermutationPair(const Matrix& centredX, const std::vector<double>& fixed,
                                const std::vector<double>& shuffled, std::uint64_t permutations, double alpha,
                                Method method);

    // Runs the pair on the next N * (n - 1) numbers of stream, which it
    // leaves after them.
    Outcome run(PermutationStream& stream, double observed);

    // How the last run went (tests and benchmarks).
    bool usedKernel() const { return usedKernel_; }
    std::size_t recomputed() const { return recomputed_; }

private:
    Outcome runRecipe(PermutationStream& stream, double observed);
    // Kernel and selection; false when the selection gave up.
    bool runKernel(PermutationStream& stream, double observed, Outcome& outcome);

    const Matrix& centredX_;
    const std::vector<double>& fixed_;
    const std::vector<double>& shuffled_;
    std::uint64_t permutations_;
    double alpha_;
    Method method_;
    bool usedKernel_ = false;
    std::size_t recomputed_ = 0;
};
