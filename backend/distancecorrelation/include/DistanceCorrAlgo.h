#pragma once
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "DistanceCorrCommonData.h"
#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "DistanceCorrResult.h"
#include "ParserMessage.h"

// The computation engine: from the fetched case data to the result records.
// start() runs the stages in a fixed order; the other operations are public so
// that each stage can be checked on its own.
class DistanceCorrAlgo {
public:
    using Matrix = std::vector<std::vector<double>>;

    // Scratch space for recomputing one permuted variable without allocating.
    struct ThreadBuffers {
        Matrix distanceMatrix;
        std::vector<double> rowMeans;
        std::vector<double> colMeans;
        Matrix centeredMatrix;
    };

    // Declared for a future multi-threaded permutation test; nothing uses it.
    static thread_local ThreadBuffers threadBuffers;

    // Smallest divisor in scaling and the "zero variance" threshold.
    static constexpr double EPSILON = 1e-8;
    static constexpr std::uint64_t kMemoryLimitBytes = 1073741824ULL;  // 1 GiB
    static constexpr std::size_t kDerivePosition = std::numeric_limits<std::size_t>::max();

    DistanceCorrAlgo(const DistanceCorrInputSettings& settings, std::vector<DistanceCorrResult>& results,
                     std::vector<DistanceCorrDescriptiveResult>& descriptives, DistanceCorrCommonData& common);

    // 0 when every result record is filled, 1 otherwise. Never throws.
    int start();

    // Driver helpers.
    static std::uint64_t calculateMemoryEstimate(std::uint64_t variables, std::uint64_t cases, bool permEnabled);
    static bool exceedsMemoryLimit(std::uint64_t estimatedBytes);
    void fillCommonDataForOutputTable(std::vector<double>& idValues);
    int get_optimal_threads(int requested) const;

    // Missing data and normalization.
    void handleListwiseMissingData(Matrix& data) const;
    void handleListwiseMissingData(Matrix& data, std::vector<double>& idValues) const;
    void performNormalization(Matrix& data) const;
    void performMinMaxNormalization(Matrix& data) const;
    void performzScoreNormalization(Matrix& data) const;
    void performRobustScaling(Matrix& data) const;
    void performLogTransformation(Matrix& data) const;
    double calculateMean(const std::vector<double>& values) const;
    double calculateStdDev(const std::vector<double>& values, double mean) const;
    double calculateMedian(const std::vector<double>& sorted) const;
    double calculateIQR(const std::vector<double>& sorted) const;

    // Distance matrices and the observed statistics.
    void performEuclideanDistanceAnalysis(const Matrix& data, std::vector<Matrix>& distanceMatrices) const;
    void calculateEuclideanDistanceMatrix(const std::vector<double>& values, Matrix& distances) const;
    void calculateRowMean(const std::vector<Matrix>& distanceMatrices, Matrix& rowMeans) const;
    void calculateColumnMean(const std::vector<Matrix>& distanceMatrices, Matrix& colMeans) const;
    void calculateGlobalMean(const std::vector<Matrix>& distanceMatrices, std::vector<double>& grandMeans) const;
    double calculateAverageOfMatrix(const Matrix& matrix) const;
    void calculateCenteredMatrix(const std::vector<Matrix>& distanceMatrices, const Matrix& rowMeans,
                                 const Matrix& colMeans, const std::vector<double>& grandMeans,
                                 std::vector<Matrix>& centered) const;
    void calculateDistanceCovariance(const std::vector<Matrix>& centered, std::vector<double>& dCov) const;
    double calculatePairDistanceCovariance(const Matrix& a, const Matrix& b, std::uint64_t n) const;
    void calculateDistanceVariance(const std::vector<Matrix>& centered, std::vector<double>& dVar) const;
    double calculateVarianceAutoSwitch(const Matrix& centered) const;
    double calculateDistanceVariance(const Matrix& centered) const;
    double calculateMatrixVarianceOptimized(const Matrix& centered) const;
    void calculateDistanceCorrelation(const std::vector<double>& dCov, const std::vector<double>& dVar,
                                      std::vector<double>& dCor) const;
    // Centres the matrices, computes dCov, dVar and dCor and fills the result
    // records. The rvalue form moves each distance matrix into its record
    // instead of copying it.
    void computeDistanceCorrelation(const std::vector<Matrix>& distanceMatrices, std::vector<Matrix>& centered,
                                    std::vector<double>& dCor);
    void computeDistanceCorrelation(std::vector<Matrix>&& distanceMatrices, std::vector<Matrix>& centered,
                                    std::vector<double>& dCor);

