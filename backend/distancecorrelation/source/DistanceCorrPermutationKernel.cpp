#include "DistanceCorrPermutationKernel.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
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

// Cases in ascending order of their values.
std::vector<std::size_t> ascendingOrder(const std::vector<double>& values) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    return order;
}

// The values in the given order, less their mean: the sums of products stay
// small relative to the distances they stand for.
std::vector<long double> centredInOrder(const std::vector<double>& values, const std::vector<std::size_t>& order) {
    long double mean = 0;
    for (double v : values) mean += v;
    mean /= static_cast<long double>(values.size());
    std::vector<long double> out(values.size());
    for (std::size_t k = 0; k < order.size(); ++k) out[k] = static_cast<long double>(values[order[k]]) - mean;
    return out;
}

long double largestMagnitude(const std::vector<long double>& values) {
    long double largest = 0;
    for (long double v : values) largest = std::max(largest, std::fabs(v));
    return largest;
}

// Largest minus smallest value, rounded up.
long double rangeOf(const std::vector<double>& values, const std::vector<std::size_t>& ascending) {
    const long double range = static_cast<long double>(values[ascending.back()]) - values[ascending.front()];
    return range * (1 + 1e-15L);
}

// Count, x, y and x*y of a Fenwick node side by side, so that one vector
// operation updates all four.
typedef double Lanes __attribute__((vector_size(4 * sizeof(double))));

// Half of S1 with double sums: for each case in x order, the signed sums over
// the earlier cases (+1 at or below its y, -1 above) of count, x, y and x*y.
// Cloned for AVX2, with a plain SSE2 version for any other x86-64.
__attribute__((target_clones("avx2", "default"))) double sweepLanes(std::size_t n, const std::size_t* xOrder,
                                                                    const std::size_t* index,
                                                                    const std::uint32_t* yRank, const double* xSorted,
                                                                    const double* yCentred, double* tree,
                                                                    std::size_t top) {
    std::fill(tree, tree + 4 * (top + 1), 0.0);
    Lanes total = {0, 0, 0, 0};
    double halfS1 = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const std::size_t source = index[xOrder[k]];
        const std::uint32_t rank = yRank[source];
        const double xk = xSorted[k];
        const double yk = yCentred[source];
        Lanes below = {0, 0, 0, 0};
        for (std::size_t i = rank; i > 0; i &= i - 1) {
            Lanes node;
            std::memcpy(&node, tree + 4 * i, sizeof node);
            below += node;
        }
        const Lanes w = 2 * below - total;
        halfS1 += w[0] * xk * yk - xk * w[2] - yk * w[1] + w[3];
        const Lanes add = {1, xk, yk, xk * yk};
        for (std::size_t i = rank; i <= top; i += i & (~i + 1)) {
            Lanes node;
            std::memcpy(&node, tree + 4 * i, sizeof node);
            node += add;
            std::memcpy(tree + 4 * i, &node, sizeof node);
        }
        total += add;
    }
    return halfS1;
}

}  // namespace

DistanceCorrPermutationKernel::DistanceCorrPermutationKernel(const std::vector<double>& fixedColumn,
                                                             const std::vector<double>& shuffledColumn)
    : n_(fixedColumn.size()) {
    if (shuffledColumn.size() != n_) throw std::invalid_argument("Columns of different length");
    usable_ = allFinite(fixedColumn) && allFinite(shuffledColumn);
    if (!usable_ || n_ == 0) return;

    xOrder_ = ascendingOrder(fixedColumn);
    xSorted_ = centredInOrder(fixedColumn, xOrder_);
    const std::vector<long double> xSortedRows = sortedRowSums(xSorted_);
    xRowSums_.resize(n_);
    for (std::size_t k = 0; k < n_; ++k) xRowSums_[xOrder_[k]] = xSortedRows[k];

    const std::vector<std::size_t> yOrder = ascendingOrder(shuffledColumn);
    const std::vector<long double> ySorted = centredInOrder(shuffledColumn, yOrder);
    const std::vector<long double> ySortedRows = sortedRowSums(ySorted);
    yRank_.resize(n_);
    yCentred_.resize(n_);
    yRowSums_.resize(n_);
    std::uint32_t rank = 0;
    for (std::size_t k = 0; k < n_; ++k) {
        // Equal values share a rank: their distance is zero whichever side they fall.
        if (k == 0 || shuffledColumn[yOrder[k]] != shuffledColumn[yOrder[k - 1]]) ++rank;
        const std::size_t c = yOrder[k];
        yRank_[c] = rank;
        yCentred_[c] = ySorted[k];
        yRowSums_[c] = ySortedRows[k];
    }
    tree_.resize(static_cast<std::size_t>(rank) + 1);

    const long double xTotal = std::accumulate(xSortedRows.begin(), xSortedRows.end(), 0.0L);
    const long double yTotal = std::accumulate(ySortedRows.begin(), ySortedRows.end(), 0.0L);
    s3_ = xTotal * yTotal;

    const long double cells = static_cast<long double>(n_) * static_cast<long double>(n_);
    const DistanceCorrPermutationErrorBound::Column x{rangeOf(fixedColumn, xOrder_), largestMagnitude(xSorted_),
                                                      centredSumOfSquares(xSorted_, xSortedRows)};
    const DistanceCorrPermutationErrorBound::Column y{rangeOf(shuffledColumn, yOrder), largestMagnitude(ySorted),
                                                      centredSumOfSquares(ySorted, ySortedRows)};
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
    if (!precise_) {
        xSortedD_.assign(xSorted_.begin(), xSorted_.end());
        yCentredD_.assign(yCentred_.begin(), yCentred_.end());
        laneTree_.assign(4 * tree_.size(), 0.0);
        tree_.clear();
    }
}

