#pragma once
#include <cstddef>
#include <vector>

#include "DistanceSums.h"

// The distance sums of two single variables (distances |x_i - x_j|) in
// O(n log n) time and O(n) memory, without any n x n matrix:
//   - the row sums come from one sort of each variable and prefix sums;
//   - S1 = sum_ij |x_i - x_j| |y_i - y_j| from a merge sort by y of the cases
//     in x order: when two sorted halves are merged, each case of the right
//     half (larger x) meets the left half's cases below and above its y as
//     running sums of count, x, y and x*y;
//   - the variables' own S1 from sum_ij (v_i - v_j)^2 = 2 n sum v^2 - 2 (sum v)^2.
// Values are centred on their means first and every sum is kept in long
// double. A constant variable has exactly zero sums.
class PairDistanceSums {
public:
    PairDistanceSums(const std::vector<double>& x, const std::vector<double>& y);

    std::size_t size() const { return n_; }
    const DistanceSums& cross() const { return cross_; }
    const DistanceSums& xx() const { return xx_; }
    const DistanceSums& yy() const { return yy_; }

private:
    std::size_t n_;
    DistanceSums cross_;
    DistanceSums xx_;
    DistanceSums yy_;
};
