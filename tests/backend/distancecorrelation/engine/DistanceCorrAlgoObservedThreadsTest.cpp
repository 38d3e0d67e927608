// The observed stage on the host's workers: random data sets (ties, missing
// values, every normalization) give the same bits with 1, 2, 3 and 8 workers,
// and with tasks run in a shuffled order, as on the calling thread; and the
// memory guard refuses the same sizes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "CountingWorkerPool.h"
#include "EngineTestSettings.h"
#include "FixedWorkerPool.h"
#include "HostSession.h"

namespace {

using Matrix = DistanceCorrAlgo::Matrix;
const double kMissing = std::numeric_limits<double>::lowest();

struct DataSet {
    Matrix columns;
    std::string normalization;
};

// 2 to 6 variables of 1 to 300 cases (one set in ten 500 to 700, so that the
// sums go in several tiles), values rounded to few levels in some columns
// (ties), some values missing, one of the five normalizations.
DataSet randomDataSet(std::mt19937& rng) {
    static const char* const kNormalizations[] = {"NONE", "MINMAX", "ZSCORE", "ROBUST", "LOG"};
    std::uniform_int_distribution<int> variables(2, 6);
    std::uniform_int_distribution<int> small(1, 300);
    std::uniform_int_distribution<int> large(500, 700);
    std::uniform_int_distribution<int> tenth(0, 9);
    std::normal_distribution<double> normal(0.0, 1.0);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    DataSet set;
    set.normalization = kNormalizations[std::uniform_int_distribution<int>(0, 4)(rng)];
    const std::size_t v = static_cast<std::size_t>(variables(rng));
    const std::size_t n = static_cast<std::size_t>(tenth(rng) == 0 ? large(rng) : small(rng));
    const double missingShare = tenth(rng) < 3 ? 0.05 : 0.0;
    set.columns.assign(v, std::vector<double>(n));
    for (std::size_t k = 0; k < v; ++k) {
        const bool ties = tenth(rng) < 4;
        const double scale = std::pow(10.0, std::uniform_int_distribution<int>(-3, 4)(rng));
        for (std::size_t c = 0; c < n; ++c) {
            double x = (k == 0 ? 0.0 : 0.7 * set.columns[0][c]) + scale * normal(rng);
            if (ties) x = std::round(x / scale) * scale;
            set.columns[k][c] = unit(rng) < missingShare ? kMissing : x;
        }
    }
    return set;
}

// What the observed stage leaves, unrounded where the engine keeps it so.
struct Observed {
    int status = -1;
    std::vector<DistanceCorrResult> results;
    std::vector<DistanceCorrDescriptiveResult> descriptives;
    std::vector<Matrix> centred;
    std::vector<double> dCor;
};

Observed observe(const DataSet& set) {
    Observed o;
    {
        EngineRun run(set.columns);
        run.settings.criteria().set_normalization(set.normalization);
        o.status = run.algo.start();
        o.results = run.results;
        o.descriptives = run.descriptives;
    }
    // The stages of start() up to the statistics, for the centred matrices
    // and the unrounded dCor.
    EngineRun run(set.columns);
    run.settings.criteria().set_normalization(set.normalization);
    Matrix data = set.columns;
    run.algo.handleListwiseMissingData(data);
    if (data.empty() || data[0].empty()) return o;
    run.algo.computeDescriptiveStatistics(data, data[0].size());
    run.algo.performNormalization(data);
    std::vector<Matrix> distances;
    run.algo.performEuclideanDistanceAnalysis(data, distances);
    run.algo.computeDistanceCorrelation(std::move(distances), o.centred, o.dCor);
    return o;
}

bool sameBits(double a, double b) {
    std::uint64_t x = 0;
    std::uint64_t y = 0;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    return x == y || (std::isnan(a) && std::isnan(b));
}

bool sameList(const std::vector<double>& a, const std::vector<double>& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!sameBits(a[i], b[i])) return false;
    }
    return true;
}

bool sameMatrix(const Matrix& a, const Matrix& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!sameList(a[i], b[i])) return false;
    }
    return true;
}

