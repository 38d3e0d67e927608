#include "DependenceMatrixFreeSums.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "DependenceDistanceSource.h"

namespace {

// Sums in double over blocks of 256 values, four lanes each, the blocks'
// sums in long double: rounding stays at a few units of the last place
// whatever n, and the loops vectorize.
constexpr std::size_t kBlock = 256;

// The sum of term(j) for j in [0, count).
template <class Term>
long double blockSum(std::size_t count, Term term) {
    long double total = 0;
    for (std::size_t start = 0; start < count; start += kBlock) {
        const std::size_t end = std::min(count, start + kBlock);
        double lane[4] = {0, 0, 0, 0};
        std::size_t j = start;
        for (; j + 4 <= end; j += 4)
            for (int l = 0; l < 4; ++l) lane[l] += term(j + l);
        for (; j < end; ++j) lane[0] += term(j);
        total += (lane[0] + lane[1]) + (lane[2] + lane[3]);
    }
    return total;
}

long double blockSum(const double* a, std::size_t count) {
    return blockSum(count, [a](std::size_t j) { return a[j]; });
}

long double blockDot(const double* a, const double* b, std::size_t count) {
    return blockSum(count, [a, b](std::size_t j) { return a[j] * b[j]; });
}

// Adds values to running column sums with Neumaier's compensation, so that
// n additions per column lose nothing that matters.
void addCompensated(double* sum, double* compensation, const double* values, std::size_t count) {
    for (std::size_t j = 0; j < count; ++j) {
        const double s = sum[j];
        const double v = values[j];
        const double t = s + v;
        compensation[j] += std::fabs(s) >= std::fabs(v) ? (s - t) + v : (v - t) + s;
        sum[j] = t;
    }
}

}  // namespace

DependenceMatrixFreeSums::DependenceMatrixFreeSums(const std::vector<const DependenceDistanceSource*>& sources)
    : count_(sources.size()), sums_(sources.size() * sources.size()) {
    const std::size_t n = sources.empty() ? 0 : sources[0]->size();
    for (const auto* s : sources)
        if (s->size() != n) throw std::invalid_argument("Sources of different size");

    // Row sums: the part of each row right of the diagonal in rowsAhead (long
    // double), the part left of it arrives column by column (compensated).
    std::vector<std::vector<long double>> rowsAhead(count_, std::vector<long double>(n, 0.0L));
    std::vector<std::vector<double>> columns(count_, std::vector<double>(n, 0.0));
    std::vector<std::vector<double>> compensation(count_, std::vector<double>(n, 0.0));
    std::vector<std::vector<double>> d(count_, std::vector<double>(n));
    std::vector<long double> s1(count_ * count_, 0.0L);
    for (std::size_t i = 0; i + 1 < n; ++i) {
        const std::size_t from = i + 1;
        const std::size_t count = n - from;
        for (std::size_t a = 0; a < count_; ++a) sources[a]->distances(i, from, d[a].data());
        for (std::size_t a = 0; a < count_; ++a) {
            const double* da = d[a].data();
            rowsAhead[a][i] = blockSum(da, count);
            addCompensated(columns[a].data() + from, compensation[a].data() + from, da, count);
            for (std::size_t b = a; b < count_; ++b) s1[a * count_ + b] += blockDot(da, d[b].data(), count);
        }
    }

    std::vector<std::vector<long double>> rows(count_, std::vector<long double>(n));
    std::vector<long double> totals(count_, 0.0L);
    for (std::size_t a = 0; a < count_; ++a) {
        for (std::size_t i = 0; i < n; ++i) {
            rows[a][i] = rowsAhead[a][i] + (static_cast<long double>(columns[a][i]) + compensation[a][i]);
            totals[a] += rows[a][i];
        }
    }
    for (std::size_t a = 0; a < count_; ++a) {
        for (std::size_t b = a; b < count_; ++b) {
            DistanceSums& s = sums_[a * count_ + b];
            s.s1 = 2 * s1[a * count_ + b];  // each pair i < j stands for (i, j) and (j, i)
            for (std::size_t i = 0; i < n; ++i) s.s2 += rows[a][i] * rows[b][i];
            s.s3 = totals[a] * totals[b];
        }
    }
}

const DistanceSums& DependenceMatrixFreeSums::sums(std::size_t a, std::size_t b) const {
    if (a > b) return sums(b, a);
    return sums_.at(a * count_ + b);
}
