#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "PermutedCrossSums.h"

// The permuted distance correlation of one variable pair in O(n log n) per
// permutation instead of rebuilding and centring an n x n matrix.
//
// With a_ij = |x_i - x_j| and b_ij = |y_i - y_j| the sum of the products of
// the two double-centred matrices is
//     S1 - 2 S2 / n + S3 / n^2,
//     S1 = sum_ij a_ij b_ij,  S2 = sum_i a_i. b_i.,  S3 = a.. b..
// The sums are the shared PermutedCrossSums: row sums from one sort and
// prefix sums, S2 a dot product (the row sums of y move with y), S3 fixed,
// S1 swept in x order with a Fenwick tree over the ranks of y. The sum of
// squares of the centred y matrix does not depend on the permutation either.
// The sums run around the columns' means, in double precision (four lanes,
// vectorized where the processor allows) when the data are well conditioned
// and in long double when extreme values would magnify rounding.
//
// Every statistic comes with a bound on its distance from the matrix recipe's
// value (DistanceCorrPermutationErrorBound): c0() + c1() * value. The kernel
// declines (usable() is false) where it cannot give one: non-finite values,
// data for which a double sum of the recipe could overflow, a distance
// variance too close to the 1e-8 zero threshold to tell which side the
// recipe's falls on, or a bound too wide to be of use. The caller then uses
// the matrix recipe.
class DistanceCorrPermutationKernel {
public:
    struct Statistic {
        double value;
        bool exact;  // bit for bit the matrix recipe's value
    };

    // Above this ratio of extreme products to the centred sums, or where the
    // double sweep's share of the error bound would exceed the next limit,
    // the sweep keeps its sums in long double.
    static constexpr double kDoubleConditionLimit = 1e4;
    static constexpr double kDoubleSweepShareLimit = 1e-9;

    // fixedColumn is the variable held in place, shuffledColumn the one that
    // is permuted; both in case order and of equal length.
    DistanceCorrPermutationKernel(const std::vector<double>& fixedColumn, const std::vector<double>& shuffledColumn);

    bool usable() const { return usable_; }
    std::size_t size() const { return n_; }
    // True when the sums are kept in long double.
    bool precise() const { return precise_; }
    // True when every statistic is an exact 0 (a distance variance below the
    // zero threshold).
    bool alwaysZero() const { return zeroStatistic_; }

    // Statistic of the fixed column against the shuffled column permuted by
    // index: case u takes the shuffled value of case index[u]. A copy of the
    // kernel sweeps on its own, so each thread can use one.
    Statistic evaluate(const std::vector<std::size_t>& index);

    // |evaluate(index).value - recipe value| <= c0() + c1() * value for an
    // inexact statistic; 0 when every statistic is an exact zero.
    double c0() const { return c0_; }
    double c1() const { return c1_; }

private:
    std::size_t n_ = 0;
    bool usable_ = true;
    bool zeroStatistic_ = false;
    bool precise_ = false;
    double c0_ = 0;
    double c1_ = 0;
    long double normaliser_ = 0;  // sqrt of both centred sums of squares
    // S1, S2 and S3 of a permutation (only when the statistics need them).
    std::optional<PermutedCrossSums> sums_;
};
