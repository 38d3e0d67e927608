// The engine's fused observed path against a literal transcription of the
// step-by-step recipe, compared bit for bit: distance matrices, row, column
// and grand means, centred matrices, dCov, dVar and dCor; on the calling
// thread and split across host worker pools of 1, 2, 3 and 8 workers.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "CountingWorkerPool.h"
#include "EngineTestSettings.h"
#include "FixedWorkerPool.h"

using Matrix = DistanceCorrAlgo::Matrix;

// Reaches the engine's fused passes (a friend of DistanceCorrAlgo).
class DistanceCorrAlgoObservedProbe {
public:
    struct Output {
        std::vector<Matrix> centered;
        Matrix rowMeans;
        Matrix colMeans;
        std::vector<double> grandMeans;
        std::vector<double> dCov;
        std::vector<double> dVar;
    };
    static bool run(const DistanceCorrAlgo& algo, const std::vector<Matrix>& distances, Output& out) {
        return algo.computeObservedStatistics(distances, out.centered, out.rowMeans, out.colMeans, out.grandMeans,
                                              out.dCov, out.dVar);
    }
};

namespace {

using Probe = DistanceCorrAlgoObservedProbe;
using Columns = std::vector<std::vector<double>>;

// The recipe written out plainly, one step after the other.
struct Literal {
    std::vector<Matrix> distances;
    Matrix rowMeans;
    Matrix colMeans;
    std::vector<double> grandMeans;
    std::vector<Matrix> centered;
    std::vector<double> dCov;
    std::vector<double> dVar;
    std::vector<double> dCor;
};

Literal literalRecipe(const Columns& data) {
    Literal s;
    const std::size_t v = data.size();
    // Distances: zero diagonal, |x_j - x_i| for j > i, mirrored below.
    for (const std::vector<double>& x : data) {
        const std::size_t n = x.size();
        Matrix d(n, std::vector<double>(n));
        for (std::size_t i = 0; i < n; ++i) {
            d[i][i] = 0.0;
            for (std::size_t j = i + 1; j < n; ++j) {
                const double value = std::fabs(x[j] - x[i]);
                d[i][j] = value;
                d[j][i] = value;
            }
        }
        s.distances.push_back(d);
    }
    for (const Matrix& d : s.distances) {
        const std::size_t n = d.size();
        // Row means: each row left to right from 0.0, over the row count.
        std::vector<double> rowMeans;
        for (std::size_t i = 0; i < n; ++i) {
            double sum = 0.0;
            for (std::size_t j = 0; j < n; ++j) sum = sum + d[i][j];
            rowMeans.push_back(sum / static_cast<double>(n));
        }
        s.rowMeans.push_back(rowMeans);
        // Column means: sums accumulated row by row, over the column count.
        std::vector<double> colSums(n, 0.0);
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < n; ++j) colSums[j] = colSums[j] + d[i][j];
        }
        for (double& c : colSums) c = c / static_cast<double>(n);
        s.colMeans.push_back(colSums);
        // Grand mean: each row summed from 0.0 and added to a running total.
        double total = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            double rowSum = 0.0;
            for (std::size_t j = 0; j < n; ++j) rowSum = rowSum + d[i][j];
            total = total + rowSum;
        }
        s.grandMeans.push_back(total / static_cast<double>(n * n));
    }
    // Centring: subtract the row mean, then the column mean, add the grand mean.
    for (std::size_t k = 0; k < v; ++k) {
        const Matrix& d = s.distances[k];
        const std::size_t n = d.size();
        Matrix a(n, std::vector<double>(n));
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < n; ++j) {
                double x = d[i][j] - s.rowMeans[k][i];
                x = x - s.colMeans[k][j];
                a[i][j] = x + s.grandMeans[k];
            }
        }
        s.centered.push_back(a);
    }
    // dCov: one running sum, blocks of four as ((p0 + p1 + p2) + p3), then
    // the remaining columns of the row one by one.
    for (std::size_t p = 0; p < v; ++p) {
        for (std::size_t q = p + 1; q < v; ++q) {
            const Matrix& a = s.centered[p];
            const Matrix& b = s.centered[q];
            const std::size_t n = a.size();
            double sum = 0.0;
            for (std::size_t i = 0; i < n; ++i) {
                std::size_t j = 0;
                for (; j + 4 <= n; j += 4) {
                    const double p0 = a[i][j] * b[i][j];
                    const double p1 = a[i][j + 1] * b[i][j + 1];
                    const double p2 = a[i][j + 2] * b[i][j + 2];
                    const double p3 = a[i][j + 3] * b[i][j + 3];
                    const double block = ((p0 + p1) + p2) + p3;
                    sum = sum + block;
                }
                for (; j < n; ++j) sum = sum + a[i][j] * b[i][j];
            }
            s.dCov.push_back(sum / static_cast<double>(n * n));
        }
    }
    // dVar: below 100 rows one plain running sum of squares; from 100 rows a
    // sum per row in blocks of four, (a0² + a1² + a2² + a3²), each row sum
    // then added to the total.
    for (const Matrix& a : s.centered) {
        const std::size_t n = a.size();
        auto plain = [&] {
            double total = 0.0;
            for (std::size_t i = 0; i < n; ++i) {
                for (std::size_t j = 0; j < n; ++j) total = total + a[i][j] * a[i][j];
            }
            return total;
        };
        auto byRows = [&] {
            double total = 0.0;
            for (std::size_t i = 0; i < n; ++i) {
                double rowSum = 0.0;
                std::size_t j = 0;
                for (; j + 4 <= n; j += 4) {
                    const double s0 = a[i][j] * a[i][j];
                    const double s1 = a[i][j + 1] * a[i][j + 1];
                    const double s2 = a[i][j + 2] * a[i][j + 2];
                    const double s3 = a[i][j + 3] * a[i][j + 3];
                    rowSum = rowSum + (((s0 + s1) + s2) + s3);
                }
                for (; j < n; ++j) rowSum = rowSum + a[i][j] * a[i][j];
                total = total + rowSum;
            }
            return total;
        };
        double total = 0.0;
        if (n >= 1000) {
            total = byRows();
        } else if (n < 100) {
            total = plain();
        } else {
            total = byRows();
        }
        s.dVar.push_back(total / static_cast<double>(n * n));
    }
    // dCor: 0 unless both variances and the root of their product reach 1e-8;
    // then the ratio clamped to [0, 1].
    std::size_t k = 0;
    for (std::size_t p = 0; p < v; ++p) {
        for (std::size_t q = p + 1; q < v; ++q, ++k) {
            double r = 0.0;
            if (s.dVar[p] >= 1e-8 && s.dVar[q] >= 1e-8) {
                const double root = std::sqrt(s.dVar[p] * s.dVar[q]);
                if (root >= 1e-8) r = std::min(1.0, std::max(0.0, s.dCov[k] / root));
            }
            s.dCor.push_back(r);
        }
    }
    return s;
}

