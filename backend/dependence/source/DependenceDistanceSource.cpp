#include "DependenceDistanceSource.h"

#include <cmath>
#include <stdexcept>

DependenceDistanceSource::DependenceDistanceSource(std::vector<std::vector<double>> columns, double exponent)
    : columns_(std::move(columns)), exponent_(exponent), n_(columns_.empty() ? 0 : columns_[0].size()) {
    if (columns_.empty()) throw std::invalid_argument("A distance source needs at least one column");
    for (const auto& c : columns_)
        if (c.size() != n_) throw std::invalid_argument("Columns of different length");
}

void DependenceDistanceSource::distances(std::size_t i, std::size_t from, double* out) const {
    const std::size_t count = from < n_ ? n_ - from : 0;
    if (columns_.size() == 1) {
        const double* x = columns_[0].data() + from;
        const double xi = columns_[0][i];
        for (std::size_t j = 0; j < count; ++j) out[j] = std::fabs(xi - x[j]);
    } else {
        for (std::size_t j = 0; j < count; ++j) out[j] = 0.0;
        for (const auto& c : columns_) {
            const double* x = c.data() + from;
            const double xi = c[i];
            for (std::size_t j = 0; j < count; ++j) {
                const double d = xi - x[j];
                out[j] += d * d;
            }
        }
        for (std::size_t j = 0; j < count; ++j) out[j] = std::sqrt(out[j]);
    }
    if (exponent_ != 1.0)
        for (std::size_t j = 0; j < count; ++j) out[j] = std::pow(out[j], exponent_);
}

std::vector<double> DependenceDistanceSource::matrix() const {
    std::vector<double> m(n_ * n_);
    for (std::size_t i = 0; i < n_; ++i) distances(i, 0, m.data() + i * n_);
    return m;
}