std::vector<long double> DistanceCorrPermutationKernel::sortedRowSums(const std::vector<long double>& sorted) {
    const std::size_t n = sorted.size();
    const long double total = std::accumulate(sorted.begin(), sorted.end(), 0.0L);
    std::vector<long double> rows(n);
    long double below = 0;  // sum of the values before position k
    for (std::size_t k = 0; k < n; ++k) {
        const long double v = sorted[k];
        const long double above = total - below - v;
        rows[k] = (static_cast<long double>(k) * v - below) + (above - static_cast<long double>(n - 1 - k) * v);
        below += v;
    }
    return rows;
}

long double DistanceCorrPermutationKernel::centredSumOfSquares(const std::vector<long double>& sorted,
                                                               const std::vector<long double>& rowSums) {
    const long double n = static_cast<long double>(sorted.size());
    long double mean = 0;
    for (long double v : sorted) mean += v;
    mean /= n;
    // sum_ij (v_i - v_j)^2 = 2 n sum_i (v_i - mean)^2
    long double deviations = 0;
    for (long double v : sorted) deviations += (v - mean) * (v - mean);
    long double rowSquares = 0;
    long double total = 0;
    for (long double r : rowSums) {
        rowSquares += r * r;
        total += r;
    }
    return 2 * n * deviations - 2 * rowSquares / n + total * total / (n * n);
}

DistanceCorrPermutationKernel::Statistic DistanceCorrPermutationKernel::evaluate(
    const std::vector<std::size_t>& index) {
    if (n_ == 0) throw std::runtime_error("Insufficient data points");
    if (!usable_) throw std::logic_error("The permutation kernel is not usable for these data");
    if (index.size() != n_) throw std::invalid_argument("Permutation of a different length");
    if (zeroStatistic_) return {0.0, true};

    // S2 first: it also checks every entry of the permutation.
    long double s2 = 0;
    for (std::size_t i = 0; i < n_; ++i) {
        const std::size_t source = index[i];
        if (source >= n_) throw std::out_of_range("Permutation entry out of range");
        s2 += xRowSums_[i] * yRowSums_[source];
    }
    const long double halfS1 = precise_ ? sweepPrecise(index)
                                        : sweepLanes(n_, xOrder_.data(), index.data(), yRank_.data(), xSortedD_.data(),
                                                     yCentredD_.data(), laneTree_.data(), laneTree_.size() / 4 - 1);

    const long double n = static_cast<long double>(n_);
    const long double crossSum = 2 * halfS1 - 2 * s2 / n + s3_ / (n * n);
    const double r = static_cast<double>(crossSum / normaliser_);
    return {std::max(0.0, std::min(1.0, r)), false};
}

// Half of S1 in long double: for each case in x order, the signed sums over
// the earlier cases (+1 at or below its y, -1 above) of count, x, y and x*y.
long double DistanceCorrPermutationKernel::sweepPrecise(const std::vector<std::size_t>& index) {
    std::fill(tree_.begin(), tree_.end(), Node{});
    const std::size_t top = tree_.size() - 1;
    Node total;
    long double halfS1 = 0;
    for (std::size_t k = 0; k < n_; ++k) {
        const std::size_t source = index[xOrder_[k]];
        const std::uint32_t rank = yRank_[source];
        const long double xk = xSorted_[k];
        const long double yk = yCentred_[source];

        // Earlier cases with y at or below yk count +1, the others -1.
        Node below;
        for (std::size_t i = rank; i > 0; i &= i - 1) {
            const Node& node = tree_[i];
            below.count += node.count;
            below.x += node.x;
            below.y += node.y;
            below.xy += node.xy;
        }
        const long double wCount = 2 * below.count - total.count;
        const long double wX = 2 * below.x - total.x;
        const long double wY = 2 * below.y - total.y;
        const long double wXY = 2 * below.xy - total.xy;
        halfS1 += wCount * xk * yk - xk * wY - yk * wX + wXY;

        const long double xy = xk * yk;
        for (std::size_t i = rank; i <= top; i += i & (~i + 1)) {
            Node& node = tree_[i];
            node.count += 1;
            node.x += xk;
            node.y += yk;
            node.xy += xy;
        }
        total.count += 1;
        total.x += xk;
        total.y += yk;
        total.xy += xy;
    }
    return halfS1;
}