std::uint64_t bitsOf(double x) {
    std::uint64_t b = 0;
    std::memcpy(&b, &x, sizeof b);
    return b;
}

// Equal bits; any NaN matches any NaN (the payload a NaN carries is not
// something the recipe fixes).
bool sameBits(double a, double b) { return (std::isnan(a) && std::isnan(b)) || bitsOf(a) == bitsOf(b); }

std::string show(double x) {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g (0x%016llx)", x, static_cast<unsigned long long>(bitsOf(x)));
    return text;
}

::testing::AssertionResult sameList(const std::vector<double>& actual, const std::vector<double>& expected) {
    if (actual.size() != expected.size()) {
        return ::testing::AssertionFailure() << "size " << actual.size() << ", expected " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (!sameBits(actual[i], expected[i])) {
            return ::testing::AssertionFailure()
                   << "element " << i << ": " << show(actual[i]) << ", expected " << show(expected[i]);
        }
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult sameMatrix(const Matrix& actual, const Matrix& expected) {
    if (actual.size() != expected.size()) {
        return ::testing::AssertionFailure() << "rows " << actual.size() << ", expected " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        const ::testing::AssertionResult row = sameList(actual[i], expected[i]);
        if (!row) return ::testing::AssertionFailure() << "row " << i << ": " << row.message();
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult sameMatrices(const std::vector<Matrix>& actual, const std::vector<Matrix>& expected) {
    if (actual.size() != expected.size()) {
        return ::testing::AssertionFailure() << actual.size() << " matrices, expected " << expected.size();
    }
    for (std::size_t k = 0; k < actual.size(); ++k) {
        const ::testing::AssertionResult m = sameMatrix(actual[k], expected[k]);
        if (!m) return ::testing::AssertionFailure() << "matrix " << k << ", " << m.message();
    }
    return ::testing::AssertionSuccess();
}

enum class Kind { Dependent, MixedMagnitudes, Constant, WithNaN, Ties, WithInfinity };

const char* nameOf(Kind kind) {
    switch (kind) {
        case Kind::Dependent:
            return "dependent";
        case Kind::MixedMagnitudes:
            return "mixed magnitudes";
        case Kind::Constant:
            return "constant column";
        case Kind::WithNaN:
            return "NaN";
        case Kind::Ties:
            return "ties";
        case Kind::WithInfinity:
            return "infinity";
    }
    return "?";
}

// V columns of n cases. The first column is normal; the others depend on it
// with noise. Mixed magnitudes make every change of summation order visible
// in the last bits.
Columns makeColumns(Kind kind, std::size_t v, std::size_t n, std::uint32_t seed) {
    std::mt19937 rng(seed);
    std::normal_distribution<double> normal(0.0, 1.0);
    Columns data(v, std::vector<double>(n));
    for (std::size_t c = 0; c < n; ++c) {
        const double base = normal(rng);
        data[0][c] = base;
        for (std::size_t k = 1; k < v; ++k) data[k][c] = 0.5 * base * base * static_cast<double>(k) + normal(rng);
    }
    std::uniform_int_distribution<std::size_t> position(0, n - 1);
    switch (kind) {
        case Kind::Dependent:
            break;
        case Kind::MixedMagnitudes:
            for (std::size_t c = 0; c < n; ++c) {
                data[0][c] = (c % 3 == 0 ? 1e8 : 1.0) * data[0][c] + 1e-3 * static_cast<double>(c);
                data[v - 1][c] *= (c % 7 == 0 ? 1e-6 : 1e3);
            }
            break;
        case Kind::Constant:
            for (double& x : data[v - 1]) x = 4.25;
            break;
        case Kind::WithNaN:
            data[0][position(rng)] = std::numeric_limits<double>::quiet_NaN();
            break;
        case Kind::Ties:
            for (std::vector<double>& column : data) {
                for (double& x : column) x = std::round(std::fabs(x));
            }
            break;
        case Kind::WithInfinity:
            data[v - 1][position(rng)] = std::numeric_limits<double>::infinity();
            break;
    }
    return data;
}

// check() under no pool, a pool of one worker (which the engine runs on the
// calling thread), thread pools of 2, 3 and 8 workers, and 3 workers scrambled.
void underEveryPool(const std::function<void()>& check) {
    {
        SCOPED_TRACE("no worker pool");
        check();
    }
    {
        SCOPED_TRACE("a pool of 1 worker");
        const ScopedThreadCount one(1);
        check();
    }
    for (const auto& [threads, scrambled] : {std::pair{2u, false}, {3u, false}, {8u, false}, {3u, true}}) {
        SCOPED_TRACE(std::to_string(threads) + (scrambled ? " workers, tasks scrambled" : " worker threads"));
        CountingWorkerPool pool(threads, scrambled);
        {
            const InstalledWorkerPool installed(&pool);
            check();
        }
        EXPECT_GT(pool.tasks(), 0u) << "the work was not split";
        EXPECT_FALSE(pool.badWorker());
    }
}

std::string label(Kind kind, std::size_t v, std::size_t n) {
    return std::string(nameOf(kind)) + ", " + std::to_string(v) + " variables, n = " + std::to_string(n);
}

// Runs the engine's observed path three ways and compares each with the
// literal recipe: the distance matrices, the fused passes themselves (means
// included), and the records that computeDistanceCorrelation leaves.
void expectSameAsRecipeOnce(const Columns& data, const Literal& expected) {
    EngineRun run(data);

    std::vector<Matrix> distances;
    run.algo.performEuclideanDistanceAnalysis(data, distances);
    EXPECT_TRUE(sameMatrices(distances, expected.distances)) << "distance matrices";
    for (std::size_t k = 0; k < data.size(); ++k) {
        Matrix single;
        run.algo.calculateEuclideanDistanceMatrix(data[k], single);
        EXPECT_TRUE(sameMatrix(single, expected.distances[k])) << "distance matrix " << k << " alone";
    }

    Probe::Output fused;
    ASSERT_TRUE(Probe::run(run.algo, distances, fused));
    EXPECT_TRUE(sameMatrix(fused.rowMeans, expected.rowMeans)) << "row means";
    EXPECT_TRUE(sameMatrix(fused.colMeans, expected.colMeans)) << "column means";
    EXPECT_TRUE(sameList(fused.grandMeans, expected.grandMeans)) << "grand means";
    EXPECT_TRUE(sameMatrices(fused.centered, expected.centered)) << "centred matrices";
    EXPECT_TRUE(sameList(fused.dCov, expected.dCov)) << "dCov";
    EXPECT_TRUE(sameList(fused.dVar, expected.dVar)) << "dVar";

    run.descriptives.resize(data.size());
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    run.algo.computeDistanceCorrelation(std::move(distances), centered, dCor);
    EXPECT_TRUE(sameMatrices(centered, expected.centered)) << "centred matrices of the run";
    EXPECT_TRUE(sameList(dCor, expected.dCor)) << "dCor";
    ASSERT_EQ(run.results.size(), expected.dCov.size());
    for (std::size_t k = 0; k < expected.dCov.size(); ++k) {
        EXPECT_TRUE(sameBits(run.results[k].dCov, DistanceCorrAlgo::roundToPrecision(expected.dCov[k], 4))) << k;
        EXPECT_TRUE(sameBits(run.results[k].dCor, DistanceCorrAlgo::roundToPrecision(expected.dCor[k], 4))) << k;
    }
    for (std::size_t k = 0; k < data.size(); ++k) {
        EXPECT_TRUE(
            sameBits(run.descriptives[k].distVariance, DistanceCorrAlgo::roundToPrecision(expected.dVar[k], 4)));
        EXPECT_TRUE(sameMatrix(run.descriptives[k].distanceMatrix, expected.distances[k])) << "record " << k;
    }
    std::size_t k = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        for (std::size_t j = i + 1; j < data.size(); ++j, ++k) {
            EXPECT_EQ(run.results[k].varName1, "V" + std::to_string(i + 1));
            EXPECT_EQ(run.results[k].varName2, "V" + std::to_string(j + 1));
        }
    }
}

void expectSameAsRecipe(const Columns& data, const std::string& what) {
    SCOPED_TRACE(what);
    const Literal expected = literalRecipe(data);
    underEveryPool([&] { expectSameAsRecipeOnce(data, expected); });
}

}  // namespace

TEST(DistanceCorrAlgoObservedExact, TranscriptionAgreesWithTheStepFunctions) {
    // The recipe above is checked once against the engine's step-by-step
    // operations, so that the comparisons below rest on a faithful copy.
    for (std::size_t n : {1u, 5u, 99u, 100u, 101u}) {
        const Columns data = makeColumns(Kind::MixedMagnitudes, 3, n, 11 + static_cast<std::uint32_t>(n));
        const Literal expected = literalRecipe(data);
        EngineRun run;
        std::vector<Matrix> distances = expected.distances;
        Matrix rowMeans;
        Matrix colMeans;
        std::vector<double> grand;
        std::vector<Matrix> centered;
        std::vector<double> dCov;
        std::vector<double> dVar;
        std::vector<double> dCor;
        run.algo.calculateRowMean(distances, rowMeans);
        run.algo.calculateColumnMean(distances, colMeans);
        run.algo.calculateGlobalMean(distances, grand);
        run.algo.calculateCenteredMatrix(distances, rowMeans, colMeans, grand, centered);
        run.algo.calculateDistanceCovariance(centered, dCov);
        run.algo.calculateDistanceVariance(centered, dVar);
        run.algo.calculateDistanceCorrelation(dCov, dVar, dCor);
        SCOPED_TRACE("n = " + std::to_string(n));
        EXPECT_TRUE(sameMatrix(rowMeans, expected.rowMeans));
        EXPECT_TRUE(sameMatrix(colMeans, expected.colMeans));
        EXPECT_TRUE(sameList(grand, expected.grandMeans));
        EXPECT_TRUE(sameMatrices(centered, expected.centered));
        EXPECT_TRUE(sameList(dCov, expected.dCov));
        EXPECT_TRUE(sameList(dVar, expected.dVar));
        EXPECT_TRUE(sameList(dCor, expected.dCor));
    }
}

TEST(DistanceCorrAlgoObservedExact, SmallAndOddSizesMatchTheRecipe) {
    // Every remainder of the vector widths and of the blocks of four, both
    // sides of the 100-row switch of the variance.
    const std::size_t sizes[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  11,  15,  16,  17,
                                 23, 31, 32, 33, 63, 64, 65, 98, 99, 100, 101, 103, 130};
    std::uint32_t seed = 1;
    for (std::size_t n : sizes) {
        for (Kind kind :
             {Kind::Dependent, Kind::MixedMagnitudes, Kind::Constant, Kind::WithNaN, Kind::Ties, Kind::WithInfinity}) {
            expectSameAsRecipe(makeColumns(kind, 3, n, seed++), label(kind, 3, n));
        }
    }
}

TEST(DistanceCorrAlgoObservedExact, LargeMatricesMatchTheRecipe) {
    // From 16 MiB of rows on, the storage is backed by huge pages; 1,000 rows
    // and more also take the optimized variance by the first test.
    expectSameAsRecipe(makeColumns(Kind::MixedMagnitudes, 2, 1003, 501), label(Kind::MixedMagnitudes, 2, 1003));
    expectSameAsRecipe(makeColumns(Kind::Dependent, 2, 1000, 502), label(Kind::Dependent, 2, 1000));
    expectSameAsRecipe(makeColumns(Kind::WithNaN, 3, 1001, 503), label(Kind::WithNaN, 3, 1001));
    expectSameAsRecipe(makeColumns(Kind::Constant, 2, 1502, 504), label(Kind::Constant, 2, 1502));
    expectSameAsRecipe(makeColumns(Kind::Ties, 4, 777, 505), label(Kind::Ties, 4, 777));
}

TEST(DistanceCorrAlgoObservedExact, TheDataTellSummationOrdersApart) {
    // Bit equality above means something only if another order of the same
    // sums would give other bits on these data.
    const Columns data = makeColumns(Kind::MixedMagnitudes, 2, 1003, 501);
    const Literal expected = literalRecipe(data);
    const Matrix& d = expected.distances[0];
    std::size_t rowsThatDiffer = 0;
    for (const std::vector<double>& row : d) {
        double lanes[4] = {0.0, 0.0, 0.0, 0.0};
        for (std::size_t j = 0; j < row.size(); ++j) lanes[j % 4] += row[j];
        double sum = 0.0;
        for (double x : row) sum += x;
        if (!sameBits(((lanes[0] + lanes[1]) + lanes[2]) + lanes[3], sum)) ++rowsThatDiffer;
    }
    EXPECT_GT(rowsThatDiffer, 100u) << "row sums in four lanes";

    const Matrix& a = expected.centered[0];
    const Matrix& b = expected.centered[1];
    double pairwise = 0.0;
    double perRow = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        double row = 0.0;
        for (std::size_t j = 0; j + 4 <= a.size(); j += 4) {
            const double p0 = a[i][j] * b[i][j];
            const double p1 = a[i][j + 1] * b[i][j + 1];
            const double p2 = a[i][j + 2] * b[i][j + 2];
            const double p3 = a[i][j + 3] * b[i][j + 3];
            pairwise += (p0 + p1) + (p2 + p3);
            row += ((p0 + p1) + p2) + p3;
        }
        for (std::size_t j = a.size() / 4 * 4; j < a.size(); ++j) {
            pairwise += a[i][j] * b[i][j];
            row += a[i][j] * b[i][j];
        }
        perRow += row;
    }
    const double cells = static_cast<double>(a.size() * a.size());
    EXPECT_FALSE(sameBits(pairwise / cells, expected.dCov[0])) << "blocks as (p0 + p1) + (p2 + p3)";
    EXPECT_FALSE(sameBits(perRow / cells, expected.dCov[0])) << "a separate sum per row";
}

TEST(DistanceCorrAlgoObservedExact, OutputStorageIsReusedWithTheSameResults) {
    const Columns data = makeColumns(Kind::MixedMagnitudes, 2, 67, 77);
    const Literal expected = literalRecipe(data);
    underEveryPool([&] {
        EngineRun run(data);
        // Leftovers of other sizes in the output containers change nothing.
        std::vector<Matrix> distances(2, Matrix(80, std::vector<double>(90, -1.0)));
        distances[1].resize(3);
        run.algo.performEuclideanDistanceAnalysis(data, distances);
        EXPECT_TRUE(sameMatrices(distances, expected.distances));
        Probe::Output fused;
        fused.centered.assign(3, Matrix(10, std::vector<double>(200, 9.0)));
        fused.rowMeans.assign(5, {1.0});
        ASSERT_TRUE(Probe::run(run.algo, distances, fused));
        EXPECT_TRUE(sameMatrices(fused.centered, expected.centered));
        EXPECT_TRUE(sameMatrix(fused.rowMeans, expected.rowMeans));
        // A second run into the same containers.
        ASSERT_TRUE(Probe::run(run.algo, distances, fused));
        EXPECT_TRUE(sameMatrices(fused.centered, expected.centered));
        EXPECT_TRUE(sameList(fused.dCov, expected.dCov));
        EXPECT_TRUE(sameList(fused.dVar, expected.dVar));
    });
}

TEST(DistanceCorrAlgoObservedExact, OtherShapesGoStepByStep) {
    EngineRun run;
    Probe::Output fused;
    const Matrix d2{{0, 1}, {1, 0}};
    const Matrix d3{{0, 1, 2}, {1, 0, 1}, {2, 1, 0}};
    EXPECT_FALSE(Probe::run(run.algo, {d2, d3}, fused));
    EXPECT_FALSE(Probe::run(run.algo, {Matrix{{0, 1}, {1}}}, fused));
    EXPECT_FALSE(Probe::run(run.algo, {Matrix{}}, fused));
    EXPECT_TRUE(fused.centered.empty());
    std::vector<Matrix> centered;
    std::vector<double> dCor;
    try {
        run.algo.computeDistanceCorrelation(std::vector<Matrix>{d2, d3}, centered, dCor);
        ADD_FAILURE() << "nothing thrown";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Inconsistent matrix dimensions");
    }
    // Two rows of three columns: centred step by step, as before.
    const Matrix wide{{0, 1, 2}, {1, 0, 1}};
    run.algo.computeDistanceCorrelation(std::vector<Matrix>{wide, wide}, centered, dCor);
    ASSERT_EQ(centered.size(), 2u);
    EXPECT_EQ(centered[0].size(), 2u);
    EXPECT_EQ(centered[0][0].size(), 3u);
}

TEST(DistanceCorrAlgoObservedExact, OneVariableCentresAndThenReportsNoPairs) {
    const Columns data = makeColumns(Kind::MixedMagnitudes, 1, 150, 9);
    const Literal expected = literalRecipe(data);
    underEveryPool([&] {
        EngineRun run;
        Probe::Output fused;
        ASSERT_TRUE(Probe::run(run.algo, expected.distances, fused));
        EXPECT_TRUE(sameMatrices(fused.centered, expected.centered));
        EXPECT_TRUE(sameList(fused.dVar, expected.dVar));
        EXPECT_TRUE(fused.dCov.empty());
        std::vector<Matrix> centered;
        std::vector<double> dCor;
        try {
            run.algo.computeDistanceCorrelation(expected.distances, centered, dCor);
            ADD_FAILURE() << "nothing thrown";
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "distCov or distVariance is empty for calculating distance correlation.");
        }
        EXPECT_TRUE(sameMatrices(centered, expected.centered));
    });
}
