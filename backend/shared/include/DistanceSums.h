#pragma once
#include <cstddef>

// The three sums from which every centred inner product of two distance
// matrices A = (a_ij) and B = (b_ij) (zero diagonals) follows:
//     s1 = sum_ij a_ij b_ij,  s2 = sum_i a_i. b_i.,  s3 = a.. b..
// With A = B they give the squared norm of one centred matrix.
struct DistanceSums {
    long double s1 = 0;
    long double s2 = 0;
    long double s3 = 0;

    // The V-statistic (double centring with means): (1/n^2) sum_ij A~_ij B~_ij
    //     = (s1 - 2 s2 / n + s3 / n^2) / n^2.
    long double vProduct(std::size_t n) const;
    // The U-statistic (U-centring, zero diagonal), defined for n > 3:
    //     1/(n(n-3)) sum_{i!=j} A~_ij B~_ij
    //     = (s1 - 2 s2 / (n - 2) + s3 / ((n - 1)(n - 2))) / (n (n - 3)).
    long double uProduct(std::size_t n) const;
};
