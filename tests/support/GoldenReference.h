#pragma once
// A small, separate implementation of the statistics that the end-to-end
// tests use to check every number of the expected documents. It shares no
// code with the procedure and computes the distance statistics another way:
// from pairwise sums instead of double-centred matrices.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace goldenref {

using Column = std::vector<double>;

// Half away from zero, 4 decimals: what the tables show.
inline double round4(double x) { return std::round(x * 10000.0) / 10000.0; }

// Cases with a missing value (NaN here) in any analysis column, or in the ID
// column when there is one, are dropped everywhere.
inline void dropIncompleteCases(std::vector<Column>& columns, Column* ids) {
    const std::size_t n = columns.empty() ? 0 : columns[0].size();
    std::vector<Column> keptColumns(columns.size());
    Column keptIds;
    for (std::size_t c = 0; c < n; ++c) {
        bool complete = !(ids && std::isnan((*ids)[c]));
        for (const Column& col : columns) complete = complete && !std::isnan(col[c]);
        if (!complete) continue;
        for (std::size_t v = 0; v < columns.size(); ++v) keptColumns[v].push_back(columns[v][c]);
        if (ids) keptIds.push_back((*ids)[c]);
    }
    columns = keptColumns;
    if (ids) *ids = keptIds;
}

inline double mean(const Column& x) {
    double sum = 0.0;
    for (double v : x) sum += v;
    return sum / static_cast<double>(x.size());
}

// Sample standard deviation about a given centre.
inline double sdAbout(const Column& x, double centre) {
    double sum = 0.0;
    for (double v : x) sum += (v - centre) * (v - centre);
    return std::sqrt(sum / static_cast<double>(x.size() - 1));
}

// Median of an already sorted list.
inline double sortedMedian(const Column& s) {
    const std::size_t n = s.size();
    if (n == 0) return 0.0;
    return n % 2 == 1 ? s[n / 2] : (s[n / 2 - 1] + s[n / 2]) / 2.0;
}

// The rescalings a NORMALIZATION keyword asks for.
inline Column rescale(const Column& x, const std::string& kind) {
    Column out = x;
    if (kind == "NONE") return out;
    if (kind == "MINMAX") {
        const double lo = *std::min_element(x.begin(), x.end());
        const double hi = *std::max_element(x.begin(), x.end());
        const double range = std::max(hi - lo, 1e-8);
        for (double& v : out) v = (v - lo) / range;
    } else if (kind == "ZSCORE") {
        const double m = mean(x);
        const double s = std::max(sdAbout(x, m), 1e-8);
        for (double& v : out) v = (v - m) / s;
    } else if (kind == "ROBUST") {
        // Median and Tukey's hinges: the middle value of an odd count is in neither half.
        Column sorted = x;
        std::sort(sorted.begin(), sorted.end());
        const std::size_t n = sorted.size();
        const Column lower(sorted.begin(), sorted.begin() + static_cast<long>(n / 2));
        const Column upper(sorted.begin() + static_cast<long>((n + 1) / 2), sorted.end());
        const double med = sortedMedian(sorted);
        double iqr = sortedMedian(upper) - sortedMedian(lower);
        if (iqr == 0.0) iqr = 1e-8;
        for (double& v : out) v = (v - med) / iqr;
    } else if (kind == "LOG") {
        for (double& v : out) v = std::log(1.0 + v);
    } else {
        throw std::invalid_argument("unknown rescaling " + kind);
    }
    return out;
}

// Squared-scale V-statistic distance covariance from pairwise sums, with
// a_ij = |x_i - x_j| and b_ij = |y_i - y_j|:
//   dCov = S1/n^2 - 2 S2/n^3 + S3/n^4,
//   S1 = sum a_ij b_ij, S2 = sum_i (sum_j a_ij)(sum_j b_ij), S3 = (sum a)(sum b).
inline double dCov(const Column& x, const Column& y) {
    const std::size_t n = x.size();
    double s1 = 0.0, s2 = 0.0, totalA = 0.0, totalB = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        double rowA = 0.0, rowB = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
            const double a = std::fabs(x[i] - x[j]);
            const double b = std::fabs(y[i] - y[j]);
            s1 += a * b;
            rowA += a;
            rowB += b;
        }
        s2 += rowA * rowB;
        totalA += rowA;
        totalB += rowB;
    }
    const double nn = static_cast<double>(n);
    return s1 / (nn * nn) - 2.0 * s2 / (nn * nn * nn) + totalA * totalB / (nn * nn * nn * nn);
}

inline double dVar(const Column& x) { return dCov(x, x); }

// The observed statistic: dCov / sqrt(dVarX dVarY) in [0, 1], 0 when a
// variance (or their geometric mean) is below 1e-8.
inline double dCor(const Column& x, const Column& y) {
    const double vx = dVar(x), vy = dVar(y);
    if (!(vx >= 1e-8 && vy >= 1e-8)) return 0.0;
    const double s = std::sqrt(vx * vy);
    if (!(s >= 1e-8)) return 0.0;
    return std::min(1.0, std::max(0.0, dCov(x, y) / s));
}

