#include "PermutedCrossSums.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>

#include "DistanceRowSums.h"

namespace {

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
    long double extreme = 0;
    for (long double v : values) extreme = std::max(extreme, std::fabs(v));
    return extreme;
}

}  // namespace

PermutedCrossSums::PermutedCrossSums(const std::vector<double>& fixedColumn, const std::vector<double>& shuffledColumn)
    : n_(fixedColumn.size()) {
    if (shuffledColumn.size() != n_) throw std::invalid_argument("Columns of different length");
    if (n_ == 0) return;

    xOrder_ = ascendingOrder(fixedColumn);
    xSorted_ = centredInOrder(fixedColumn, xOrder_);
    const std::vector<long double> xSortedRows = DistanceRowSums::ofAscending(xSorted_);
    xRowSums_.resize(n_);
    for (std::size_t k = 0; k < n_; ++k) xRowSums_[xOrder_[k]] = xSortedRows[k];

    const std::vector<std::size_t> yOrder = ascendingOrder(shuffledColumn);
    const std::vector<long double> ySorted = centredInOrder(shuffledColumn, yOrder);
    const std::vector<long double> ySortedRows = DistanceRowSums::ofAscending(ySorted);
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
    xSquares_ = DistanceRowSums::centredSumOfSquares(xSorted_, xSortedRows);
    ySquares_ = DistanceRowSums::centredSumOfSquares(ySorted, ySortedRows);
}

long double PermutedCrossSums::fixedExtreme() const { return largestMagnitude(xSorted_); }

long double PermutedCrossSums::shuffledExtreme() const { return largestMagnitude(yCentred_); }

void PermutedCrossSums::useDoubleSweep() {
    if (double_) return;
    double_ = true;
    xSortedD_.assign(xSorted_.begin(), xSorted_.end());
    yCentredD_.assign(yCentred_.begin(), yCentred_.end());
    laneTree_.assign(4 * tree_.size(), 0.0);
    tree_.clear();
}

long double PermutedCrossSums::s2(const std::vector<std::size_t>& index) const {
    if (index.size() != n_) throw std::invalid_argument("Permutation of a different length");
    long double s2 = 0;
    for (std::size_t i = 0; i < n_; ++i) {
        const std::size_t source = index[i];
        if (source >= n_) throw std::out_of_range("Permutation entry out of range");
        s2 += xRowSums_[i] * yRowSums_[source];
    }
    return s2;
}

long double PermutedCrossSums::halfS1(const std::vector<std::size_t>& index) {
    if (index.size() != n_) throw std::invalid_argument("Permutation of a different length");
    if (n_ == 0) return 0;
    if (double_)
        return FenwickCrossSweep::halfCrossSumLanes(n_, xOrder_.data(), index.data(), yRank_.data(), xSortedD_.data(),
                                                    yCentredD_.data(), laneTree_.data(), laneTree_.size() / 4 - 1);
    return FenwickCrossSweep::halfCrossSumPrecise(n_, xOrder_.data(), index.data(), yRank_.data(), xSorted_.data(),
                                                  yCentred_.data(), tree_.data(), tree_.size() - 1);
}
