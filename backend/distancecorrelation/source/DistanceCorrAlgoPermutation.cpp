#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <random>
#include <stdexcept>
#include <utility>

#include "DistanceCorrAlgo.h"
#include "DistanceCorrPermutationKernel.h"

namespace {

// The seed and the iteration count arrive as non-negative numbers; truncate
// them, saturating outside the unsigned 64-bit range (NaN counts as 0).
std::uint64_t truncateToUnsigned(double value) {
    if (!(value > 0.0)) return 0;
    if (value >= 18446744073709551616.0) return std::numeric_limits<std::uint64_t>::max();
    return static_cast<std::uint64_t>(value);
}

// Truncates a position in [0, size - 1]; only an out-of-range significance
// level could push it outside.
std::size_t truncateToIndex(double position, std::size_t size) {
    if (!(position > 0.0)) return 0;
    if (position >= static_cast<double>(size - 1)) return size - 1;
    return static_cast<std::size_t>(position);
}

void sizeSquare(DistanceCorrAlgo::Matrix& matrix, std::size_t n) {
    if (matrix.size() != n) matrix.resize(n);
    for (auto& row : matrix) {
        if (row.size() != n) row.resize(n);
    }
}

bool isSquare(const DistanceCorrAlgo::Matrix& matrix, std::size_t n) {
    if (matrix.size() != n) return false;
    for (const auto& row : matrix) {
        if (row.size() != n) return false;
    }
    return true;
}

// Positions of the two selections of the percentile interval over count
// statistics at significance level alpha.
std::pair<std::size_t, std::size_t> selectionIndices(double alpha, std::size_t count) {
    const std::size_t low = truncateToIndex(alpha / 2 * static_cast<double>(count - 1), count);
    const std::size_t high = std::max(low, truncateToIndex((1 - alpha / 2) * static_cast<double>(count - 1), count));
    return {low, high};
}

// One permutation of the case numbers: Fisher-Yates from the back with a
// plain remainder (no rejection of biased draws), so that a seed always gives
// the same shuffle.
void shuffle(std::vector<std::size_t>& index, std::mt19937& engine) {
    std::iota(index.begin(), index.end(), std::size_t{0});
    const std::size_t n = index.size();
    for (std::size_t s = 0; s + 1 < n; ++s) {
        const std::size_t m = n - 1 - s;
        const auto r = static_cast<std::uint32_t>(engine());
        const std::size_t q = r % (m + 1);
        std::swap(index[m], index[q]);
    }
}

// The random stream is saved before every this many permutations, so that a
// permutation can be drawn again for the matrix recipe without holding all
// the numbers.
constexpr std::uint64_t kCheckpointEvery = 64;

}  // namespace

