#pragma once
#include <cstddef>
#include <vector>

#include "DependenceSettings.h"

class DependenceDistanceSource;

// The permuted statistic where only matrices serve (sets of variables, an
// exponent other than 1, partial distance correlation): the two centred
// distance matrices P (of x) and Q (of y) are built once, V- or U-centred;
// given z both are first projected off z's U-centred matrix, as energy's
// pdcov.test does. A replicate is sum_ij P_ij Q_{index_i index_j}: O(n^2).
class DependenceMatrixPermutation {
public:
    DependenceMatrixPermutation(const DependenceDistanceSource& x, const DependenceDistanceSource& y,
                                const DependenceDistanceSource* z, DependenceStatistic statistic);

    // How many n x n matrices exist at once while they are built.
    static unsigned peakMatrices(bool partial) { return partial ? 3 : 2; }

    double statistic(const std::vector<std::size_t>& index) const;
    // sqrt(sum P^2 sum Q^2): the size of every statistic.
    double scale() const { return scale_; }

private:
    std::size_t n_;
    std::vector<double> p_;
    std::vector<double> q_;
    double scale_ = 0;
};
