#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "DistanceCorrPermutationKernel.h"
#include "DistanceCorrPermutationSelection.h"
#include "PermutationStream.h"

class DistanceCorrPermutationLiteral;
class DistanceCorrPermutationProgress;

// The permutation test of one variable pair: its N permuted statistics, the
// p-value and the percentile interval, unrounded and bit for bit those of the
// matrix recipe. The pair's random numbers are the N * (n - 1) that follow in
// the stream at its start, permutation t using the (n - 1) after the first
// t * (n - 1).
//
// Where the O(n log n) kernel accepts the data, it computes every statistic
// and the selection settles the doubtful ones with the recipe
// (DistanceCorrPermutationSelection); otherwise, for few cases, or when too
// many statistics are in doubt, the fused recipe computes every statistic.
//
// The permutations are cut into blocks of consecutive ones. A block needs only
// the stream's state at its first permutation, so blocks can run on different
// threads at once, each with its own Scratch, and give the same statistics in
// any order. The stream's state at each block's start is kept: a statistic to
// be recomputed is drawn again from the nearest one. Memory: the 8-byte
// statistics and, beyond them, at most blockCount() saved states, a capped
// table of recomputed values and O(n) per Scratch.
class DistanceCorrPermutationPair {
public:
    using Matrix = std::vector<std::vector<double>>;
    using Outcome = DistanceCorrPermutationSelection::Outcome;

    // Automatic: the kernel from kKernelFromCases cases on; Kernel: whenever
    // it accepts the data (to prove it on small samples); Recipe: the fused
    // recipe for every permutation.
    enum class Method { Automatic, Kernel, Recipe };
    static constexpr std::size_t kKernelFromCases = 64;
    // Blocks per pair at least (a multiple of four permutations each, so that
    // the fused recipe's four lanes stay full).
    static constexpr std::uint64_t kCheckpoints = 32;

    // What one thread needs to run blocks: its own copy of the kernel (whose
    // sweep writes into it), a permutation and the fused recipe's lanes. O(n).
    class Scratch {
    public:
        Scratch();
        ~Scratch();
        Scratch(const Scratch&) = delete;
        Scratch& operator=(const Scratch&) = delete;

    private:
        friend class DistanceCorrPermutationPair;
        const DistanceCorrPermutationPair* owner_ = nullptr;
        std::optional<DistanceCorrPermutationKernel> kernel_;
        std::unique_ptr<DistanceCorrPermutationLiteral> literal_;
        std::vector<std::size_t> index_;
        std::vector<std::vector<std::size_t>> lanes_;  // one permutation per lane of the fused recipe
    };

    // centredX: the fixed variable's centred matrix (n x n) from the observed
    // statistics, fixed its column, shuffled the column that is permuted.
    // blocks: how many blocks are wanted (kCheckpoints at least); each holds
    // a multiple of four permutations, so few permutations make fewer.
    DistanceCorrPermutationPair(const Matrix& centredX, const std::vector<double>& fixed,
                                const std::vector<double>& shuffled, std::uint64_t permutations, double alpha,
                                Method method, std::uint64_t blocks = kCheckpoints);
    ~DistanceCorrPermutationPair();
    DistanceCorrPermutationPair(DistanceCorrPermutationPair&&) noexcept;
    DistanceCorrPermutationPair(const DistanceCorrPermutationPair&) = delete;
    DistanceCorrPermutationPair& operator=(const DistanceCorrPermutationPair&) = delete;

    std::size_t cases() const { return shuffled_->size(); }
    std::uint64_t permutations() const { return permutations_; }
    // Blocks of equally many permutations, the last one possibly shorter; none
    // without permutations.
    std::uint64_t blockCount() const;
    std::uint64_t blockLength(std::uint64_t block) const;

    // Chooses the way and allocates the statistics; once, before any block.
    void prepare();
    // The permutations of block b, from stream standing at the block's first
    // permutation; leaves it after the block's last. Blocks may run at the
    // same time on different threads, each with its own scratch.
    void runBlock(std::uint64_t block, PermutationStream& stream, Scratch& scratch,
                  DistanceCorrPermutationProgress& progress);
    // Once every block has run: true and the outcome; or false when the
    // kernel's statistics could not be settled, and the pair is set to compute
    // every statistic with the recipe: each block must then run again, from
    // savedStart(b), and finish() be called again.
    bool finish(double observed, Scratch& scratch, Outcome& outcome);
    const PermutationStream& savedStart(std::uint64_t block) const { return saved_.at(block); }

private:
    enum class Way { Undecided, Recipe, Zero, Kernel };

    void bind(Scratch& scratch) const;
    DistanceCorrPermutationLiteral& literalOf(Scratch& scratch) const;
    // The fused recipe's statistics of the given permutations (ascending),
    // each drawn again from the nearest saved state.
    void recompute(const std::vector<std::uint64_t>& wanted, std::vector<double>& values, Scratch& scratch) const;
    void release();

    const Matrix* centredX_;
    const std::vector<double>* fixed_;
    const std::vector<double>* shuffled_;
    std::uint64_t permutations_;
    double alpha_;
    Method method_;
    std::uint64_t blockSize_ = 0;

    Way way_ = Way::Undecided;
    std::optional<DistanceCorrPermutationKernel> kernel_;        // read only once prepared
    std::optional<DistanceCorrPermutationSelection> selection_;  // the kernel's way
    std::vector<double> statistics_;                             // the other ways
    std::vector<PermutationStream> saved_;                       // the kernel's way: each block's start
};