void expectSame(const Observed& actual, const Observed& expected) {
    EXPECT_EQ(actual.status, expected.status);
    ASSERT_EQ(actual.results.size(), expected.results.size());
    for (std::size_t k = 0; k < actual.results.size(); ++k) {
        const DistanceCorrResult& a = actual.results[k];
        const DistanceCorrResult& e = expected.results[k];
        EXPECT_EQ(a.varName1, e.varName1);
        EXPECT_EQ(a.varName2, e.varName2);
        EXPECT_TRUE(sameBits(a.dCor, e.dCor) && sameBits(a.dCov, e.dCov)) << "pair " << k;
        EXPECT_TRUE(sameBits(a.ciLower, e.ciLower) && sameBits(a.ciUpper, e.ciUpper)) << "pair " << k;
    }
    ASSERT_EQ(actual.descriptives.size(), expected.descriptives.size());
    for (std::size_t k = 0; k < actual.descriptives.size(); ++k) {
        const DistanceCorrDescriptiveResult& a = actual.descriptives[k];
        const DistanceCorrDescriptiveResult& e = expected.descriptives[k];
        EXPECT_TRUE(sameBits(a.distVariance, e.distVariance)) << "variable " << k;
        EXPECT_TRUE(sameMatrix(a.distanceMatrix, e.distanceMatrix)) << "variable " << k;
    }
    ASSERT_EQ(actual.centred.size(), expected.centred.size());
    for (std::size_t k = 0; k < actual.centred.size(); ++k) {
        EXPECT_TRUE(sameMatrix(actual.centred[k], expected.centred[k])) << "centred matrix " << k;
    }
    EXPECT_TRUE(sameList(actual.dCor, expected.dCor)) << "unrounded dCor";
}

TEST(DistanceCorrAlgoObservedThreads, RandomDataSetsGiveTheSameBitsForEveryWorkerCount) {
    std::mt19937 rng(20251122);
    CountingWorkerPool two(2, false);
    CountingWorkerPool three(3, false);
    CountingWorkerPool eight(8, false);
    CountingWorkerPool scrambled(3, true);
    std::size_t completeRuns = 0;
    for (int s = 0; s < 200; ++s) {
        const DataSet set = randomDataSet(rng);
        SCOPED_TRACE("data set " + std::to_string(s) + ": " + std::to_string(set.columns.size()) + " x " +
                     std::to_string(set.columns[0].size()) + ", " + set.normalization);
        const Observed alone = observe(set);
        if (alone.status == 0) ++completeRuns;
        {
            const ScopedThreadCount one(1);
            expectSame(observe(set), alone);
        }
        for (CountingWorkerPool* pool : {&two, &three, &eight, &scrambled}) {
            const InstalledWorkerPool installed(pool);
            expectSame(observe(set), alone);
        }
    }
    // Most sets run to the end, and every pool was given work.
    EXPECT_GT(completeRuns, 150u);
    EXPECT_GT(two.tasks(), 0u);
    EXPECT_GT(three.tasks(), 0u);
    EXPECT_GT(eight.tasks(), 0u);
    EXPECT_GT(scrambled.tasks(), 0u);
    EXPECT_FALSE(two.badWorker() || three.badWorker() || eight.badWorker());
}

TEST(DistanceCorrAlgoObservedThreads, TheMemoryGuardRefusesTheSameSizesForEveryWorkerCount) {
    host::HostSession::instance().setQuiet(true);
    CountingWorkerPool eight(8, false);
    for (unsigned workers : {1u, 2u, 8u}) {
        SCOPED_TRACE(std::to_string(workers) + " workers");
        std::unique_ptr<ScopedThreadCount> counted;
        std::unique_ptr<InstalledWorkerPool> threads;
        if (workers == 8) {
            threads = std::make_unique<InstalledWorkerPool>(&eight);
        } else {
            counted = std::make_unique<ScopedThreadCount>(workers);
        }
        for (const auto& [cases, permutation] : {std::pair{std::size_t{5793}, false}, {std::size_t{4730}, true}}) {
            host::HostSession::instance().beginCommand(host::CommandText{});
            Matrix columns(2, std::vector<double>(cases));
            for (std::size_t c = 0; c < cases; ++c) {
                columns[0][c] = static_cast<double>(c);
                columns[1][c] = static_cast<double>(c % 7);
            }
            EngineRun run(columns);
            run.settings.criteria().set_permEnabled(permutation);
            EXPECT_EQ(run.algo.start(), 1);
            EXPECT_TRUE(run.results.empty());
            EXPECT_TRUE(run.descriptives.empty());
            const auto& messages = host::HostSession::instance().messages();
            ASSERT_EQ(messages.size(), 1u);
            EXPECT_EQ(messages[0].text, "Insufficient memory for Distance Correlation.");
        }
        // The worker count in the guard's estimate stays capped at 1.
        EngineRun probe;
        EXPECT_EQ(probe.algo.get_optimal_threads(static_cast<int>(workers)), 1);
    }
    EXPECT_EQ(eight.tasks(), 0u) << "nothing was computed";
}

}  // namespace
