// Distance matrices, centring, dCov, dVar and dCor of the engine.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "EngineTestSettings.h"

namespace {

using Matrix = DistanceCorrAlgo::Matrix;

// Independent reference: the V-statistic dCov^2 from pairwise sums, without
// double centring (Szekely, Rizzo and Bakirov 2007):
// S1 + S2 - 2 S3 with S1 = mean(a_ij b_ij), S2 = mean(a) mean(b),
// S3 = (1/n^3) sum_i sum_j sum_k a_ij b_ik.
double referenceDCov(const std::vector<double>& x, const std::vector<double>& y) {
    const std::size_t n = x.size();
    long double s1 = 0;
    long double sa = 0;
    long double sb = 0;
    long double s3 = 0;
    for (std::size_t i = 0; i < n; ++i) {
        long double rowA = 0;
        long double rowB = 0;
        for (std::size_t j = 0; j < n; ++j) {
            const long double a = std::fabs(x[i] - x[j]);
            const long double b = std::fabs(y[i] - y[j]);
            s1 += a * b;
            sa += a;
            sb += b;
            rowA += a;
            rowB += b;
        }
        s3 += rowA * rowB;
    }
    const long double nn = static_cast<long double>(n) * n;
    return static_cast<double>(s1 / nn + (sa / nn) * (sb / nn) - 2 * s3 / (nn * n));
}

double referenceDCor(const std::vector<double>& x, const std::vector<double>& y) {
    const double vx = referenceDCov(x, x);
    const double vy = referenceDCov(y, y);
    if (vx <= 0 || vy <= 0) return 0.0;
    return referenceDCov(x, y) / std::sqrt(vx * vy);
}

std::vector<double> randomColumn(std::mt19937& rng, std::size_t n) {
    std::normal_distribution<double> normal(0.0, 1.0);
    std::vector<double> column(n);
    for (double& v : column) v = normal(rng);
    return column;
}

// Observed statistics of a set of columns through the engine.
struct Observed {
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    std::vector<double> dCov;
    std::vector<double> dVar;
};

Observed observe(const DistanceCorrAlgo& algo, const std::vector<std::vector<double>>& columns) {
    Observed o;
    std::vector<Matrix> distances;
    algo.performEuclideanDistanceAnalysis(columns, distances);
    Matrix rowMeans;
    Matrix colMeans;
    std::vector<double> grand;
    algo.calculateRowMean(distances, rowMeans);
    algo.calculateColumnMean(distances, colMeans);
    algo.calculateGlobalMean(distances, grand);
    algo.calculateCenteredMatrix(distances, rowMeans, colMeans, grand, o.centered);
    algo.calculateDistanceCovariance(o.centered, o.dCov);
    algo.calculateDistanceVariance(o.centered, o.dVar);
    algo.calculateDistanceCorrelation(o.dCov, o.dVar, o.dCor);
    return o;
}

template <typename F>
std::string thrownText(F&& f) {
    try {
        f();
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "(nothing thrown)";
}

}  // namespace

TEST(DistanceCorrAlgoStatistics, IdenticalThreeCasesGiveFortyOverEightyOne) {
    EngineRun run;
    Matrix d;
    run.algo.calculateEuclideanDistanceMatrix({1, 2, 3}, d);
    EXPECT_EQ(d, (Matrix{{0, 1, 2}, {1, 0, 1}, {2, 1, 0}}));

    Matrix rowMeans;
    run.algo.calculateRowMean({d, d}, rowMeans);
    ASSERT_EQ(rowMeans.size(), 2u);
    EXPECT_DOUBLE_EQ(rowMeans[0][0], 1.0);
    EXPECT_DOUBLE_EQ(rowMeans[0][1], 2.0 / 3.0);
    EXPECT_DOUBLE_EQ(rowMeans[0][2], 1.0);
    EXPECT_DOUBLE_EQ(run.algo.calculateAverageOfMatrix(d), 8.0 / 9.0);

    const Observed o = observe(run.algo, {{1, 2, 3}, {1, 2, 3}});
    EXPECT_NEAR(o.dCov[0], 40.0 / 81.0, 1e-15);
    EXPECT_NEAR(o.dVar[0], 40.0 / 81.0, 1e-15);
    EXPECT_NEAR(o.dVar[1], 40.0 / 81.0, 1e-15);
    EXPECT_DOUBLE_EQ(o.dCor[0], 1.0);
}

TEST(DistanceCorrAlgoStatistics, FiveCaseExampleMatchesHandCalculation) {
    // By hand (exact fractions): dCov = 168/125, dVarX = 152/125,
    // dVarY = 2744/625, dCor = 1.344 / sqrt(1.216 * 4.3904) = 0.5816750507.
    EngineRun run;
    const std::vector<double> x{1, 2, 3, 4, 5};
    const std::vector<double> y{1, 2, 9, 4, 4};
    const Observed o = observe(run.algo, {x, y});
    EXPECT_NEAR(o.dCov[0], 168.0 / 125.0, 1e-13);
    EXPECT_NEAR(o.dVar[0], 152.0 / 125.0, 1e-13);
    EXPECT_NEAR(o.dVar[1], 2744.0 / 625.0, 1e-13);
    EXPECT_NEAR(o.dCor[0], 0.5816750507, 1e-9);
    EXPECT_NEAR(o.dCov[0], referenceDCov(x, y), 1e-12);
    EXPECT_NEAR(o.dCor[0], referenceDCor(x, y), 1e-12);
}

TEST(DistanceCorrAlgoStatistics, RecordsHoldRoundedValuesInPairOrder) {
    EngineRun run({{1, 2, 3, 4, 5}, {1, 2, 9, 4, 4}, {5, 3, 1, 2, 2}});
    run.descriptives.resize(3);
    std::vector<Matrix> distances;
    run.algo.performEuclideanDistanceAnalysis(run.settings.globalSettings().getGlobalData(), distances);
    const std::vector<Matrix> kept = distances;
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    run.algo.computeDistanceCorrelation(distances, centered, dCor);

    ASSERT_EQ(run.results.size(), 3u);
    EXPECT_EQ(run.results[0].varName1, "V1");
    EXPECT_EQ(run.results[0].varName2, "V2");
    EXPECT_EQ(run.results[1].varName1, "V1");
    EXPECT_EQ(run.results[1].varName2, "V3");
    EXPECT_EQ(run.results[2].varName1, "V2");
    EXPECT_EQ(run.results[2].varName2, "V3");
    EXPECT_DOUBLE_EQ(run.results[0].dCov, 1.344);
    EXPECT_DOUBLE_EQ(run.results[0].dCor, 0.5817);
    EXPECT_DOUBLE_EQ(run.descriptives[0].distVariance, 1.216);
    EXPECT_DOUBLE_EQ(run.descriptives[1].distVariance, 4.3904);
    // Everything else of a pair record stays zero here.
    EXPECT_EQ(run.results[0].pValue, 0.0);
    EXPECT_EQ(run.results[0].ciLower, 0.0);
    // The const form copies: the caller's matrices are untouched.
    EXPECT_EQ(distances, kept);
    EXPECT_EQ(run.descriptives[2].distanceMatrix, kept[2]);
    ASSERT_EQ(dCor.size(), 3u);
    EXPECT_NEAR(dCor[0], 0.5816750507, 1e-9);  // unrounded
    EXPECT_EQ(centered.size(), 3u);
}

TEST(DistanceCorrAlgoStatistics, MovingFormGivesTheSameRecords) {
    EngineRun copying({{1, 2, 3, 4, 5}, {1, 2, 9, 4, 4}});
    EngineRun moving({{1, 2, 3, 4, 5}, {1, 2, 9, 4, 4}});
    for (EngineRun* run : {&copying, &moving}) run->descriptives.resize(2);
    std::vector<Matrix> distances;
    copying.algo.performEuclideanDistanceAnalysis(copying.settings.globalSettings().getGlobalData(), distances);
    std::vector<Matrix> centeredA;
    std::vector<Matrix> centeredB;
    std::vector<double> dCorA;
    std::vector<double> dCorB;
    copying.algo.computeDistanceCorrelation(distances, centeredA, dCorA);
    moving.algo.computeDistanceCorrelation(std::move(distances), centeredB, dCorB);
    EXPECT_EQ(dCorA, dCorB);
    EXPECT_EQ(centeredA, centeredB);
    EXPECT_EQ(copying.descriptives[1].distanceMatrix, moving.descriptives[1].distanceMatrix);
    EXPECT_EQ(copying.results[0].dCov, moving.results[0].dCov);
}

TEST(DistanceCorrAlgoStatistics, SizeMismatchWritesNoRecordsAndDoesNotThrow) {
    EngineRun run({{1, 2, 3}, {3, 1, 2}});
    // No descriptive records exist, so the consistency check fails silently.
    std::vector<Matrix> distances;
    run.algo.performEuclideanDistanceAnalysis(run.settings.globalSettings().getGlobalData(), distances);
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    EXPECT_NO_THROW(run.algo.computeDistanceCorrelation(distances, centered, dCor));
    EXPECT_TRUE(run.results.empty());
    EXPECT_EQ(dCor.size(), 1u);
}

TEST(DistanceCorrAlgoStatistics, ConstantVariableGivesZeroEverywhere) {
    EngineRun run;
    const Observed o = observe(run.algo, {{4, 4, 4, 4}, {1, 5, 2, 8}});
    for (const auto& row : o.centered[0]) {
        for (double v : row) EXPECT_EQ(v, 0.0);
    }
    EXPECT_EQ(o.dVar[0], 0.0);
    EXPECT_EQ(o.dCov[0], 0.0);
    EXPECT_EQ(o.dCor[0], 0.0);
}

TEST(DistanceCorrAlgoStatistics, OneCaseGivesZeroMatricesAndZeroStatistics) {
    EngineRun run;
    const Observed o = observe(run.algo, {{7}, {3}});
    EXPECT_EQ(o.centered[0], (Matrix{{0.0}}));
    EXPECT_EQ(o.dVar[0], 0.0);
    EXPECT_EQ(o.dCor[0], 0.0);
}

TEST(DistanceCorrAlgoStatistics, NaNVariableGetsNaNVarianceAndZeroCorrelation) {
    EngineRun run;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Observed o = observe(run.algo, {{1, nan, 3, 4}, {2, 1, 4, 3}, {1, 2, 3, 5}});
    EXPECT_TRUE(std::isnan(o.dVar[0]));
    EXPECT_TRUE(std::isnan(o.dCov[0]));
    EXPECT_TRUE(std::isnan(o.dCov[1]));
    EXPECT_EQ(o.dCor[0], 0.0);
    EXPECT_EQ(o.dCor[1], 0.0);
    EXPECT_GT(o.dCor[2], 0.0);  // the pair without the NaN is unaffected
}

TEST(DistanceCorrAlgoStatistics, LogOfValueBelowMinusOneGivesCorrelationZero) {
    EngineRun run({{0, 1, -2, 3, 4}, {1, 2, 3, 4, 5}});
    run.settings.criteria().set_normalization("LOG");
    ASSERT_EQ(run.algo.start(), 0);
    ASSERT_EQ(run.results.size(), 1u);
    EXPECT_EQ(run.results[0].dCor, 0.0);
    EXPECT_TRUE(std::isnan(run.descriptives[0].distVariance));
}

TEST(DistanceCorrAlgoStatistics, NegativeCovarianceIsClampedToZeroAndRatioAboveOneToOne) {
    EngineRun run;
    std::vector<double> dCor;
    run.algo.calculateDistanceCorrelation({-0.5, 2.0, 0.5}, {1.0, 1.0, 1.0}, dCor);
    EXPECT_EQ(dCor, (std::vector<double>{0.0, 1.0, 0.5}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    run.algo.calculateDistanceCorrelation({nan}, {1.0, 1.0}, dCor);
    EXPECT_EQ(dCor[0], 0.0);
}

TEST(DistanceCorrAlgoStatistics, VarianceOfExactlyEpsilonStillDivides) {
    EngineRun run;
    std::vector<double> dCor;
    run.algo.calculateDistanceCorrelation({5e-5}, {1e-8, 1.0}, dCor);
    EXPECT_DOUBLE_EQ(dCor[0], 0.5);  // 5e-5 / sqrt(1e-8)
    run.algo.calculateDistanceCorrelation({5e-5}, {0.99e-8, 1.0}, dCor);
    EXPECT_EQ(dCor[0], 0.0);
}

TEST(DistanceCorrAlgoStatistics, TriangularIndexInvertsThePairOrder) {
    std::uint64_t i = 9;
    std::uint64_t j = 9;
    const std::pair<std::uint64_t, std::uint64_t> expected3[] = {{0, 1}, {0, 2}, {1, 2}};
    for (std::uint64_t k = 0; k < 3; ++k) {
        DistanceCorrAlgo::triangularIndex(k, i, j, 3);
        EXPECT_EQ(std::make_pair(i, j), expected3[k]) << "k=" << k;
        EXPECT_EQ(DistanceCorrAlgo::triangularIndex(k, 3), expected3[k]);
    }
    for (std::uint64_t n = 2; n <= 30; ++n) {
        std::uint64_t k = 0;
        for (std::uint64_t a = 0; a < n; ++a) {
            for (std::uint64_t b = a + 1; b < n; ++b, ++k) {
                ASSERT_EQ(k, a * n - a * (a + 1) / 2 + (b - a - 1));
                DistanceCorrAlgo::triangularIndex(k, i, j, n);
                ASSERT_EQ(i, a) << "n=" << n << " k=" << k;
                ASSERT_EQ(j, b) << "n=" << n << " k=" << k;
            }
        }
    }
}

TEST(DistanceCorrAlgoStatistics, RoundToPrecisionRoundsHalvesAwayFromZero) {
    EXPECT_DOUBLE_EQ(DistanceCorrAlgo::roundToPrecision(0.49382716, 4), 0.4938);
    EXPECT_DOUBLE_EQ(DistanceCorrAlgo::roundToPrecision(0.12345678, 4), 0.1235);
    EXPECT_DOUBLE_EQ(DistanceCorrAlgo::roundToPrecision(2.5, 0), 3.0);
    EXPECT_DOUBLE_EQ(DistanceCorrAlgo::roundToPrecision(-2.5, 0), -3.0);
    EXPECT_DOUBLE_EQ(DistanceCorrAlgo::roundToPrecision(0.125, 2), 0.13);
    EXPECT_DOUBLE_EQ(DistanceCorrAlgo::roundToPrecision(-0.125, 2), -0.13);
    EXPECT_DOUBLE_EQ(DistanceCorrAlgo::roundToPrecision(1234.5, -1), 1230.0);
}

TEST(DistanceCorrAlgoStatistics, PlainSumBelowHundredRowsOptimizedFromHundred) {
    EngineRun run;
    // Values whose squares sum differently in the two orders, so that the
    // chosen method is visible in the last bits.
    auto matrix = [](std::size_t n) {
        Matrix m(n, std::vector<double>(n));
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < n; ++j) m[i][j] = 1.0 / (1.0 + static_cast<double>(i * n + j) * 0.37) + 1e-3 * j;
        }
        return m;
    };
    bool sawDifference = false;
    for (std::size_t n : {99u, 100u, 999u, 1000u}) {
        const Matrix m = matrix(n);
        const double plain = run.algo.calculateDistanceVariance(m);
        const double optimized = run.algo.calculateMatrixVarianceOptimized(m);
        EXPECT_NEAR(plain, optimized, 1e-12 * std::fabs(plain));
        EXPECT_EQ(run.algo.calculateVarianceAutoSwitch(m), n < 100 ? plain : optimized) << "n=" << n;
        sawDifference = sawDifference || plain != optimized;
    }
    // Independent check of the summation order of both forms for n = 99 / 100.
    for (std::size_t n : {99u, 100u}) {
        const Matrix m = matrix(n);
        double plain = 0.0;
        double total = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            double rowSum = 0.0;
            std::size_t j = 0;
            for (; j + 4 <= n; j += 4) {
                rowSum += m[i][j] * m[i][j] + m[i][j + 1] * m[i][j + 1] + m[i][j + 2] * m[i][j + 2] +
                          m[i][j + 3] * m[i][j + 3];
            }
            for (; j < n; ++j) rowSum += m[i][j] * m[i][j];
            total += rowSum;
            for (std::size_t c = 0; c < n; ++c) plain += m[i][c] * m[i][c];
        }
        const double nn = static_cast<double>(n * n);
        EXPECT_EQ(run.algo.calculateDistanceVariance(m), plain / nn);
        EXPECT_EQ(run.algo.calculateMatrixVarianceOptimized(m), total / nn);
    }
    EXPECT_TRUE(sawDifference) << "test matrices do not tell the two methods apart";
    EXPECT_EQ(run.algo.calculateMatrixVarianceOptimized(Matrix{}), 0.0);
}

