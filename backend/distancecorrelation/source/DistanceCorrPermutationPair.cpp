#include "DistanceCorrPermutationPair.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "DistanceCorrAlgo.h"
#include "DistanceCorrPermutationLiteral.h"
#include "DistanceCorrPermutationProgress.h"

namespace {

constexpr std::size_t kLanes = DistanceCorrPermutationLiteral::kLanes;

// Up to four permutations filled one after another and evaluated together by
// the fused recipe.
class LiteralBatch {
public:
    LiteralBatch(DistanceCorrPermutationLiteral& literal, std::vector<std::vector<std::size_t>>& lanes)
        : literal_(literal) {
        for (std::size_t l = 0; l < kLanes; ++l) pointers_[l] = &lanes[l];
    }
    // The next permutation to fill.
    std::vector<std::size_t>& next() { return *pointers_[count_++]; }
    bool full() const { return count_ == kLanes; }
    // Evaluates the filled permutations into out[0 .. count).
    void flush(double* out) {
        if (count_ == 0) return;
        literal_.evaluate(pointers_, count_, out);
        count_ = 0;
    }
    std::size_t size() const { return count_; }

private:
    DistanceCorrPermutationLiteral& literal_;
    std::vector<std::size_t>* pointers_[kLanes];
    std::size_t count_ = 0;
};

}  // namespace

DistanceCorrPermutationPair::Scratch::Scratch() = default;
DistanceCorrPermutationPair::Scratch::~Scratch() = default;

DistanceCorrPermutationPair::DistanceCorrPermutationPair(const Matrix& centredX, const std::vector<double>& fixed,
                                                         const std::vector<double>& shuffled,
                                                         std::uint64_t permutations, double alpha, Method method,
                                                         std::uint64_t blocks)
    : centredX_(&centredX),
      fixed_(&fixed),
      shuffled_(&shuffled),
      permutations_(permutations),
      alpha_(alpha),
      method_(method) {
    if (permutations_ == 0) return;
    // A multiple of the recipe's lanes, so that its batches fill every lane.
    const std::uint64_t wanted = std::max(blocks, kCheckpoints);
    blockSize_ = ((permutations_ - 1) / wanted + 1 + (kLanes - 1)) / kLanes * kLanes;
}

DistanceCorrPermutationPair::~DistanceCorrPermutationPair() = default;
DistanceCorrPermutationPair::DistanceCorrPermutationPair(DistanceCorrPermutationPair&&) noexcept = default;

std::uint64_t DistanceCorrPermutationPair::blockCount() const {
    return permutations_ == 0 ? 0 : (permutations_ - 1) / blockSize_ + 1;
}

std::uint64_t DistanceCorrPermutationPair::blockLength(std::uint64_t block) const {
    const std::uint64_t first = block * blockSize_;
    return first >= permutations_ ? 0 : std::min(blockSize_, permutations_ - first);
}

void DistanceCorrPermutationPair::prepare() {
    if (way_ != Way::Undecided || permutations_ == 0) return;
    const std::size_t n = cases();
    // Checks the fixed matrix's shape as the recipe does.
    DistanceCorrPermutationLiteral shapeCheck(*centredX_, *shuffled_);
    const bool tryKernel = method_ == Method::Kernel || (method_ == Method::Automatic && n >= kKernelFromCases);
    if (tryKernel) {
        kernel_.emplace(*fixed_, *shuffled_);
        if (kernel_->usable() && kernel_->alwaysZero()) {
            way_ = Way::Zero;
        } else if (kernel_->usable()) {
            way_ = Way::Kernel;
            selection_.emplace(permutations_, alpha_, kernel_->c0(), kernel_->c1());
            saved_.assign(static_cast<std::size_t>(blockCount()), PermutationStream(0));
            return;
        }
        kernel_.reset();
    }
    if (way_ == Way::Undecided) way_ = Way::Recipe;
    statistics_.assign(static_cast<std::size_t>(permutations_), 0.0);
}

void DistanceCorrPermutationPair::bind(Scratch& scratch) const {
    if (scratch.owner_ == this) return;
    scratch.owner_ = this;
    scratch.literal_.reset();
    scratch.kernel_.reset();
    if (kernel_) scratch.kernel_.emplace(*kernel_);
    scratch.index_.resize(cases());
}

