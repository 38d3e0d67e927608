#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

#include "FenwickCrossSweep.h"

// The sums of a variable pair that a permutation of one of them changes, in
// O(n log n) per permutation and O(n) memory. With a_ij = |x_i - x_j| and
// b_ij = |y_i - y_j| (x fixed, y shuffled):
//     S1 = sum_ij a_ij b_ij     swept with a Fenwick tree (FenwickCrossSweep)
//     S2 = sum_i a_i. b_i.      a dot product: y's row sums move with y
//     S3 = a.. b..              the same for every permutation
// Every centred or double-centred inner product of the two distance matrices
// is a combination of these (V-statistic: S1 - 2 S2 / n + S3 / n^2). Values
// are taken around their column means; the sweep runs in long double until
// useDoubleSweep() switches it to four double lanes.
class PermutedCrossSums {
public:
    // Both columns finite, in case order, of equal length.
    PermutedCrossSums(const std::vector<double>& fixedColumn, const std::vector<double>& shuffledColumn);

    std::size_t size() const { return n_; }
    long double s3() const { return s3_; }
    // n^2 times each column's V-statistic distance variance.
    long double fixedSquares() const { return xSquares_; }
    long double shuffledSquares() const { return ySquares_; }
    // The largest distance of a value from its column's mean.
    long double fixedExtreme() const;
    long double shuffledExtreme() const;

    // The sweep in double from now on (for well-conditioned data).
    void useDoubleSweep();
    bool doubleSweep() const { return double_; }

    // S2 for the permutation (case u takes the y of case index[u]); throws
    // std::out_of_range for an entry beyond the cases.
    long double s2(const std::vector<std::size_t>& index) const;
    // Half of S1 for the permutation.
    long double halfS1(const std::vector<std::size_t>& index);

private:
    std::size_t n_ = 0;
    std::vector<std::size_t> xOrder_;    // cases in ascending x
    std::vector<long double> xSorted_;   // x in that order, centred
    std::vector<long double> xRowSums_;  // a_i. in case order
    std::vector<std::uint32_t> yRank_;   // 1-based dense rank of y, case order
    std::vector<long double> yCentred_;  // y in case order, centred
    std::vector<long double> yRowSums_;  // b_i. in case order
    long double s3_ = 0;
    long double xSquares_ = 0;
    long double ySquares_ = 0;
    std::vector<FenwickCrossSweep::Node> tree_;

    bool double_ = false;
    std::vector<double> xSortedD_;
    std::vector<double> yCentredD_;
    std::vector<double> laneTree_;
};
