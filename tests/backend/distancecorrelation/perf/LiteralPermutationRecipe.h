#pragma once
// An independent transcription of the matrix recipe for permuted statistics,
// of the shuffle and of the p-value and percentile interval, written from the
// procedure's description and kept apart from the engine so that the fast
// kernel can be proved against it.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace literal {

using Matrix = std::vector<std::vector<double>>;

// The double-centred distance matrix of one column as the observed statistics
// build it: row means, column means, grand mean, then d - r_i - c_j + g.
inline Matrix centred(const std::vector<double>& x) {
    const std::size_t n = x.size();
    Matrix d(n);
    for (auto& row : d) row.assign(n, 0.0);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 1; j < n; ++j) d[i][j] = d[j][i] = std::abs(x[j] - x[i]);
    std::vector<double> rowMean(n, 0.0), colMean(n, 0.0);
    double total = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        double sum = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
            sum += d[i][j];
            colMean[j] += d[i][j];
        }
        rowMean[i] = sum / static_cast<double>(n);
        total += sum;
    }
    for (double& c : colMean) c /= static_cast<double>(n);
    const double grand = n == 0 ? 0.0 : total / static_cast<double>(n * n);
    Matrix a(n);
    for (auto& row : a) row.resize(n);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) a[i][j] = d[i][j] - rowMean[i] - colMean[j] + grand;
    return a;
}

// The permuted statistic: rebuild the distance matrix, means and centred
// matrix of y, then three sums over all cells.
inline double statistic(const Matrix& centredX, const std::vector<double>& y) {
    const std::size_t n = y.size();
    if (n == 0) throw std::runtime_error("Insufficient data points");
    Matrix dist(n);
    for (auto& row : dist) row.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        dist[i][i] = 0.0;
        for (std::size_t j = i + 1; j < n; ++j) dist[i][j] = dist[j][i] = std::abs(y[i] - y[j]);
    }
    std::vector<double> rowMeans(n), colMeans(n, 0.0);
    double total = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        double rowSum = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
            rowSum += dist[i][j];
            colMeans[j] += dist[i][j];
        }
        rowMeans[i] = rowSum / static_cast<double>(n);
        total += rowSum;
    }
    const std::uint64_t cells = static_cast<std::uint64_t>(n) * n;
    const double grand = total / static_cast<double>(cells);
    for (double& c : colMeans) c /= static_cast<double>(n);
    double aa = 0.0, bb = 0.0, ab = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            const double b = dist[i][j] - rowMeans[i] - colMeans[j] + grand;
            const double a = centredX[i][j];
            aa += a * a;
            bb += b * b;
            ab += a * b;
        }
    }
    const double dVarX = aa / static_cast<double>(cells);
    const double dVarY = bb / static_cast<double>(cells);
    if (dVarX <= 1e-8 || dVarY <= 1e-8) return 0.0;
    const double r = (ab / static_cast<double>(cells)) / std::sqrt(dVarX * dVarY);
    return std::max(0.0, std::min(1.0, r));
}

// Backward Fisher-Yates with raw MT19937 outputs reduced by plain remainder.
inline void shuffle(std::vector<std::size_t>& index, std::mt19937& engine) {
    const std::size_t n = index.size();
    for (std::size_t u = 0; u < n; ++u) index[u] = u;
    for (std::size_t s = 0; s + 1 < n; ++s) {
        const std::size_t m = n - 1 - s;
        const std::uint32_t r = static_cast<std::uint32_t>(engine());
        std::swap(index[m], index[r % (m + 1)]);
    }
}

inline std::vector<double> permuted(const std::vector<double>& y, const std::vector<std::size_t>& index) {
    std::vector<double> out(y.size());
    for (std::size_t u = 0; u < y.size(); ++u) out[u] = y[index[u]];
    return out;
}

struct Selection {
    std::size_t low;
    std::size_t high;
};

inline Selection selection(double alpha, std::size_t count) {
    const double last = static_cast<double>(count - 1);
    return {static_cast<std::size_t>(alpha / 2.0 * last), static_cast<std::size_t>((1.0 - alpha / 2.0) * last)};
}

inline double percentile(const std::vector<double>& v, double percent, std::size_t k) {
    if (v.empty()) return 0.0;
    if (v.size() == 1) return v[0];
    const double position = percent / 100.0 * static_cast<double>(v.size() - 1);
    if (position == static_cast<double>(k)) return v[k];
    return v[k] + (position - static_cast<double>(k)) * (v[k + 1] - v[k]);
}

struct Outcome {
    double pValue;
    double lower;
    double upper;
};

inline double round4(double x) { return std::round(x * 10000.0) / 10000.0; }

// p-value (share of statistics >= observed) and the percentile interval read
// from the partially ordered vector, unrounded.
inline Outcome rawOutcome(std::vector<double> stats, double observed, double alpha) {
    if (stats.empty()) return {0.0, 0.0, 0.0};
    const Selection s = selection(alpha, stats.size());
    std::nth_element(stats.begin(), stats.begin() + static_cast<std::ptrdiff_t>(s.low), stats.end());
    const double lower = percentile(stats, 100.0 * alpha / 2.0, s.low);
    std::nth_element(stats.begin() + static_cast<std::ptrdiff_t>(s.low),
                     stats.begin() + static_cast<std::ptrdiff_t>(s.high), stats.end());
    const double upper = percentile(stats, (1.0 - alpha / 2.0) * 100.0, s.high);
    std::size_t count = 0;
    for (double v : stats)
        if (v >= observed) ++count;
    return {static_cast<double>(count) / static_cast<double>(stats.size()), lower, upper};
}

// The same, rounded to 4 decimals as the records hold them.
inline Outcome outcome(std::vector<double> stats, double observed, double alpha) {
    const Outcome raw = rawOutcome(std::move(stats), observed, alpha);
    return {round4(raw.pValue), round4(raw.lower), round4(raw.upper)};
}

// The whole permutation test of the procedure, written out: for p columns the
// pairs (0,1), (0,2), ..., (1,2), ...; in each the later column is shuffled
// N times with the pair's next N * (n - 1) numbers of one MT19937 stream
// seeded with the low 32 bits of the seed, the statistic computed against the
// earlier column's centred matrix, and the unrounded outcome taken.
inline std::vector<Outcome> permutationTest(const std::vector<std::vector<double>>& columns,
                                            const std::vector<double>& observed, std::uint64_t seed,
                                            std::uint64_t permutations, double alpha) {
    std::mt19937 engine(static_cast<std::uint32_t>(seed & 0xFFFFFFFFULL));
    std::vector<Outcome> outcomes;
    std::size_t k = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Matrix a = centred(columns[i]);
        for (std::size_t j = i + 1; j < columns.size(); ++j, ++k) {
            std::vector<std::size_t> index(columns[j].size());
            std::vector<double> stats(permutations);
            for (double& s : stats) {
                shuffle(index, engine);
                s = statistic(a, permuted(columns[j], index));
            }
            outcomes.push_back(rawOutcome(stats, observed[k], alpha));
        }
    }
    return outcomes;
}

}  // namespace literal