void DistanceCorrAlgo::permutationTest(const Matrix& data, const std::vector<double>& observed,
                                       const std::vector<Matrix>& centered) {
    const auto& criteria = settings_.criteriaSettings();
    const std::uint64_t iterations = truncateToUnsigned(criteria.get_permMaxIterations());
    const std::uint64_t p = data.size();
    const std::size_t n = data.empty() ? 0 : data[0].size();
    const std::uint64_t pairs = p * (p - 1) / 2;
    const std::uint64_t seed = truncateToUnsigned(criteria.get_permSeed());

    if (observed.size() != pairs || results_.size() != pairs) {
        throw std::runtime_error("Size mismatch in permutation test");
    }
    bool consistent = pairs == 0 || centered.size() == p;
    for (const auto& column : data) consistent = consistent && column.size() == n;
    if (!consistent) throw std::runtime_error("Size mismatch in permutation test");
    if (pairs > 0 && iterations > 0 && n == 0) throw std::runtime_error("Insufficient data points");

    std::mt19937 engine(static_cast<std::uint32_t>(seed & 0xFFFFFFFFULL));

    // One worker: all pairs run in order on the calling thread, so drawing
    // each number when it is used consumes the stream in the same order as
    // drawing all pairs' N * (n - 1) numbers up front, without holding them.
    // The matrix recipe's buffers are sized on its first use: the fast kernel
    // needs none of them.
    ThreadBuffers buffers;
    std::vector<std::size_t> index(n);
    std::vector<double> permuted(n);
    std::vector<double> statistics(iterations);
    std::vector<char> exact(iterations);
    std::vector<std::mt19937> checkpoints;
    const bool fast = permutationStatistics_ == PermutationStatistics::Fast;
    const std::pair<std::size_t, std::size_t> selection =
        iterations == 0 ? std::make_pair(std::size_t{0}, std::size_t{0})
                        : selectionIndices(criteria.get_permSigLevel(), iterations);

    for (std::uint64_t k = 0; k < pairs; ++k) {
        std::uint64_t i = 0;
        std::uint64_t j = 0;
        triangularIndex(k, i, j, p);
        // Variable i stays fixed; variable j is shuffled by the current index.
        const auto matrixRecipe = [&]() {
            if (buffers.rowMeans.size() != n) {
                sizeSquare(buffers.distanceMatrix, n);
                sizeSquare(buffers.centeredMatrix, n);
                buffers.rowMeans.assign(n, 0.0);
                buffers.colMeans.assign(n, 0.0);
            }
            for (std::size_t u = 0; u < n; ++u) permuted[u] = data[j][index[u]];
            return computeDistanceCorrelation(centered[i], permuted, buffers.distanceMatrix, buffers.rowMeans,
                                              buffers.colMeans, buffers.centeredMatrix);
        };

        // The kernel declines data it cannot promise to match (non-finite
        // values, a variance at the zero threshold): the recipe runs instead,
        // as it does for a fixed matrix of the wrong shape, which it reports.
        std::optional<DistanceCorrPermutationKernel> kernel;
        if (fast && iterations > 0 && isSquare(centered[i], n)) kernel.emplace(data[i], data[j]);
        if (kernel && kernel->usable()) {
            checkpoints.clear();
            for (std::uint64_t t = 0; t < iterations; ++t) {
                if (t % kCheckpointEvery == 0) checkpoints.push_back(engine);
                shuffle(index, engine);
                const DistanceCorrPermutationKernel::Statistic s = kernel->evaluate(index);
                statistics[t] = s.value;
                exact[t] = s.exact;
            }
            // Statistics within rounding of each other or of the observed
            // value are recomputed by the matrix recipe, so that every
            // comparison below comes out as it does on the recipe's values.
            DistanceCorrPermutationKernel::settleTies(
                statistics, exact, observed[k], selection.first, selection.second,
                DistanceCorrPermutationKernel::kTieTolerance, [&](std::size_t t) {
                    std::mt19937 replay = checkpoints[t / kCheckpointEvery];
                    replay.discard(static_cast<unsigned long long>(t % kCheckpointEvery) * (n - 1));
                    shuffle(index, replay);
                    return matrixRecipe();
                });
        } else {
            for (std::uint64_t t = 0; t < iterations; ++t) {
                shuffle(index, engine);
                statistics[t] = matrixRecipe();
            }
        }
        std::pair<double, double> interval(0.0, 0.0);
        const double pValue = computeConfidenceIntervalandPValue(observed[k], statistics, interval);
        results_[k].pValue = roundToPrecision(pValue, 4);
        results_[k].permLower = roundToPrecision(interval.first, 4);
        results_[k].permUpper = roundToPrecision(interval.second, 4);
    }
}