// The permuted statistic treats a variance of 1e-8 or less as zero.
inline double permutedDCor(const Column& x, const Column& y) {
    const double vx = dVar(x), vy = dVar(y);
    if (vx <= 1e-8 || vy <= 1e-8) return 0.0;
    const double r = dCov(x, y) / std::sqrt(vx * vy);
    return std::max(0.0, std::min(r, 1.0));
}

// Critical values of the standard normal distribution: the 0.975 and 0.95
// quantiles. Reference values, 40 digits with mpmath as sqrt(2)*erfinv(2p-1):
// 1.95996398454005423552... and 1.64485362695147271486...; the last-digit
// differences are far below what rounding to 4 decimals can show.
constexpr double kZ95 = 1.959963984540054;
constexpr double kZ90 = 1.6448536269514722;
// The 0.999995 quantile (CILEVEL=99.999), from the same mpmath evaluation.
constexpr double kZ99999 = 4.417173413469022;

struct Interval {
    double lower = 0.0;
    double upper = 0.0;
};

// Fisher-z interval of a dCor with se = 1/sqrt(n - 3); n - 3 is taken as an
// unsigned 64-bit number, so n < 3 gives a huge count and a collapsed interval.
inline Interval fisherInterval(double r, std::uint64_t n, double zcrit) {
    r = std::min(std::max(r, 1e-8), 0.99999999);
    const double z = std::atanh(r);
    const double se = 1.0 / std::sqrt(static_cast<double>(n - 3));
    return {round4(std::max(0.0, std::tanh(z - zcrit * se))), round4(std::min(1.0, std::tanh(z + zcrit * se)))};
}

struct PermutationResult {
    double pValue = 0.0;
    double lower = 0.0;
    double upper = 0.0;
};

// Interpolated percentile on the vector as the selection left it.
inline double percentileAt(const Column& v, double percent, std::size_t k) {
    if (v.empty()) return 0.0;
    if (v.size() == 1) return v[0];
    const double position = percent / 100.0 * static_cast<double>(v.size() - 1);
    if (position == static_cast<double>(k) || k + 1 >= v.size()) return v[k];
    return v[k] + (position - static_cast<double>(k)) * (v[k + 1] - v[k]);
}

// The seeded permutation test of every pair (i < j, in order): the later
// variable is shuffled by a backwards Fisher-Yates walk driven by raw
// MT19937 outputs (r mod (m + 1), no rejection), the stream running on from
// pair to pair and permutation to permutation.
inline std::vector<PermutationResult> permutationTest(const std::vector<Column>& columns, double seed,
                                                      double maxIterations, double alpha) {
    const auto iterations = static_cast<std::uint64_t>(maxIterations);
    const auto fullSeed = static_cast<std::uint64_t>(seed);
    std::mt19937 engine(static_cast<std::uint32_t>(fullSeed & 0xffffffffu));
    const std::size_t n = columns.empty() ? 0 : columns[0].size();
    std::vector<PermutationResult> results;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        for (std::size_t j = i + 1; j < columns.size(); ++j) {
            const double observed = dCor(columns[i], columns[j]);
            Column stats;
            for (std::uint64_t t = 0; t < iterations; ++t) {
                std::vector<std::size_t> index(n);
                for (std::size_t u = 0; u < n; ++u) index[u] = u;
                for (std::size_t m = n - 1; m >= 1 && n > 1; --m) {
                    const std::uint32_t r = engine();
                    std::swap(index[m], index[r % (m + 1)]);
                }
                Column permuted(n);
                for (std::size_t u = 0; u < n; ++u) permuted[u] = columns[j][index[u]];
                stats.push_back(permutedDCor(columns[i], permuted));
            }
            PermutationResult res;
            if (!stats.empty()) {
                const std::size_t count = static_cast<std::size_t>(
                    std::count_if(stats.begin(), stats.end(), [&](double s) { return s >= observed; }));
                const double last = static_cast<double>(stats.size() - 1);
                const auto lowIndex = static_cast<std::size_t>(alpha / 2.0 * last);
                const auto highIndex = static_cast<std::size_t>((1.0 - alpha / 2.0) * last);
                std::nth_element(stats.begin(), stats.begin() + static_cast<long>(lowIndex), stats.end());
                const double lower = percentileAt(stats, 100.0 * alpha / 2.0, lowIndex);
                std::nth_element(stats.begin() + static_cast<long>(lowIndex), stats.begin() + static_cast<long>(highIndex),
                                 stats.end());
                const double upper = percentileAt(stats, (1.0 - alpha / 2.0) * 100.0, highIndex);
                res.pValue = round4(static_cast<double>(count) / static_cast<double>(stats.size()));
                res.lower = round4(lower);
                res.upper = round4(upper);
            }
            results.push_back(res);
        }
    }
    return results;
}

}  // namespace goldenref
