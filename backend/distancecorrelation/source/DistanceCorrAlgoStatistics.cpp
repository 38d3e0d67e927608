#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "DistanceCorrAlgo.h"
#include "DistanceCorrObservedPasses.h"

namespace {

using Matrix = DistanceCorrAlgo::Matrix;

// Every matrix n x n with the same n >= 1: the shape the fused passes handle.
bool allSquare(const std::vector<Matrix>& matrices, std::size_t& n) {
    n = matrices.empty() ? 0 : matrices[0].size();
    if (n == 0) return false;
    for (const Matrix& m : matrices) {
        if (m.size() != n) return false;
        for (const auto& row : m) {
            if (row.size() != n) return false;
        }
    }
    return true;
}

}  // namespace

void DistanceCorrAlgo::performEuclideanDistanceAnalysis(const Matrix& data,
                                                        std::vector<Matrix>& distanceMatrices) const {
    if (data.size() < 2) throw std::runtime_error("Dataset too small");
    distanceMatrices.resize(data.size());
    const std::size_t n = data[0].size();
    bool sameLength = n > 0;
    for (const auto& values : data) sameLength = sameLength && values.size() == n;
    if (!sameLength) {
        for (std::size_t v = 0; v < data.size(); ++v) calculateEuclideanDistanceMatrix(data[v], distanceMatrices[v]);
        return;
    }
    std::vector<const std::vector<double>*> columns;
    std::vector<Matrix*> targets;
    for (std::size_t v = 0; v < data.size(); ++v) {
        columns.push_back(&data[v]);
        targets.push_back(&distanceMatrices[v]);
    }
    DistanceCorrObservedPasses().distances(columns, targets);
}

void DistanceCorrAlgo::calculateEuclideanDistanceMatrix(const std::vector<double>& values, Matrix& distances) const {
    const std::size_t n = values.size();
    if (n == 0) throw std::runtime_error("Insufficient data points");
    DistanceCorrObservedPasses().distances({&values}, {&distances});
}

void DistanceCorrAlgo::calculateRowMean(const std::vector<Matrix>& distanceMatrices, Matrix& rowMeans) const {
    rowMeans.clear();
    rowMeans.reserve(distanceMatrices.size());
    for (const auto& matrix : distanceMatrices) {
        if (matrix.empty()) continue;
        std::vector<double> means;
        means.reserve(matrix.size());
        for (const auto& row : matrix) {
            if (row.empty()) continue;
            double sum = 0.0;
            for (double x : row) sum += x;
            means.push_back(sum / static_cast<double>(matrix.size()));
        }
        if (!means.empty()) rowMeans.push_back(std::move(means));
    }
}

void DistanceCorrAlgo::calculateColumnMean(const std::vector<Matrix>& distanceMatrices, Matrix& colMeans) const {
    colMeans.clear();
    colMeans.reserve(distanceMatrices.size());
    for (const auto& matrix : distanceMatrices) {
        if (matrix.empty()) continue;
        const std::size_t columns = matrix[0].size();
        std::vector<double> sums(columns, 0.0);
        for (const auto& row : matrix) {
            const std::size_t width = std::min(row.size(), columns);
            for (std::size_t j = 0; j < width; ++j) sums[j] += row[j];
        }
        // The matrices are square, so this equals dividing by the row count.
        for (double& s : sums) s /= static_cast<double>(columns);
        colMeans.push_back(std::move(sums));
    }
}

void DistanceCorrAlgo::calculateGlobalMean(const std::vector<Matrix>& distanceMatrices,
                                           std::vector<double>& grandMeans) const {
    grandMeans.clear();
    grandMeans.reserve(distanceMatrices.size());
    for (const auto& matrix : distanceMatrices) grandMeans.push_back(calculateAverageOfMatrix(matrix));
}

double DistanceCorrAlgo::calculateAverageOfMatrix(const Matrix& matrix) const {
    double total = 0.0;
    std::size_t count = 0;
    for (const auto& row : matrix) {
        double rowSum = 0.0;
        for (double x : row) rowSum += x;
        total += rowSum;
        count += row.size();
    }
    return count == 0 ? 0.0 : total / static_cast<double>(count);
}

