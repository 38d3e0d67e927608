#include "DistanceCorrPermutationKernel.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "DistanceCorrPermutationErrorBound.h"

namespace {

bool allFinite(const std::vector<double>& values) {
    for (double v : values) {
        if (!std::isfinite(v)) return false;
    }
    return true;
}

}  // namespace

DistanceCorrPermutationKernel::DistanceCorrPermutationKernel(const std::vector<double>& fixedColumn,
                                                             const std::vector<double>& shuffledColumn)
    : n_(fixedColumn.size()) {
    if (shuffledColumn.size() != n_) throw std::invalid_argument("Columns of different length");
    usable_ = allFinite(fixedColumn) && allFinite(shuffledColumn);
    if (!usable_ || n_ == 0) return;

    PermutedCrossSums sums(fixedColumn, shuffledColumn);
    const long double cells = static_cast<long double>(n_) * static_cast<long double>(n_);
    // The ranges rounded up, so that the bound covers them.
    const DistanceCorrPermutationErrorBound::Column x{sums.fixedRange() * (1 + 1e-15L), sums.fixedExtreme(),
                                                      sums.fixedSquares()};
    const DistanceCorrPermutationErrorBound::Column y{sums.shuffledRange() * (1 + 1e-15L), sums.shuffledExtreme(),
                                                      sums.shuffledSquares()};
    // Rounding in the sweep grows with the extreme products against the
    // centred sums it must resolve; long double where double would dominate
    // the bound.
    precise_ = !(x.extreme * y.extreme * cells <= kDoubleConditionLimit * std::sqrt(x.squares * y.squares));
    DistanceCorrPermutationErrorBound bound(n_, x, y, !precise_);
    if (!precise_ && bound.doubleSweepShare() > kDoubleSweepShareLimit) {
        precise_ = true;
        bound = DistanceCorrPermutationErrorBound(n_, x, y, false);
    }
    using Variance = DistanceCorrPermutationErrorBound::Variance;
    if (!bound.inRange()) {
        usable_ = false;
        return;
    }
    // The recipe gives 0 as soon as one of its variances is at or below the
    // threshold.
    zeroStatistic_ = bound.fixedVariance() == Variance::Zero || bound.shuffledVariance() == Variance::Zero;
    if (zeroStatistic_) return;
    if (!bound.trusted()) {
        usable_ = false;
        return;
    }
    c0_ = bound.c0();
    c1_ = bound.c1();
    normaliser_ = std::sqrt(x.squares * y.squares);
    if (!precise_) sums.useDoubleSweep();
    sums_ = std::move(sums);
}

DistanceCorrPermutationKernel::Statistic DistanceCorrPermutationKernel::evaluate(
    const std::vector<std::size_t>& index) {
    if (n_ == 0) throw std::runtime_error("Insufficient data points");
    if (!usable_) throw std::logic_error("The permutation kernel is not usable for these data");
    if (index.size() != n_) throw std::invalid_argument("Permutation of a different length");
    if (zeroStatistic_) return {0.0, true};

    // S2 first: it also checks every entry of the permutation.
    const long double s2 = sums_->s2(index);
    const long double halfS1 = sums_->halfS1(index);
    const long double n = static_cast<long double>(n_);
    const long double crossSum = 2 * halfS1 - 2 * s2 / n + sums_->s3() / (n * n);
    const double r = static_cast<double>(crossSum / normaliser_);
    return {std::max(0.0, std::min(1.0, r)), false};
}