DistanceCorrPermutationLiteral& DistanceCorrPermutationPair::literalOf(Scratch& scratch) const {
    if (!scratch.literal_) {
        scratch.literal_ = std::make_unique<DistanceCorrPermutationLiteral>(*centredX_, *shuffled_);
        scratch.lanes_.assign(kLanes, std::vector<std::size_t>(cases()));
    }
    return *scratch.literal_;
}

void DistanceCorrPermutationPair::runBlock(std::uint64_t block, PermutationStream& stream, Scratch& scratch,
                                           DistanceCorrPermutationProgress& progress) {
    const std::size_t n = cases();
    const std::uint64_t first = block * blockSize_;
    const std::uint64_t count = blockLength(block);
    if (way_ == Way::Zero) {
        stream.skip(count, n);
        progress.add(count);
        return;
    }
    bind(scratch);
    // Reported in steps, so that the clock is read only now and then.
    const std::uint64_t step = DistanceCorrPermutationProgress::reportEvery(n);
    std::uint64_t unreported = 0;
    if (way_ == Way::Kernel) {
        saved_[static_cast<std::size_t>(block)] = stream;
        for (std::uint64_t t = first; t < first + count; ++t) {
            stream.shuffle(scratch.index_);
            selection_->setApproximate(t, scratch.kernel_->evaluate(scratch.index_).value);
            if (++unreported == step) progress.add(std::exchange(unreported, 0));
        }
    } else {
        LiteralBatch batch(literalOf(scratch), scratch.lanes_);
        for (std::uint64_t t = first; t < first + count; ++t) {
            stream.shuffle(batch.next());
            if (batch.full() || t + 1 == first + count) {
                batch.flush(&statistics_[static_cast<std::size_t>(t + 1 - batch.size())]);
            }
            if (++unreported == step) progress.add(std::exchange(unreported, 0));
        }
    }
    progress.add(unreported);
}

void DistanceCorrPermutationPair::recompute(const std::vector<std::uint64_t>& wanted, std::vector<double>& values,
                                            Scratch& scratch) const {
    const std::size_t n = cases();
    values.assign(wanted.size(), 0.0);
    LiteralBatch batch(literalOf(scratch), scratch.lanes_);
    PermutationStream cursor = saved_.front();
    std::uint64_t at = std::numeric_limits<std::uint64_t>::max();  // permutation the cursor draws next
    for (std::size_t m = 0; m < wanted.size(); ++m) {
        const std::uint64_t t = wanted[m];
        const std::uint64_t save = t / blockSize_;
        if (at > t || at < save * blockSize_) {
            cursor = saved_[static_cast<std::size_t>(save)];
            at = save * blockSize_;
        }
        cursor.skip(t - at, n);
        cursor.shuffle(batch.next());
        at = t + 1;
        if (batch.full() || m + 1 == wanted.size()) batch.flush(&values[m + 1 - batch.size()]);
    }
}

bool DistanceCorrPermutationPair::finish(double observed, Scratch& scratch, Outcome& outcome) {
    if (permutations_ == 0) {
        // No statistics: p-value and bounds stay 0.
        outcome = Outcome{};
        return true;
    }
    if (way_ == Way::Kernel) {
        bind(scratch);
        const auto recomputeWith = [&](const std::vector<std::uint64_t>& wanted, std::vector<double>& values) {
            recompute(wanted, values, scratch);
        };
        if (!selection_->settle(observed, recomputeWith, outcome)) {
            // Too many statistics in doubt: every one with the recipe, drawn
            // again from the saved states.
            selection_.reset();
            kernel_.reset();
            way_ = Way::Recipe;
            scratch.owner_ = nullptr;
            statistics_.assign(static_cast<std::size_t>(permutations_), 0.0);
            return false;
        }
    } else {
        std::pair<double, double> interval(0.0, 0.0);
        outcome.pValue = DistanceCorrAlgo::selectAndCount(observed, alpha_, statistics_, interval);
        outcome.lower = interval.first;
        outcome.upper = interval.second;
    }
    release();
    return true;
}

void DistanceCorrPermutationPair::release() {
    kernel_.reset();
    selection_.reset();
    std::vector<double>().swap(statistics_);
    std::vector<PermutationStream>().swap(saved_);
}
