#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

#include "DistanceCorrAlgo.h"
#include "DistanceCorrPermutationPair.h"
#include "DistanceCorrPermutationProgress.h"
#include "DistanceCorrPermutationSchedule.h"
#include "HostServices.h"
#include "PermutationStream.h"
#include "WorkerPool.h"

namespace {

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

DistanceCorrPermutationPair::Method methodFor(DistanceCorrAlgo::PermutationStatistics how) {
    switch (how) {
        case DistanceCorrAlgo::PermutationStatistics::Kernel:
            return DistanceCorrPermutationPair::Method::Kernel;
        case DistanceCorrAlgo::PermutationStatistics::Recipe:
            return DistanceCorrPermutationPair::Method::Recipe;
        default:
            return DistanceCorrPermutationPair::Method::Automatic;
    }
}

}  // namespace

std::pair<std::size_t, std::size_t> DistanceCorrAlgo::selectionIndices(double alpha, std::size_t count) {
    const std::size_t low = truncateToIndex(alpha / 2 * static_cast<double>(count - 1), count);
    const std::size_t high = std::max(low, truncateToIndex((1 - alpha / 2) * static_cast<double>(count - 1), count));
    return {low, high};
}

void DistanceCorrAlgo::permutationTest(const Matrix& data, const std::vector<double>& observed,
                                       const std::vector<Matrix>& centered) {
    const auto& criteria = settings_.criteriaSettings();
    const std::uint64_t iterations = PermutationStream::wholeNumber(criteria.get_permMaxIterations());
    const std::uint64_t p = data.size();
    const std::size_t n = data.empty() ? 0 : data[0].size();
    const std::uint64_t pairs = p * (p - 1) / 2;
    const std::uint64_t seed = PermutationStream::wholeNumber(criteria.get_permSeed());
    const double alpha = criteria.get_permSigLevel();

    if (observed.size() != pairs || results_.size() != pairs) {
        throw std::runtime_error("Size mismatch in permutation test");
    }
    bool consistent = pairs == 0 || centered.size() == p;
    for (const auto& column : data) consistent = consistent && column.size() == n;
    if (!consistent) throw std::runtime_error("Size mismatch in permutation test");
    if (pairs > 0 && iterations > 0 && n == 0) throw std::runtime_error("Insufficient data points");

    permutationOutcomes_.assign(pairs, PermutationOutcome{});
    const auto record = [&](std::size_t k, const PermutationOutcome& outcome) {
        permutationOutcomes_[k] = outcome;
        results_[k].pValue = roundToPrecision(outcome.pValue, 4);
        results_[k].permLower = roundToPrecision(outcome.lower, 4);
        results_[k].permUpper = roundToPrecision(outcome.upper, 4);
    };
    // No statistics: p-values and bounds stay 0.
    if (pairs == 0 || iterations == 0) {
        for (std::size_t k = 0; k < pairs; ++k) record(k, PermutationOutcome{});
        return;
    }
    const std::uint64_t total = iterations > std::numeric_limits<std::uint64_t>::max() / pairs ? 0 : pairs * iterations;
    DistanceCorrPermutationProgress progress(total, HostServices::progressMonitor());

    // The pairs draw on one stream, each the next N * (n - 1) numbers after
    // the pairs before it: the same numbers as drawing all pairs' numbers up
    // front, without holding them.
    if (permutationStatistics_ == PermutationStatistics::MatrixRecipe) {
        // The reference: every statistic by the six-argument function, on
        // the calling thread.
        PermutationStream engine(seed);
        ThreadBuffers buffers;
        sizeSquare(buffers.distanceMatrix, n);
        sizeSquare(buffers.centeredMatrix, n);
        buffers.rowMeans.assign(n, 0.0);
        buffers.colMeans.assign(n, 0.0);
        std::vector<std::size_t> index(n);
        std::vector<double> permuted(n);
        for (std::uint64_t k = 0; k < pairs; ++k) {
            const auto [i, j] = triangularIndex(k, p);
            std::vector<double> statistics(iterations);
            for (std::uint64_t t = 0; t < iterations; ++t) {
                engine.shuffle(index);
                for (std::size_t u = 0; u < n; ++u) permuted[u] = data[j][index[u]];
                statistics[t] = computeDistanceCorrelation(centered[i], permuted, buffers.distanceMatrix,
                                                           buffers.rowMeans, buffers.colMeans, buffers.centeredMatrix);
                progress.add(1);
            }
            std::pair<double, double> interval(0.0, 0.0);
            const double pValue = computeConfidenceIntervalandPValue(observed[k], statistics, interval);
            record(k, PermutationOutcome{pValue, interval.first, interval.second});
        }
        return;
    }

    // Pairs, and blocks of a pair's permutations, run on the host's workers
    // where it offers them; each permutation still uses its own numbers of
    // the stream, so the results do not depend on the number of threads.
    WorkerPool* pool = HostServices::workerPool();
    const unsigned workers = HostServices::workerCount();
    const std::uint64_t blocks = DistanceCorrPermutationSchedule::blocksPerPair(pairs, workers);
    std::vector<DistanceCorrPermutationPair> pairList;
    pairList.reserve(pairs);
    for (std::uint64_t k = 0; k < pairs; ++k) {
        // Variable i stays fixed; variable j is shuffled.
        const auto [i, j] = triangularIndex(k, p);
        pairList.emplace_back(centered[i], data[i], data[j], iterations, alpha, methodFor(permutationStatistics_),
                              blocks);
    }
    DistanceCorrPermutationSchedule schedule(pairList, observed, seed, progress);
    schedule.run(pool, [&](std::size_t k, const DistanceCorrPermutationPair::Outcome& o) {
        record(k, PermutationOutcome{o.pValue, o.lower, o.upper});
    });
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
    // First the smaller of 1 and r, then the larger of 0 and that: a NaN
    // ratio (from NaN or infinite data) gives 1. The observed statistic
    // clamps the other way round and gives 0.
    return std::max(0.0, std::min(1.0, r));
}

