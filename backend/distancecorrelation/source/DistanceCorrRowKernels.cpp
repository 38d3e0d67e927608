#include "DistanceCorrRowKernels.h"

#include <cmath>
#include <cstddef>
#include <cstring>

namespace {

// The observed statistics over n x n matrices are bound by memory traffic, so
// the engine computes them in as few passes as it can: the distances in one
// pass, row and column sums in a second, and the centred matrices together
// with every sum of squares and of products in a third. Each number is still
// the result of the same floating-point operations in the same order as the
// step-by-step operations further down (calculateRowMean and the others): row
// sums left to right from 0.0, column sums row by row, products and squares
// added in blocks of four. Only operations whose results do not depend on one
// another run side by side in vector lanes.
//
// The kernels are written once over W lanes of doubles and built twice: W = 4
// with AVX2 for processors that have it, W = 2 with plain SSE2 for any x86-64.
// FMA is never enabled, so no multiplication is fused with an addition.

// The helpers taking or returning vectors are always inlined into the builds
// that use them, so the calling convention of 32-byte vectors never applies
// (GCC notes it at the end of the file, hence no pop).
#pragma GCC diagnostic ignored "-Wpsabi"

template <int W>
struct Lanes;
template <>
struct Lanes<2> {
    typedef double Vec __attribute__((vector_size(16)));
    typedef long long Bits __attribute__((vector_size(16)));
};
template <>
struct Lanes<4> {
    typedef double Vec __attribute__((vector_size(32)));
    typedef long long Bits __attribute__((vector_size(32)));
};

template <int W>
struct Kernels {
    using Vec = typename Lanes<W>::Vec;
    using Bits = typename Lanes<W>::Bits;
    // Rows summed side by side in the row-sum pass: two accumulators of W rows
    // hide the latency of the additions.
    static constexpr std::size_t kGroupRows = 2 * W;

    [[gnu::always_inline]] static inline Vec load(const double* p) {
        Vec v;
        std::memcpy(&v, p, sizeof v);
        return v;
    }
    [[gnu::always_inline]] static inline void store(double* p, const Vec& v) { std::memcpy(p, &v, sizeof v); }

    // |v| by clearing the sign bit, as std::abs does.
    [[gnu::always_inline]] static inline Vec magnitude(const Vec& v) {
        const Bits noSign = Bits{} + 0x7fffffffffffffffLL;
        return reinterpret_cast<Vec>(reinterpret_cast<Bits>(v) & noSign);
    }

    // W vectors holding element j..j+W-1 of W rows -> vector m holds element
    // j+m of every row (lane r: row r).
    [[gnu::always_inline]] static inline void transposeTile(const Vec (&in)[W], Vec (&out)[W]) {
        if constexpr (W == 2) {
            out[0] = __builtin_shufflevector(in[0], in[1], 0, 2);
            out[1] = __builtin_shufflevector(in[0], in[1], 1, 3);
        } else {
            const Vec t0 = __builtin_shufflevector(in[0], in[1], 0, 4, 2, 6);
            const Vec t1 = __builtin_shufflevector(in[0], in[1], 1, 5, 3, 7);
            const Vec t2 = __builtin_shufflevector(in[2], in[3], 0, 4, 2, 6);
            const Vec t3 = __builtin_shufflevector(in[2], in[3], 1, 5, 3, 7);
            out[0] = __builtin_shufflevector(t0, t2, 0, 1, 4, 5);
            out[1] = __builtin_shufflevector(t1, t3, 0, 1, 4, 5);
            out[2] = __builtin_shufflevector(t0, t2, 2, 3, 6, 7);
            out[3] = __builtin_shufflevector(t1, t3, 2, 3, 6, 7);
        }
    }

    // Four vectors holding 4W consecutive terms of a row (W blocks of four) ->
    // lane b holds the block's value ((t0 + t1) + t2) + t3.
    [[gnu::always_inline]] static inline Vec blockValues(const Vec (&terms)[4]) {
        Vec t[4];
        if constexpr (W == 2) {
            t[0] = __builtin_shufflevector(terms[0], terms[2], 0, 2);
            t[1] = __builtin_shufflevector(terms[0], terms[2], 1, 3);
            t[2] = __builtin_shufflevector(terms[1], terms[3], 0, 2);
            t[3] = __builtin_shufflevector(terms[1], terms[3], 1, 3);
        } else {
            transposeTile(terms, t);
        }
        return ((t[0] + t[1]) + t[2]) + t[3];
    }

