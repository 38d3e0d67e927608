#include "DistanceCentring.h"

#include <vector>

namespace {

// Row sums (the column sums of a symmetric matrix) and their total.
std::vector<long double> rowSums(const double* matrix, std::size_t n, long double& total) {
    std::vector<long double> sums(n, 0.0L);
    total = 0;
    for (std::size_t i = 0; i < n; ++i) {
        long double sum = 0;
        const double* row = matrix + i * n;
        for (std::size_t j = 0; j < n; ++j) sum += row[j];
        sums[i] = sum;
        total += sum;
    }
    return sums;
}

// A~_ij = ((a_ij - r_i) - r_j) + g, and d on the diagonal when zeroDiagonal.
void centre(double* matrix, std::size_t n, const std::vector<double>& r, double g, bool zeroDiagonal) {
    for (std::size_t i = 0; i < n; ++i) {
        double* row = matrix + i * n;
        for (std::size_t j = 0; j < n; ++j) row[j] = ((row[j] - r[i]) - r[j]) + g;
        if (zeroDiagonal) row[i] = 0.0;
    }
}

}  // namespace

void DistanceCentring::doubleCentre(double* matrix, std::size_t n) {
    if (n == 0) return;
    long double total = 0;
    const std::vector<long double> sums = rowSums(matrix, n, total);
    const long double m = static_cast<long double>(n);
    std::vector<double> means(n);
    for (std::size_t i = 0; i < n; ++i) means[i] = static_cast<double>(sums[i] / m);
    centre(matrix, n, means, static_cast<double>(total / (m * m)), false);
}

void DistanceCentring::uCentre(double* matrix, std::size_t n) {
    if (n < 3) return;
    long double total = 0;
    const std::vector<long double> sums = rowSums(matrix, n, total);
    const long double m = static_cast<long double>(n);
    std::vector<double> terms(n);
    for (std::size_t i = 0; i < n; ++i) terms[i] = static_cast<double>(sums[i] / (m - 2));
    centre(matrix, n, terms, static_cast<double>(total / ((m - 1) * (m - 2))), true);
}