TEST(DistanceCorrAlgoStatistics, PairCovarianceSumsInBlocksOfFour) {
    EngineRun run;
    // Values of mixed magnitude (b is all ones, so the products are a): the
    // block grouping, a per-row sum and a plain sum all differ in the last bits.
    const std::size_t n = 11;
    Matrix a(n, std::vector<double>(n));
    const Matrix b(n, std::vector<double>(n, 1.0));
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            a[i][j] = 1.0 / static_cast<double>(1 + i * n + j) * ((i + j) % 3 == 0 ? 1e3 : 1.0);
        }
    }
    double blocks = 0.0;
    double otherGrouping = 0.0;
    double rowByRow = 0.0;
    double plain = 0.0;
    for (const auto& x : a) {
        double row = 0.0;
        std::size_t j = 0;
        for (; j + 4 <= n; j += 4) {
            blocks += ((x[j] + x[j + 1] + x[j + 2]) + x[j + 3]);
            otherGrouping += (x[j] + (x[j + 1] + x[j + 2] + x[j + 3]));
            row += ((x[j] + x[j + 1] + x[j + 2]) + x[j + 3]);
        }
        for (; j < n; ++j) {
            blocks += x[j];
            otherGrouping += x[j];
            row += x[j];
        }
        rowByRow += row;
        for (double v : x) plain += v;
    }
    ASSERT_NE(blocks, otherGrouping);
    ASSERT_NE(blocks, rowByRow);
    ASSERT_NE(blocks, plain);
    EXPECT_EQ(run.algo.calculatePairDistanceCovariance(a, b, n), blocks / 121.0);
}