void DistanceCorrAlgo::calculateCenteredMatrix(const std::vector<Matrix>& distanceMatrices, const Matrix& rowMeans,
                                               const Matrix& colMeans, const std::vector<double>& grandMeans,
                                               std::vector<Matrix>& centered) const {
    const std::size_t m = distanceMatrices.size();
    if (m == 0 || rowMeans.size() != m || colMeans.size() != m || grandMeans.size() != m) {
        throw std::runtime_error("Invalid input dimensions");
    }
    const std::size_t rows = distanceMatrices[0].size();
    const std::size_t columns = rows == 0 ? 0 : distanceMatrices[0][0].size();
    centered.resize(m);
    for (std::size_t k = 0; k < m; ++k) {
        const Matrix& d = distanceMatrices[k];
        if (d.size() != rows || rowMeans[k].size() != rows || colMeans[k].size() != columns) {
            throw std::runtime_error("Inconsistent matrix dimensions");
        }
        Matrix& a = centered[k];
        a.resize(rows);
        for (std::size_t i = 0; i < rows; ++i) {
            if (d[i].size() < columns) throw std::runtime_error("Inconsistent matrix dimensions");
            a[i].resize(columns);
            for (std::size_t j = 0; j < columns; ++j) {
                a[i][j] = d[i][j] - rowMeans[k][i] - colMeans[k][j] + grandMeans[k];
            }
        }
    }
}

void DistanceCorrAlgo::calculateDistanceCovariance(const std::vector<Matrix>& centered,
                                                   std::vector<double>& dCov) const {
    const std::size_t m = centered.size();
    if (m == 0) throw std::runtime_error("Empty centered matrix");
    dCov.clear();
    dCov.resize(m * (m - 1) / 2);
    for (std::size_t i = 0; i < m; ++i) {
        for (std::size_t j = i + 1; j < m; ++j) {
            dCov[i * m - i * (i + 1) / 2 + (j - i - 1)] =
                calculatePairDistanceCovariance(centered[i], centered[j], centered[i].size());
        }
    }
}

double DistanceCorrAlgo::calculatePairDistanceCovariance(const Matrix& a, const Matrix& b, std::uint64_t n) const {
    if (a.empty() || b.empty() || a.size() != b.size() || n > a.size()) {
        throw std::runtime_error("Matrix dimension mismatch");
    }
    double sum = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double* x = a[i].data();
        const double* y = b[i].data();
        if (a[i].size() < n || b[i].size() < n) throw std::runtime_error("Matrix dimension mismatch");
        std::size_t j = 0;
        for (; j + 4 <= n; j += 4) {
            const double p0 = x[j] * y[j];
            const double p1 = x[j + 1] * y[j + 1];
            const double p2 = x[j + 2] * y[j + 2];
            const double p3 = x[j + 3] * y[j + 3];
            sum += ((p0 + p1 + p2) + p3);
        }
        for (; j < n; ++j) sum += x[j] * y[j];
    }
    return sum / static_cast<double>(n * n);
}

void DistanceCorrAlgo::calculateDistanceVariance(const std::vector<Matrix>& centered, std::vector<double>& dVar) const {
    dVar.clear();
    dVar.resize(centered.size());
    for (std::size_t k = 0; k < centered.size(); ++k) dVar[k] = calculateVarianceAutoSwitch(centered[k]);
}

double DistanceCorrAlgo::calculateVarianceAutoSwitch(const Matrix& centered) const {
    // Only matrices below 100 rows take the plain sum; the order of the two
    // tests is kept as it is.
    const std::size_t n = centered.size();
    if (n >= 1000) return calculateMatrixVarianceOptimized(centered);
    if (n < 100) return calculateDistanceVariance(centered);
    return calculateMatrixVarianceOptimized(centered);
}

double DistanceCorrAlgo::calculateDistanceVariance(const Matrix& centered) const {
    const std::size_t n = centered.size();
    double sum = 0.0;
    for (const auto& row : centered) {
        for (double x : row) sum += x * x;
    }
    return sum / static_cast<double>(n * n);
}

double DistanceCorrAlgo::calculateMatrixVarianceOptimized(const Matrix& centered) const {
    const std::size_t n = centered.size();
    if (n == 0) return 0.0;
    double total = 0.0;
    for (const auto& row : centered) {
        const double* x = row.data();
        const std::size_t width = row.size();
        double rowSum = 0.0;
        std::size_t j = 0;
        for (; j + 4 <= width; j += 4) {
            rowSum += x[j] * x[j] + x[j + 1] * x[j + 1] + x[j + 2] * x[j + 2] + x[j + 3] * x[j + 3];
        }
        for (; j < width; ++j) rowSum += x[j] * x[j];
        total += rowSum;
    }
    return total / static_cast<double>(n * n);
}

void DistanceCorrAlgo::calculateDistanceCorrelation(const std::vector<double>& dCov, const std::vector<double>& dVar,
                                                    std::vector<double>& dCor) const {
    if (dCov.empty() || dVar.empty()) {
        throw std::runtime_error("distCov or distVariance is empty for calculating distance correlation.");
    }
    const std::size_t m = dVar.size();
    const std::size_t pairs = m * (m - 1) / 2;
    if (dCov.size() < pairs) {
        throw std::runtime_error("Not enough elements in distCov for the number of variance pairs.");
    }
    dCor.clear();
    dCor.reserve(pairs);
    std::size_t k = 0;
    for (std::size_t i = 0; i < m; ++i) {
        for (std::size_t j = i + 1; j < m; ++j, ++k) {
            double r = 0.0;
            // A variance of exactly EPSILON still counts here; NaN fails both tests.
            if (dVar[i] >= EPSILON && dVar[j] >= EPSILON) {
                const double s = std::sqrt(dVar[i] * dVar[j]);
                if (s >= EPSILON) r = std::min(1.0, std::max(0.0, dCov[k] / s));
            }
            dCor.push_back(r);
        }
    }
}