    // Row i of the distance matrix: |x_i - x_j| below the diagonal (as it is
    // mirrored from row j), |x_j - x_i| above it, 0 on it.
    [[gnu::always_inline]] static inline void distanceRow(const double* x, std::size_t n, std::size_t i, double* out) {
        const double xi = x[i];
        std::size_t j = 0;
        for (; j + W <= i; j += W) store(out + j, magnitude(xi - load(x + j)));
        for (; j < i; ++j) out[j] = std::abs(xi - x[j]);
        out[i] = 0.0;
        for (j = i + 1; j + W <= n; j += W) store(out + j, magnitude(load(x + j) - xi));
        for (; j < n; ++j) out[j] = std::abs(x[j] - xi);
    }

    // Columns [begin, end) of kGroupRows consecutive rows: each row's elements
    // added left to right to its running sum in rowSums, and to the column
    // sums in row order. Over [0, n) with sums of 0.0, the rows' sums.
    [[gnu::always_inline]] static inline void sumRowGroup(const double* const* rows, std::size_t begin, std::size_t end,
                                                          double* rowSums, double* colSums) {
        Vec low = load(rowSums);
        Vec high = load(rowSums + W);
        std::size_t j = begin;
        for (; j + W <= end; j += W) {
            Vec a[W];
            Vec b[W];
            for (int r = 0; r < W; ++r) {
                a[r] = load(rows[r] + j);
                b[r] = load(rows[W + r] + j);
            }
            Vec column = load(colSums + j);
            for (int r = 0; r < W; ++r) column += a[r];
            for (int r = 0; r < W; ++r) column += b[r];
            store(colSums + j, column);
            Vec ta[W];
            Vec tb[W];
            transposeTile(a, ta);
            transposeTile(b, tb);
            for (int m = 0; m < W; ++m) {
                low += ta[m];
                high += tb[m];
            }
        }
        double sums[2 * W];
        for (int r = 0; r < W; ++r) {
            sums[r] = low[r];
            sums[W + r] = high[r];
        }
        for (; j < end; ++j) {
            double column = colSums[j];
            for (std::size_t r = 0; r < kGroupRows; ++r) {
                sums[r] += rows[r][j];
                column += rows[r][j];
            }
            colSums[j] = column;
        }
        for (std::size_t r = 0; r < kGroupRows; ++r) rowSums[r] = sums[r];
    }

    // Columns [begin, end) of one row: added to the column sums, and left to
    // right to the running sum `sum`, which is returned.
    [[gnu::always_inline]] static inline double sumRow(const double* row, std::size_t begin, std::size_t end,
                                                       double sum, double* colSums) {
        std::size_t j = begin;
        for (; j + W <= end; j += W) store(colSums + j, load(colSums + j) + load(row + j));
        for (; j < end; ++j) colSums[j] += row[j];
        for (j = begin; j < end; ++j) sum += row[j];
        return sum;
    }

    // a_j = d_j - rowMean - colMean_j + grandMean, written to a; returns the
    // row's sum of squares in blocks of four, (a0² + a1² + a2² + a3²) each,
    // then the remaining columns one by one.
    [[gnu::always_inline]] static inline double centreRow(const double* d, double rowMean, const double* colMeans,
                                                          double grandMean, std::size_t n, double* a) {
        double sum = 0.0;
        std::size_t j = 0;
        for (; j + 4 * W <= n; j += 4 * W) {
            Vec squares[4];
            for (int k = 0; k < 4; ++k) {
                const Vec v = ((load(d + j + k * W) - rowMean) - load(colMeans + j + k * W)) + grandMean;
                store(a + j + k * W, v);
                squares[k] = v * v;
            }
            const Vec blocks = blockValues(squares);
            for (int b = 0; b < W; ++b) sum += blocks[b];
        }
        for (; j + 4 <= n; j += 4) {
            const double a0 = ((d[j] - rowMean) - colMeans[j]) + grandMean;
            const double a1 = ((d[j + 1] - rowMean) - colMeans[j + 1]) + grandMean;
            const double a2 = ((d[j + 2] - rowMean) - colMeans[j + 2]) + grandMean;
            const double a3 = ((d[j + 3] - rowMean) - colMeans[j + 3]) + grandMean;
            a[j] = a0;
            a[j + 1] = a1;
            a[j + 2] = a2;
            a[j + 3] = a3;
            sum += a0 * a0 + a1 * a1 + a2 * a2 + a3 * a3;
        }
        for (; j < n; ++j) {
            const double v = ((d[j] - rowMean) - colMeans[j]) + grandMean;
            a[j] = v;
            sum += v * v;
        }
        return sum;
    }