TEST(DistanceCorrAlgoStatistics, CentringSubtractsRowThenColumnMeanThenAddsGrandMean) {
    EngineRun run;
    const std::vector<double> values{0.1, 1e8 + 0.3, 0.7, 3.3, -2.9};
    std::vector<Matrix> distances(1);
    run.algo.calculateEuclideanDistanceMatrix(values, distances[0]);
    Matrix rowMeans;
    Matrix colMeans;
    std::vector<double> grand;
    run.algo.calculateRowMean(distances, rowMeans);
    run.algo.calculateColumnMean(distances, colMeans);
    run.algo.calculateGlobalMean(distances, grand);
    std::vector<Matrix> centered;
    run.algo.calculateCenteredMatrix(distances, rowMeans, colMeans, grand, centered);
    bool orderMatters = false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j) {
            const double d = distances[0][i][j];
            const double expected = d - rowMeans[0][i] - colMeans[0][j] + grand[0];
            EXPECT_EQ(centered[0][i][j], expected);
            orderMatters = orderMatters || expected != d + grand[0] - rowMeans[0][i] - colMeans[0][j];
        }
    }
    EXPECT_TRUE(orderMatters) << "data do not tell the evaluation orders apart";
}

TEST(DistanceCorrAlgoStatistics, ExceptionTextsAreExact) {
    EngineRun run;
    Matrix m;
    std::vector<Matrix> ms;
    Matrix means;
    std::vector<double> v;
    EXPECT_EQ(thrownText([&] { run.algo.performEuclideanDistanceAnalysis({{1, 2}}, ms); }), "Dataset too small");
    EXPECT_EQ(thrownText([&] { run.algo.calculateEuclideanDistanceMatrix({}, m); }), "Insufficient data points");
    EXPECT_EQ(thrownText([&] { run.algo.calculateCenteredMatrix({}, {}, {}, {}, ms); }), "Invalid input dimensions");
    const Matrix d2{{0, 1}, {1, 0}};
    const Matrix d3{{0, 1, 2}, {1, 0, 1}, {2, 1, 0}};
    EXPECT_EQ(thrownText([&] { run.algo.calculateCenteredMatrix({d2}, {{0.5, 0.5}}, {}, {0.5}, ms); }),
              "Invalid input dimensions");
    EXPECT_EQ(thrownText([&] {
                  run.algo.calculateCenteredMatrix({d2, d3}, {{0.5, 0.5}, {1, 1, 1}}, {{0.5, 0.5}, {1, 1, 1}},
                                                   {0.5, 1}, ms);
              }),
              "Inconsistent matrix dimensions");
    EXPECT_EQ(thrownText([&] { run.algo.calculateDistanceCovariance({}, v); }), "Empty centered matrix");
    EXPECT_EQ(thrownText([&] { run.algo.calculatePairDistanceCovariance(d2, d3, 2); }), "Matrix dimension mismatch");
    EXPECT_EQ(thrownText([&] { run.algo.calculatePairDistanceCovariance({}, {}, 0); }), "Matrix dimension mismatch");
    EXPECT_EQ(thrownText([&] { run.algo.calculateDistanceCorrelation({}, {1.0}, v); }),
              "distCov or distVariance is empty for calculating distance correlation.");
    EXPECT_EQ(thrownText([&] { run.algo.calculateDistanceCorrelation({1.0}, {1.0, 1.0, 1.0}, v); }),
              "Not enough elements in distCov for the number of variance pairs.");
    EXPECT_EQ(thrownText([&] { run.algo.computeDistanceCorrelation(std::vector<Matrix>{}, ms, v); }),
              "Invalid input size for distance matrix");
}