double DistanceCorrAlgo::computeConfidenceIntervalandPValue(double observed, std::vector<double>& permStats,
                                                            std::pair<double, double>& interval) const {
    return selectAndCount(observed, settings_.criteriaSettings().get_permSigLevel(), permStats, interval);
}

double DistanceCorrAlgo::selectAndCount(double observed, double alpha, std::vector<double>& stats,
                                        std::pair<double, double>& interval) {
    if (stats.empty()) return 0.0;
    const std::size_t count = stats.size();
    const std::size_t last = count - 1;
    const auto [lowIndex, highIndex] = selectionIndices(alpha, count);

    // Two linear-time selections instead of a sort; the percentile then
    // interpolates on the partially ordered vector.
    const auto first = stats.begin();
    std::nth_element(first, first + static_cast<std::ptrdiff_t>(lowIndex), stats.end());
    interval.first =
        percentileAt(count, 100 * alpha / 2, lowIndex, stats[lowIndex], stats[std::min(lowIndex + 1, last)]);
    std::nth_element(first + static_cast<std::ptrdiff_t>(lowIndex), first + static_cast<std::ptrdiff_t>(highIndex),
                     stats.end());
    interval.second =
        percentileAt(count, (1 - alpha / 2) * 100, highIndex, stats[highIndex], stats[std::min(highIndex + 1, last)]);

    std::size_t atLeastObserved = 0;
    for (double s : stats) {
        if (s >= observed) ++atLeastObserved;  // NaN never counts
    }
    // No +1 smoothing: the p-value can be exactly 0.
    return static_cast<double>(atLeastObserved) / static_cast<double>(count);
}

double DistanceCorrAlgo::calculatePercentile(const std::vector<double>& values, double percent,
                                             std::size_t index) const {
    if (values.empty()) return 0.0;
    const std::size_t last = values.size() - 1;
    const std::size_t k = index == kDerivePosition
                              ? truncateToIndex(percent / 100 * static_cast<double>(last), values.size())
                              : std::min(index, last);
    return percentileAt(values.size(), percent, k, values[k], values[std::min(k + 1, last)]);
}

double DistanceCorrAlgo::percentileAt(std::size_t size, double percent, std::size_t k, double atK, double afterK) {
    if (size <= 1) return atK;
    const std::size_t last = size - 1;
    const double position = percent / 100 * static_cast<double>(last);
    if (position == static_cast<double>(k) || k >= last) return atK;
    return atK + (position - static_cast<double>(k)) * (afterK - atK);
}
