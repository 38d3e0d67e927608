#include "DistanceCorrPermutationLiteral.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "CpuClones.h"
#include "DistanceCorrAlgo.h"

namespace {

typedef double Quad __attribute__((vector_size(4 * sizeof(double))));
typedef long long QuadBits __attribute__((vector_size(4 * sizeof(long long))));

// The helpers take and give vectors by reference only, so no vector is ever
// passed by value between functions built for different instruction sets.
[[gnu::always_inline]] inline void load(Quad& v, const double* p) { std::memcpy(&v, p, sizeof v); }

[[gnu::always_inline]] inline void store(double* p, const Quad& v) { std::memcpy(p, &v, sizeof v); }

// d = |a - b|, the sign bit cleared as std::abs does.
[[gnu::always_inline]] inline void distance(Quad& d, const Quad& a, const Quad& b) {
    const QuadBits noSign = QuadBits{} + 0x7fffffffffffffffLL;
    d = reinterpret_cast<Quad>(reinterpret_cast<QuadBits>(a - b) & noSign);
}

// The recipe for four permutations side by side. y holds the permuted values
// four to a case. Writes the row means (four to a case) and, into sums, the
// four sums of b*b, the four sums of a*b and the sum of a*a. The diagonal
// distance is 0.0, which changes no row sum, so the row sums skip it.
// Cloned for AVX2, with a plain SSE2 version for any other x86-64; FMA is
// never enabled.
DC_AVX2_CLONES void literalLanes(std::size_t n, const double* const* aRows, const double* y, double* rowMeans,
                                 double* sums) {
    const double count = static_cast<double>(n);
    Quad total = {0.0, 0.0, 0.0, 0.0};
    Quad d;
    Quad yj;
    std::size_t i = 0;
    // Two rows at a time, each summed left to right on its own.
    for (; i + 2 <= n; i += 2) {
        Quad y0;
        Quad y1;
        load(y0, y + 4 * i);
        load(y1, y + 4 * (i + 1));
        Quad s0 = {0.0, 0.0, 0.0, 0.0};
        Quad s1 = {0.0, 0.0, 0.0, 0.0};
        for (std::size_t j = 0; j < i; ++j) {
            load(yj, y + 4 * j);
            distance(d, y0, yj);
            s0 += d;
            distance(d, y1, yj);
            s1 += d;
        }
        distance(d, y1, y0);
        s1 += d;
        distance(d, y0, y1);
        s0 += d;
        for (std::size_t j = i + 2; j < n; ++j) {
            load(yj, y + 4 * j);
            distance(d, y0, yj);
            s0 += d;
            distance(d, y1, yj);
            s1 += d;
        }
        store(rowMeans + 4 * i, s0 / count);
        store(rowMeans + 4 * (i + 1), s1 / count);
        total += s0;
        total += s1;
    }
    if (i < n) {
        Quad y0;
        load(y0, y + 4 * i);
        Quad s0 = {0.0, 0.0, 0.0, 0.0};
        for (std::size_t j = 0; j < i; ++j) {
            load(yj, y + 4 * j);
            distance(d, y0, yj);
            s0 += d;
        }
        store(rowMeans + 4 * i, s0 / count);
        total += s0;
    }

    const Quad grand = total / static_cast<double>(n * n);
    const Quad zero = {0.0, 0.0, 0.0, 0.0};
    Quad bb = zero;
    Quad ab = zero;
    double aa = 0.0;
    Quad rj;
    for (i = 0; i < n; ++i) {
        const double* a = aRows[i];
        Quad yi;
        Quad ri;
        load(yi, y + 4 * i);
        load(ri, rowMeans + 4 * i);
        for (std::size_t j = 0; j < n; ++j) {
            if (j == i) {
                d = zero;
            } else {
                load(yj, y + 4 * j);
                distance(d, yi, yj);
            }
            load(rj, rowMeans + 4 * j);
            const Quad b = ((d - ri) - rj) + grand;
            aa += a[j] * a[j];
            bb += b * b;
            ab += a[j] * b;
        }
    }
    store(sums, bb);
    store(sums + 4, ab);
    sums[8] = aa;
}

}  // namespace

DistanceCorrPermutationLiteral::DistanceCorrPermutationLiteral(const Matrix& centredX,
                                                               const std::vector<double>& shuffled)
    : shuffled_(shuffled), n_(shuffled.size()) {
    if (centredX.size() != n_) throw std::runtime_error("Matrix dimension mismatch");
    rows_.reserve(n_);
    for (const auto& row : centredX) {
        if (row.size() != n_) throw std::runtime_error("Matrix dimension mismatch");
        rows_.push_back(row.data());
    }
    lanes_.assign(kLanes * n_, 0.0);
    rowMeans_.assign(kLanes * n_, 0.0);
}

void DistanceCorrPermutationLiteral::evaluate(const std::vector<std::size_t>* const* indices, std::size_t count,
                                              double* out) {
    if (n_ == 0) throw std::runtime_error("Insufficient data points");
    if (count == 0 || count > kLanes) throw std::invalid_argument("One to four permutations at a time");
    for (std::size_t l = 0; l < kLanes; ++l) {
        // Unused lanes repeat the first permutation.
        const std::vector<std::size_t>& index = *indices[l < count ? l : 0];
        if (index.size() != n_) throw std::invalid_argument("Permutation of a different length");
        for (std::size_t u = 0; u < n_; ++u) {
            if (index[u] >= n_) throw std::out_of_range("Permutation entry out of range");
            lanes_[kLanes * u + l] = shuffled_[index[u]];
        }
    }
    double sums[2 * kLanes + 1];
    literalLanes(n_, rows_.data(), lanes_.data(), rowMeans_.data(), sums);
    if (!haveSumAA_) {
        sumAA_ = sums[2 * kLanes];
        haveSumAA_ = true;
    }

    const double cells = static_cast<double>(n_ * n_);
    const double dVarX = sumAA_ / cells;
    for (std::size_t l = 0; l < count; ++l) {
        const double dVarY = sums[l] / cells;
        if (dVarX <= DistanceCorrAlgo::EPSILON || dVarY <= DistanceCorrAlgo::EPSILON) {
            out[l] = 0.0;
            continue;
        }
        const double r = (sums[kLanes + l] / cells) / std::sqrt(dVarX * dVarY);
        // First the smaller of 1 and r, then the larger of 0 and that: a NaN
        // ratio gives 1.
        out[l] = std::max(0.0, std::min(1.0, r));
    }
}

double DistanceCorrPermutationLiteral::evaluate(const std::vector<std::size_t>& index) {
    const std::vector<std::size_t>* one = &index;
    double value = 0.0;
    evaluate(&one, 1, &value);
    return value;
}
