#include "DistanceRowSums.h"

std::vector<long double> DistanceRowSums::ofAscending(const std::vector<long double>& sorted) {
    std::vector<long double> rows(sorted.size());
    ofAscending(
        sorted.size(), [&](std::size_t k) { return sorted[k]; }, [&](std::size_t k, long double a) { rows[k] = a; });
    return rows;
}

long double DistanceRowSums::centredSumOfSquares(const std::vector<long double>& sorted,
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