    // Adds the products x_j y_j of one row to a running sum: in blocks of
    // four, ((p0 + p1 + p2) + p3) each, then the remaining columns one by one.
    [[gnu::always_inline]] static inline double addRowProducts(double sum, const double* x, const double* y,
                                                               std::size_t n) {
        std::size_t j = 0;
        for (; j + 4 * W <= n; j += 4 * W) {
            Vec products[4];
            for (int k = 0; k < 4; ++k) products[k] = load(x + j + k * W) * load(y + j + k * W);
            const Vec blocks = blockValues(products);
            for (int b = 0; b < W; ++b) sum += blocks[b];
        }
        for (; j + 4 <= n; j += 4) {
            const double p0 = x[j] * y[j];
            const double p1 = x[j + 1] * y[j + 1];
            const double p2 = x[j + 2] * y[j + 2];
            const double p3 = x[j + 3] * y[j + 3];
            sum += ((p0 + p1 + p2) + p3);
        }
        for (; j < n; ++j) sum += x[j] * y[j];
        return sum;
    }
};

// The two builds of every kernel and the choice between them.

template <int W>
struct Build;

template <>
struct Build<2> {
    using K = Kernels<2>;
    static void distanceRow(const double* x, std::size_t n, std::size_t i, double* out) {
        K::distanceRow(x, n, i, out);
    }
    static void sumRowGroup(const double* const* rows, std::size_t begin, std::size_t end, double* rowSums,
                            double* colSums) {
        K::sumRowGroup(rows, begin, end, rowSums, colSums);
    }
    static double sumRow(const double* row, std::size_t begin, std::size_t end, double sum, double* colSums) {
        return K::sumRow(row, begin, end, sum, colSums);
    }
    static double centreRow(const double* d, double rm, const double* cm, double g, std::size_t n, double* a) {
        return K::centreRow(d, rm, cm, g, n, a);
    }
    static double addRowProducts(double sum, const double* x, const double* y, std::size_t n) {
        return K::addRowProducts(sum, x, y, n);
    }
};

template <>
struct Build<4> {
    using K = Kernels<4>;
    __attribute__((target("avx2"))) static void distanceRow(const double* x, std::size_t n, std::size_t i,
                                                            double* out) {
        K::distanceRow(x, n, i, out);
    }
    __attribute__((target("avx2"))) static void sumRowGroup(const double* const* rows, std::size_t begin,
                                                            std::size_t end, double* rowSums, double* colSums) {
        K::sumRowGroup(rows, begin, end, rowSums, colSums);
    }
    __attribute__((target("avx2"))) static double sumRow(const double* row, std::size_t begin, std::size_t end,
                                                         double sum, double* colSums) {
        return K::sumRow(row, begin, end, sum, colSums);
    }
    __attribute__((target("avx2"))) static double centreRow(const double* d, double rm, const double* cm, double g,
                                                            std::size_t n, double* a) {
        return K::centreRow(d, rm, cm, g, n, a);
    }
    __attribute__((target("avx2"))) static double addRowProducts(double sum, const double* x, const double* y,
                                                                 std::size_t n) {
        return K::addRowProducts(sum, x, y, n);
    }
};

template <int W>
DistanceCorrRowKernels tableOf() {
    return {Kernels<W>::kGroupRows, &Build<W>::distanceRow, &Build<W>::sumRowGroup,
            &Build<W>::sumRow,      &Build<W>::centreRow,   &Build<W>::addRowProducts};
}

const DistanceCorrRowKernels& kernels() {
    static const DistanceCorrRowKernels table = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") ? tableOf<4>() : tableOf<2>();
    }();
    return table;
}

}  // namespace

const DistanceCorrRowKernels& DistanceCorrRowKernels::instance() { return kernels(); }
