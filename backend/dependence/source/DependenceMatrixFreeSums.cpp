#include "DependenceMatrixFreeSums.h"

#include <stdexcept>

#include "DependenceDistanceSource.h"

DependenceMatrixFreeSums::DependenceMatrixFreeSums(const std::vector<const DependenceDistanceSource*>& sources)
    : count_(sources.size()), sums_(sources.size() * sources.size()) {
    const std::size_t n = sources.empty() ? 0 : sources[0]->size();
    for (const auto* s : sources)
        if (s->size() != n) throw std::invalid_argument("Sources of different size");

    std::vector<std::vector<long double>> rows(count_, std::vector<long double>(n, 0.0L));
    std::vector<std::vector<double>> d(count_, std::vector<double>(n));
    std::vector<long double> s1(count_ * count_, 0.0L);
    std::vector<long double> own(count_);
    for (std::size_t i = 0; i + 1 < n; ++i) {
        const std::size_t from = i + 1;
        const std::size_t count = n - from;
        for (std::size_t a = 0; a < count_; ++a) sources[a]->distances(i, from, d[a].data());
        for (std::size_t a = 0; a < count_; ++a) {
            long double sum = 0;
            long double* column = rows[a].data() + from;
            const double* da = d[a].data();
            for (std::size_t j = 0; j < count; ++j) {
                sum += da[j];
                column[j] += da[j];
            }
            rows[a][i] += sum;
            for (std::size_t b = a; b < count_; ++b) {
                const double* db = d[b].data();
                long double products = 0;
                for (std::size_t j = 0; j < count; ++j) products += static_cast<long double>(da[j]) * db[j];
                s1[a * count_ + b] += products;
            }
        }
    }

    std::vector<long double> totals(count_, 0.0L);
    for (std::size_t a = 0; a < count_; ++a)
        for (long double r : rows[a]) totals[a] += r;
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