    static double roundToPrecision(double value, int digits);
    // Pair number k of n variables back to its variables (i, j), i < j.
    static void triangularIndex(std::uint64_t k, std::uint64_t& i, std::uint64_t& j, std::uint64_t n);
    static std::pair<std::uint64_t, std::uint64_t> triangularIndex(std::uint64_t k, std::uint64_t n);

    // Permutation test.
    void permutationTest(const Matrix& data, const std::vector<double>& observed, const std::vector<Matrix>& centered);
    // How the permutation test computes permuted statistics. Fast (the default): the O(n log n) kernel from 64
    // cases on, settling every statistic in doubt with the recipe, and the fused recipe below that. Kernel: the
    // kernel whenever it accepts the data. Recipe: the fused recipe for every permutation. MatrixRecipe: the
    // six-argument computeDistanceCorrelation for every permutation. All four give the same unrounded p-values and
    // bounds, bit for bit; the last is the reference.
    enum class PermutationStatistics { Fast, Kernel, Recipe, MatrixRecipe };
    void setPermutationStatistics(PermutationStatistics how) { permutationStatistics_ = how; }
    // The unrounded p-value and bounds of every pair of the last permutation test.
    struct PermutationOutcome {
        double pValue = 0.0;
        double lower = 0.0;
        double upper = 0.0;
    };
    const std::vector<PermutationOutcome>& permutationOutcomes() const { return permutationOutcomes_; }
    // dCor of a fixed centred matrix and a (permuted) column; the last four
    // arguments are scratch buffers sized n x n, n, n and n x n.
    double computeDistanceCorrelation(const Matrix& centeredX, const std::vector<double>& y, Matrix& distance,
                                      std::vector<double>& rowMeans, std::vector<double>& colMeans,
                                      Matrix& centeredY) const;
    double computeConfidenceIntervalandPValue(double observed, std::vector<double>& permStats,
                                              std::pair<double, double>& interval) const;
    double calculatePercentile(const std::vector<double>& values, double percent,
                               std::size_t index = kDerivePosition) const;

    // The steps of the permutation test shared with its fast path.
    // Positions (low, high) of the two selections over count statistics.
    static std::pair<std::size_t, std::size_t> selectionIndices(double alpha, std::size_t count);
    // The percentile at position k of size partially ordered values, from the
    // value at k and the one after it (read only when interpolating).
    static double percentileAt(std::size_t size, double percent, std::size_t k, double atK, double afterK);
    // The two selections, the interval and the p-value of statistics at
    // significance level alpha; reorders stats.
    static double selectAndCount(double observed, double alpha, std::vector<double>& stats,
                                 std::pair<double, double>& interval);

    // Fisher-z intervals and descriptive statistics.
    void computeConfidenceInterval(const std::vector<double>& observed, std::uint64_t n);
    double inverse_normal_cdf(double probability) const;
    void computeDescriptiveStatistics(const Matrix& columns, std::uint64_t n);

private:
    // The means, centred matrices, dCov and dVar of n x n distance matrices
    // (all of the same n), computed in fused passes with the same arithmetic
    // as the step-by-step operations. False, and nothing written, for any
    // other shape.
    bool computeObservedStatistics(const std::vector<Matrix>& distanceMatrices, std::vector<Matrix>& centered,
                                   Matrix& rowMeans, Matrix& colMeans, std::vector<double>& grandMeans,
                                   std::vector<double>& dCov, std::vector<double>& dVar) const;
    // The test that compares the fused passes with the steps bit for bit.
    friend class DistanceCorrAlgoObservedProbe;

    template <typename Matrices>
    void fillResultRecords(Matrices&& distanceMatrices, std::vector<Matrix>& centered, std::vector<double>& dCor);

    const DistanceCorrInputSettings& settings_;
    std::vector<DistanceCorrResult>& results_;
    std::vector<DistanceCorrDescriptiveResult>& descriptives_;
    DistanceCorrCommonData& common_;
    ParserMessage message_;
    PermutationStatistics permutationStatistics_ = PermutationStatistics::Fast;
    std::vector<PermutationOutcome> permutationOutcomes_;
};
