// The permutation test: p = (k + 1)/(R + 1) over the shared stream's
// permutations, the same p-value at every thread count of the host's worker
// pool, and the O(n log n) pair statistic equal to the matrix statistic.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <exception>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "DependenceDistanceSource.h"
#include "DependenceMatrixPermutation.h"
#include "DependencePairPermutation.h"
#include "DependencePermutationTest.h"
#include "PermutationStream.h"
#include "WorkerPool.h"
#include "runner/ProcedureServices.h"

namespace {

// A host pool of `threads` workers, each pulling the next task.
class TestPool : public WorkerPool {
public:
    explicit TestPool(unsigned threads) : threads_(threads) {}
    unsigned GetThreadCount() const override { return threads_; }
    void Run(std::size_t count, const std::function<void(std::size_t, unsigned)>& task) override {
        std::atomic<std::size_t> next{0};
        std::vector<std::thread> workers;
        for (unsigned w = 0; w < threads_; ++w)
            workers.emplace_back([&, w] {
                for (std::size_t i = next++; i < count; i = next++) {
                    task(i, w);
                    std::lock_guard<std::mutex> lock(mutex_);
                    used_.insert(w);
                }
            });
        for (auto& t : workers) t.join();
    }
    std::set<unsigned> used_;

private:
    unsigned threads_;
    std::mutex mutex_;
};

// Installs a pool for one test and removes it again.
struct PoolScope {
    explicit PoolScope(WorkerPool* pool) { host::setWorkerPool(pool); }
    ~PoolScope() { host::setWorkerPool(nullptr); }
};

std::vector<double> normal(std::mt19937_64& rng, std::size_t n) {
    std::normal_distribution<double> z;
    std::vector<double> v(n);
    for (auto& x : v) x = z(rng);
    return v;
}

TEST(DependencePermutationTestTest, CountsReplicatesAtLeastTheObserved) {
    const DependencePermutationTest test(17, 99);
    // Every replicate ties with the observed value: k = R, p = 1.
    EXPECT_DOUBLE_EQ(test.pValue(10, 0.5, 0.0, [](const auto&, unsigned) { return 0.5; }), 1.0);
    // None reaches it: p = 1 / (R + 1).
    EXPECT_DOUBLE_EQ(test.pValue(10, 0.5, 0.0, [](const auto&, unsigned) { return 0.4; }), 1.0 / 100);
    // Within the tolerance below the observed value counts as a tie.
    EXPECT_DOUBLE_EQ(test.pValue(10, 0.5, 1e-9, [](const auto&, unsigned) { return 0.5 - 1e-12; }), 1.0);
}

TEST(DependencePermutationTestTest, ReplicatesAreTheStreamsPermutationsInOrder) {
    // The statistic is the first entry of the permutation; k counted by hand
    // from the same stream.
    const std::size_t n = 9;
    const std::uint64_t replicates = 300;
    PermutationStream stream(123);
    std::vector<std::size_t> index(n);
    std::uint64_t k = 0;
    for (std::uint64_t t = 0; t < replicates; ++t) {
        stream.shuffle(index);
        k += index[0] >= 4;
    }
    const DependencePermutationTest test(123, replicates);
    const double p =
        test.pValue(n, 4.0, 0.0, [](const std::vector<std::size_t>& i, unsigned) { return static_cast<double>(i[0]); });
    EXPECT_DOUBLE_EQ(p, (k + 1.0) / (replicates + 1.0));
}

TEST(DependencePermutationTestTest, SameValueAtEveryThreadCount) {
    std::mt19937_64 rng(3);
    const std::size_t n = 200;
    std::vector<double> x = normal(rng, n), y = normal(rng, n);
    for (std::size_t i = 0; i < n; ++i) y[i] += 0.4 * x[i] * x[i];
    const auto run = [&](WorkerPool* pool, DependenceStatistic statistic) {
        PoolScope scope(pool);
        DependencePairPermutation pair(x, y, statistic, DependencePermutationTest::workers());
        std::vector<std::size_t> identity(n);
        for (std::size_t i = 0; i < n; ++i) identity[i] = i;
        const DependencePermutationTest test(2000000, 4000);
        return test.pValue(n, pair.statistic(identity, 0), 1e-12,
                           [&](const std::vector<std::size_t>& index, unsigned w) { return pair.statistic(index, w); });
    };
    for (DependenceStatistic s : {DependenceStatistic::U, DependenceStatistic::V}) {
        const double single = run(nullptr, s);
        EXPECT_GT(single, 0.0);
        EXPECT_LT(single, 0.01);  // the dependence is real
        for (unsigned threads : {1u, 2u, 3u, 8u}) {
            TestPool pool(threads);
            EXPECT_EQ(run(&pool, s), single) << threads << " threads";
            if (threads > 1) {
                EXPECT_GT(pool.used_.size(), 1u);
            }
        }
        EXPECT_EQ(run(nullptr, s), single);
    }
}

TEST(DependencePermutationTestTest, PairStatisticEqualsTheMatrixStatistic) {
    std::mt19937_64 rng(9);
    const std::size_t n = 41;
    std::vector<double> x = normal(rng, n), y = normal(rng, n);
    for (std::size_t i = 0; i < n; ++i) y[i] = std::round(y[i] + x[i]);  // ties
    const DependenceDistanceSource sx({x}, 1.0), sy({y}, 1.0);
    PermutationStream stream(1);
    std::vector<std::size_t> index(n);
    const double nn = static_cast<double>(n);
    for (DependenceStatistic s : {DependenceStatistic::U, DependenceStatistic::V}) {
        DependencePairPermutation pair(x, y, s, 1);
        const DependenceMatrixPermutation matrices(sx, sy, nullptr, s);
        // The pair statistic is the centred product per cell: n^2 cells (V)
        // or n(n - 3) (U).
        const double cells = s == DependenceStatistic::V ? nn * nn : nn * (nn - 3);
        for (int t = 0; t < 30; ++t) {
            stream.shuffle(index);
            EXPECT_NEAR(pair.statistic(index, 0) * cells, matrices.statistic(index), 1e-11 * matrices.scale());
        }
    }
}

}  // namespace
