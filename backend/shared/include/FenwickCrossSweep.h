#pragma once
#include <cstddef>
#include <cstdint>

// Half of S1 = sum_ij |x_i - x_j| |y_i - y_j| for one permutation of y, swept
// once in x order with a Fenwick tree over the ranks of y. For each case in x
// order it takes the signed sums over the earlier cases (+1 at or below its
// rank, -1 above) of count, x, y and x*y. O(n log n) per permutation.
//
// Inputs: xOrder the cases in ascending x; index the permutation (case u takes
// the y of case index[u]); yRank the 1-based dense rank of each case's y;
// xSorted the (centred) x in ascending order; yCentred the (centred) y in case
// order. The tree has top + 1 nodes, top the largest rank.
class FenwickCrossSweep {
public:
    // Fenwick node of the long double sweep.
    struct Node {
        long double count = 0;
        long double x = 0;
        long double y = 0;
        long double xy = 0;
    };

    // Double sums, four lanes (count, x, y, x*y) per node: tree holds
    // 4 * (top + 1) doubles. Vectorized with AVX2 where the processor has it.
    static double halfCrossSumLanes(std::size_t n, const std::size_t* xOrder, const std::size_t* index,
                                    const std::uint32_t* yRank, const double* xSorted, const double* yCentred,
                                    double* tree, std::size_t top);

    // The same in long double: for data whose extreme values would magnify
    // rounding in double. tree holds top + 1 nodes.
    static long double halfCrossSumPrecise(std::size_t n, const std::size_t* xOrder, const std::size_t* index,
                                           const std::uint32_t* yRank, const long double* xSorted,
                                           const long double* yCentred, Node* tree, std::size_t top);
};
