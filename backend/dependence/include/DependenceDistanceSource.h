#pragma once
#include <cstddef>
#include <vector>

// One side of a comparison: a single variable or a set of variables taken as
// one vector. Its distance between cases i and j is ||p_i - p_j||^alpha
// (Euclidean). Distances are computed when asked for, never stored.
class DependenceDistanceSource {
public:
    // columns: one vector per variable, all of the same length.
    DependenceDistanceSource(std::vector<std::vector<double>> columns, double exponent);

    std::size_t size() const { return n_; }
    // out[j - from] = distance(i, j) for j = from .. n - 1.
    void distances(std::size_t i, std::size_t from, double* out) const;
    // Every distance, row after row: n * n values.
    std::vector<double> matrix() const;

private:
    std::vector<std::vector<double>> columns_;
    double exponent_;
    std::size_t n_;
};
