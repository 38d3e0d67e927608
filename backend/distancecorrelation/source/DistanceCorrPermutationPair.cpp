#include "DistanceCorrPermutationPair.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "DistanceCorrAlgo.h"
#include "DistanceCorrPermutationKernel.h"
#include "DistanceCorrPermutationLiteral.h"

namespace {

constexpr std::size_t kLanes = DistanceCorrPermutationLiteral::kLanes;

// Up to four index vectors filled one after another from the stream and
// evaluated together by the fused recipe.
class LiteralBatch {
public:
    LiteralBatch(DistanceCorrPermutationLiteral& literal, std::size_t n) : literal_(literal) {
        for (std::size_t l = 0; l < kLanes; ++l) {
            indices_[l].resize(n);
            pointers_[l] = &indices_[l];
        }
    }
    // The next index vector to fill.
    std::vector<std::size_t>& next() { return indices_[count_++]; }
    bool full() const { return count_ == kLanes; }
    // Evaluates the filled vectors into out[0 .. count).
    void flush(double* out) {
        if (count_ == 0) return;
        literal_.evaluate(pointers_, count_, out);
        count_ = 0;
    }
    std::size_t size() const { return count_; }

private:
    DistanceCorrPermutationLiteral& literal_;
    std::vector<std::size_t> indices_[kLanes];
    const std::vector<std::size_t>* pointers_[kLanes];
    std::size_t count_ = 0;
};

}  // namespace

DistanceCorrPermutationPair::DistanceCorrPermutationPair(const Matrix& centredX, const std::vector<double>& fixed,
                                                         const std::vector<double>& shuffled,
                                                         std::uint64_t permutations, double alpha, Method method)
    : centredX_(centredX),
      fixed_(fixed),
      shuffled_(shuffled),
      permutations_(permutations),
      alpha_(alpha),
      method_(method) {}

DistanceCorrPermutationPair::Outcome DistanceCorrPermutationPair::run(PermutationStream& stream, double observed) {
    usedKernel_ = false;
    recomputed_ = 0;
    // No statistics: p-value and bounds stay 0.
    if (permutations_ == 0) return Outcome{};
    const bool tryKernel =
        method_ == Method::Kernel || (method_ == Method::Automatic && shuffled_.size() >= kKernelFromCases);
    if (tryKernel) {
        const PermutationStream start = stream;
        Outcome outcome;
        if (runKernel(stream, observed, outcome)) return outcome;
        // Declined, or too many statistics in doubt: the pair's numbers again.
        stream = start;
    }
    return runRecipe(stream, observed);
}

DistanceCorrPermutationPair::Outcome DistanceCorrPermutationPair::runRecipe(PermutationStream& stream, double observed) {
    const std::size_t n = shuffled_.size();
    DistanceCorrPermutationLiteral literal(centredX_, shuffled_);
    std::vector<double> statistics(permutations_);
    LiteralBatch batch(literal, n);
    for (std::uint64_t t = 0; t < permutations_; ++t) {
        stream.shuffle(batch.next());
        if (batch.full() || t + 1 == permutations_) batch.flush(&statistics[t + 1 - batch.size()]);
    }
    std::pair<double, double> interval(0.0, 0.0);
    const double pValue = DistanceCorrAlgo::selectAndCount(observed, alpha_, statistics, interval);
    return {pValue, interval.first, interval.second};
}

bool DistanceCorrPermutationPair::runKernel(PermutationStream& stream, double observed, Outcome& outcome) {
    const std::size_t n = shuffled_.size();
    // Checks the fixed matrix's shape as the recipe does.
    DistanceCorrPermutationLiteral literal(centredX_, shuffled_);
    DistanceCorrPermutationKernel kernel(fixed_, shuffled_);
    if (!kernel.usable()) return false;
    usedKernel_ = true;

    if (kernel.alwaysZero()) {
        std::vector<double> statistics(permutations_, 0.0);
        stream.skip(permutations_, n);
        std::pair<double, double> interval(0.0, 0.0);
        outcome.pValue = DistanceCorrAlgo::selectAndCount(observed, alpha_, statistics, interval);
        outcome.lower = interval.first;
        outcome.upper = interval.second;
        return true;
    }

    // The stream is saved every stride permutations, so that a statistic to
    // be recomputed is drawn again from the nearest save.
    const std::uint64_t stride = (permutations_ - 1) / kCheckpoints + 1;
    std::vector<PermutationStream> saved;
    saved.reserve(static_cast<std::size_t>((permutations_ - 1) / stride + 1));
    DistanceCorrPermutationSelection selection(permutations_, alpha_, kernel.c0(), kernel.c1());
    std::vector<std::size_t> index(n);
    for (std::uint64_t t = 0; t < permutations_; ++t) {
        if (t % stride == 0) saved.push_back(stream);
        stream.shuffle(index);
        selection.setApproximate(t, kernel.evaluate(index).value);
    }

    LiteralBatch batch(literal, n);
    const auto recompute = [&](const std::vector<std::uint64_t>& wanted, std::vector<double>& values) {
        values.assign(wanted.size(), 0.0);
        PermutationStream cursor = saved.front();
        std::uint64_t at = std::numeric_limits<std::uint64_t>::max();  // permutation the cursor draws next
        for (std::size_t m = 0; m < wanted.size(); ++m) {
            const std::uint64_t t = wanted[m];
            const std::uint64_t save = t / stride;
            if (at > t || at < save * stride) {
                cursor = saved[static_cast<std::size_t>(save)];
                at = save * stride;
            }
            cursor.skip(t - at, n);
            cursor.shuffle(batch.next());
            at = t + 1;
            if (batch.full() || m + 1 == wanted.size()) batch.flush(&values[m + 1 - batch.size()]);
        }
    };
    const bool settled = selection.settle(observed, recompute, outcome);
    recomputed_ = selection.recomputed();
    return settled;
}