TEST(DistanceCorrAlgoStatistics, MatchesIndependentFormulaOnRandomData) {
    EngineRun run;
    std::mt19937 rng(12345);
    for (std::size_t n : {2u, 3u, 10u, 57u}) {
        const std::vector<double> x = randomColumn(rng, n);
        std::vector<double> y = randomColumn(rng, n);
        for (std::size_t c = 0; c < n; ++c) y[c] += x[c] * x[c];  // some dependence
        const Observed o = observe(run.algo, {x, y});
        EXPECT_NEAR(o.dCov[0], referenceDCov(x, y), 1e-12) << "n=" << n;
        EXPECT_NEAR(o.dVar[0], referenceDCov(x, x), 1e-12) << "n=" << n;
        EXPECT_NEAR(o.dCor[0], referenceDCor(x, y), 1e-12) << "n=" << n;
    }
}

TEST(DistanceCorrAlgoStatistics, CorrelationOfAVariableWithItselfIsOne) {
    std::mt19937 rng(7);
    for (int rep = 0; rep < 5; ++rep) {
        const std::vector<double> x = randomColumn(rng, 20 + static_cast<std::size_t>(rep) * 30);
        EngineRun run({x, x});
        // dCov and dVar sum in different orders, so the ratio may miss 1 in
        // the last bits; the clamp keeps it from exceeding 1.
        EXPECT_NEAR(observe(run.algo, {x, x}).dCor[0], 1.0, 1e-12);
        EXPECT_LE(observe(run.algo, {x, x}).dCor[0], 1.0);
        ASSERT_EQ(run.algo.start(), 0);
        EXPECT_EQ(run.results[0].dCor, 1.0);
    }
}