double DistanceCorrAlgo::computeDistanceCorrelation(const Matrix& centeredX, const std::vector<double>& y,
                                                    Matrix& distance, std::vector<double>& rowMeans,
                                                    std::vector<double>& colMeans, Matrix& centeredY) const {
    const std::size_t n = y.size();
    if (n == 0) throw std::runtime_error("Insufficient data points");
    if (centeredX.size() != n) throw std::runtime_error("Matrix dimension mismatch");
    for (const auto& row : centeredX) {
        if (row.size() != n) throw std::runtime_error("Matrix dimension mismatch");
    }
    // The buffers normally arrive sized; these calls then do nothing.
    sizeSquare(distance, n);
    sizeSquare(centeredY, n);
    if (rowMeans.size() != n) rowMeans.resize(n);
    if (colMeans.size() != n) colMeans.resize(n);

    for (std::size_t i = 0; i < n; ++i) {
        distance[i][i] = 0.0;
        for (std::size_t j = i + 1; j < n; ++j) {
            const double d = std::abs(y[i] - y[j]);
            distance[i][j] = d;
            distance[j][i] = d;
        }
    }

    std::fill(colMeans.begin(), colMeans.end(), 0.0);
    double total = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        double rowSum = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
            rowSum += distance[i][j];
            colMeans[j] += distance[i][j];
        }
        rowMeans[i] = rowSum / static_cast<double>(n);
        total += rowSum;
    }
    const double cells = static_cast<double>(n * n);
    const double grandMean = total / cells;
    for (std::size_t j = 0; j < n; ++j) colMeans[j] /= static_cast<double>(n);

    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            centeredY[i][j] = distance[i][j] - rowMeans[i] - colMeans[j] + grandMean;
        }
    }

    double sumAA = 0.0;
    double sumBB = 0.0;
    double sumAB = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            const double a = centeredX[i][j];
            const double b = centeredY[i][j];
            sumAA += a * a;
            sumBB += b * b;
            sumAB += a * b;
        }
    }

    const double dVarX = sumAA / cells;
    const double dVarY = sumBB / cells;
    // Here a variance of exactly EPSILON already counts as zero.
    if (dVarX <= EPSILON || dVarY <= EPSILON) return 0.0;
    const double r = (sumAB / cells) / std::sqrt(dVarX * dVarY);
    // Written so that a NaN ratio (from NaN data) ends as 0, as in the
    // observed statistic.
    return std::max(0.0, std::min(r, 1.0));
}

double DistanceCorrAlgo::computeConfidenceIntervalandPValue(double observed, std::vector<double>& permStats,
                                                            std::pair<double, double>& interval) const {
    if (permStats.empty()) return 0.0;
    const double alpha = settings_.criteriaSettings().get_permSigLevel();
    const std::size_t count = permStats.size();
    const auto [lowIndex, highIndex] = selectionIndices(alpha, count);

    // Two linear-time selections instead of a sort; the percentile then
    // interpolates on the partially ordered vector.
    const auto first = permStats.begin();
    std::nth_element(first, first + static_cast<std::ptrdiff_t>(lowIndex), permStats.end());
    interval.first = calculatePercentile(permStats, 100 * alpha / 2, lowIndex);
    std::nth_element(first + static_cast<std::ptrdiff_t>(lowIndex), first + static_cast<std::ptrdiff_t>(highIndex),
                     permStats.end());
    interval.second = calculatePercentile(permStats, (1 - alpha / 2) * 100, highIndex);

    std::size_t atLeastObserved = 0;
    for (double s : permStats) {
        if (s >= observed) ++atLeastObserved;  // NaN never counts
    }
    // No +1 smoothing: the p-value can be exactly 0.
    return static_cast<double>(atLeastObserved) / static_cast<double>(count);
}

double DistanceCorrAlgo::calculatePercentile(const std::vector<double>& values, double percent,
                                             std::size_t index) const {
    if (values.empty()) return 0.0;
    if (values.size() == 1) return values[0];
    const std::size_t last = values.size() - 1;
    const double position = percent / 100 * static_cast<double>(last);
    const std::size_t k = index == kDerivePosition ? truncateToIndex(position, values.size())
                                                   : std::min(index, last);
    if (position == static_cast<double>(k) || k == last) return values[k];
    return values[k] + (position - static_cast<double>(k)) * (values[k + 1] - values[k]);
}
