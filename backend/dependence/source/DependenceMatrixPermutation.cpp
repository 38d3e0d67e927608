#include "DependenceMatrixPermutation.h"

#include <cmath>

#include "DependenceDistanceSource.h"
#include "DistanceCentring.h"

namespace {

long double innerProduct(const std::vector<double>& a, const std::vector<double>& b) {
    long double sum = 0;
    for (std::size_t k = 0; k < a.size(); ++k) sum += static_cast<long double>(a[k]) * b[k];
    return sum;
}

// a - (<a, c> / <c, c>) c, in place; a unchanged when c is zero.
void projectOff(std::vector<double>& a, const std::vector<double>& c, long double cc) {
    if (!(cc > 0)) return;
    const double beta = static_cast<double>(innerProduct(a, c) / cc);
    for (std::size_t k = 0; k < a.size(); ++k) a[k] -= beta * c[k];
}

}  // namespace

DependenceMatrixPermutation::DependenceMatrixPermutation(const DependenceDistanceSource& x,
                                                         const DependenceDistanceSource& y,
                                                         const DependenceDistanceSource* z,
                                                         DependenceStatistic statistic)
    : n_(x.size()) {
    const auto centre = [&](std::vector<double>& m) {
        if (statistic == DependenceStatistic::V)
            DistanceCentring::doubleCentre(m.data(), n_);
        else
            DistanceCentring::uCentre(m.data(), n_);
    };
    p_ = x.matrix();
    centre(p_);
    q_ = y.matrix();
    centre(q_);
    if (z != nullptr) {
        std::vector<double> c = z->matrix();
        centre(c);
        const long double cc = innerProduct(c, c);
        projectOff(p_, c, cc);
        projectOff(q_, c, cc);
    }
    scale_ = static_cast<double>(std::sqrt(innerProduct(p_, p_) * innerProduct(q_, q_)));
}

double DependenceMatrixPermutation::statistic(const std::vector<std::size_t>& index) const {
    double total = 0;
    for (std::size_t i = 0; i < n_; ++i) {
        const double* p = p_.data() + i * n_;
        const double* q = q_.data() + index[i] * n_;
        double row[4] = {0, 0, 0, 0};
        std::size_t j = 0;
        for (; j + 4 <= n_; j += 4) {
            row[0] += p[j] * q[index[j]];
            row[1] += p[j + 1] * q[index[j + 1]];
            row[2] += p[j + 2] * q[index[j + 2]];
            row[3] += p[j + 3] * q[index[j + 3]];
        }
        for (; j < n_; ++j) row[0] += p[j] * q[index[j]];
        total += (row[0] + row[1]) + (row[2] + row[3]);
    }
    return total;
}