TEST(DistanceCorrAlgoStatistics, CorrelationIsInvariantToShiftAndCaseOrder) {
    EngineRun run;
    std::mt19937 rng(99);
    for (int rep = 0; rep < 5; ++rep) {
        const std::size_t n = 15 + static_cast<std::size_t>(rep) * 7;
        const std::vector<double> x = randomColumn(rng, n);
        std::vector<double> y = randomColumn(rng, n);
        for (std::size_t c = 0; c < n; ++c) y[c] += std::sin(3 * x[c]);
        const double base = observe(run.algo, {x, y}).dCor[0];

        std::vector<double> shifted = y;
        for (double& v : shifted) v += 1000.5;
        EXPECT_NEAR(observe(run.algo, {x, shifted}).dCor[0], base, 1e-9);

        std::vector<std::size_t> order(n);
        for (std::size_t c = 0; c < n; ++c) order[c] = c;
        std::shuffle(order.begin(), order.end(), rng);
        std::vector<double> xr(n);
        std::vector<double> yr(n);
        for (std::size_t c = 0; c < n; ++c) {
            xr[c] = x[order[c]];
            yr[c] = y[order[c]];
        }
        EXPECT_NEAR(observe(run.algo, {xr, yr}).dCor[0], base, 1e-12);
    }
}

TEST(DistanceCorrAlgoStatistics, CorrelationLiesBetweenZeroAndOne) {
    EngineRun run;
    std::mt19937 rng(2024);
    for (int rep = 0; rep < 30; ++rep) {
        const std::size_t n = 2 + static_cast<std::size_t>(rep);
        const Observed o = observe(run.algo, {randomColumn(rng, n), randomColumn(rng, n), randomColumn(rng, n)});
        for (double r : o.dCor) {
            EXPECT_GE(r, 0.0);
            EXPECT_LE(r, 1.0);
        }
    }
}