bool DistanceCorrAlgo::computeObservedStatistics(const std::vector<Matrix>& distanceMatrices,
                                                 std::vector<Matrix>& centered, Matrix& rowMeans, Matrix& colMeans,
                                                 std::vector<double>& grandMeans, std::vector<double>& dCov,
                                                 std::vector<double>& dVar) const {
    std::size_t n = 0;
    if (!allSquare(distanceMatrices, n)) return false;
    const DistanceCorrObservedPasses passes;
    passes.means(distanceMatrices, rowMeans, colMeans, grandMeans);
    passes.centre(distanceMatrices, rowMeans, colMeans, grandMeans, centered, dCov, dVar);
    return true;
}

void DistanceCorrAlgo::computeDistanceCorrelation(const std::vector<Matrix>& distanceMatrices,
                                                  std::vector<Matrix>& centered, std::vector<double>& dCor) {
    fillResultRecords(distanceMatrices, centered, dCor);
}

void DistanceCorrAlgo::computeDistanceCorrelation(std::vector<Matrix>&& distanceMatrices, std::vector<Matrix>& centered,
                                                  std::vector<double>& dCor) {
    fillResultRecords(distanceMatrices, centered, dCor);
}

template <typename Matrices>
void DistanceCorrAlgo::fillResultRecords(Matrices&& distanceMatrices, std::vector<Matrix>& centered,
                                         std::vector<double>& dCor) {
    if (distanceMatrices.empty()) throw std::runtime_error("Invalid input size for distance matrix");

    std::vector<double> dCov;
    std::vector<double> dVar;
    Matrix rowMeans;
    Matrix colMeans;
    std::vector<double> grandMeans;
    if (!computeObservedStatistics(distanceMatrices, centered, rowMeans, colMeans, grandMeans, dCov, dVar)) {
        // Other shapes go step by step, which also reports them.
        calculateRowMean(distanceMatrices, rowMeans);
        calculateColumnMean(distanceMatrices, colMeans);
        calculateGlobalMean(distanceMatrices, grandMeans);
        calculateCenteredMatrix(distanceMatrices, rowMeans, colMeans, grandMeans, centered);
        calculateDistanceCovariance(centered, dCov);
        calculateDistanceVariance(centered, dVar);
    }
    calculateDistanceCorrelation(dCov, dVar, dCor);

    const std::vector<std::string>& names = settings_.globalSettings().getGlobalVarNames();
    const std::size_t v = distanceMatrices.size();
    const std::size_t pairs = v * (v - 1) / 2;
    if (descriptives_.size() != v || dVar.size() != v || names.size() != v || dCov.size() != pairs ||
        dCor.size() != pairs) {
        return;  // inconsistent sizes: no record is written
    }

    std::size_t k = 0;
    for (std::size_t i = 0; i < v; ++i) {
        descriptives_[i].distVariance = roundToPrecision(dVar[i], 4);
        if constexpr (std::is_const_v<std::remove_reference_t<Matrices>>) {
            descriptives_[i].distanceMatrix = distanceMatrices[i];
        } else {
            descriptives_[i].distanceMatrix = std::move(distanceMatrices[i]);
        }
        for (std::size_t j = i + 1; j < v && k < pairs; ++j, ++k) {
            DistanceCorrResult result;
            result.varName1 = names[i];
            result.varName2 = names[j];
            result.dCov = roundToPrecision(dCov[k], 4);
            result.dCor = roundToPrecision(dCor[k], 4);
            results_.push_back(std::move(result));
        }
    }
}

double DistanceCorrAlgo::roundToPrecision(double value, int digits) {
    const double factor = std::pow(10.0, digits);
    return std::round(value * factor) / factor;  // halves away from zero
}

void DistanceCorrAlgo::triangularIndex(std::uint64_t k, std::uint64_t& i, std::uint64_t& j, std::uint64_t n) {
    const double t = std::sqrt(static_cast<double>(4 * n * (n - 1) - 8 * k - 7)) / 2.0 - 0.5;
    i = n - 2 - static_cast<std::uint64_t>(t);
    j = k + i + 1 - n * (n - 1) / 2 + (n - i) * (n - i - 1) / 2;
}

std::pair<std::uint64_t, std::uint64_t> DistanceCorrAlgo::triangularIndex(std::uint64_t k, std::uint64_t n) {
    std::pair<std::uint64_t, std::uint64_t> pair;
    triangularIndex(k, pair.first, pair.second, n);
    return pair;
}
