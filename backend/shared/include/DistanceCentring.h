#pragma once
#include <cstddef>

// Centring of a symmetric n x n distance matrix held row after row in one
// array. Row sums are formed in long double.
class DistanceCentring {
public:
    // Double centring with means: A~_ij = ((a_ij - m_i) - m_j) + m, m_i the
    // row means and m the grand mean (the V-statistic's centring).
    static void doubleCentre(double* matrix, std::size_t n);
    // U-centring, for n > 2: A~_ij = a_ij - a_i./(n - 2) - a_.j/(n - 2)
    // + a../((n - 1)(n - 2)) off the diagonal, 0 on it (the U-statistic's).
    static void uCentre(double* matrix, std::size_t n);
};
