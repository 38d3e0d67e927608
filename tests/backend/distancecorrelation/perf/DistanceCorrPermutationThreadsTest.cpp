// The permutation test on the host's worker pool: pairs, and blocks of the
// permutations of a pair, run on several threads, and the unrounded p-values
// and bounds are those without a pool, bit for bit, for 2, 3 and 8 threads and
// for a pool that runs its tasks one after another. Data of every kind the
// test meets: smooth (the kernel), few cases (the fused recipe), constant
// columns (exact zeros), binary data (statistics the kernel cannot settle,
// which run again with the recipe) and LOG of negative values (NaN).
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "FixedWorkerPool.h"
#include "PermutationRecipeRun.h"
#include "PermutationTestData.h"
#include "runner/ProcedureServices.h"
#include "runner/ThreadWorkerPool.h"

namespace {

using How = DistanceCorrAlgo::PermutationStatistics;

permrun::Case makeCase(std::uint64_t number) {
    using permdata::Kind;
    std::mt19937_64 rng(0x7a11 + number);
    static const Kind kinds[] = {Kind::Normal, Kind::Normal,   Kind::Tied,     Kind::Binary,
                                 Kind::Offset, Kind::Outliers, Kind::Constant, Kind::ThreeLevels};
    static const std::size_t sizes[] = {3, 12, 40, 64, 90, 150};
    static const char* normalizations[] = {"NONE", "MINMAX", "ZSCORE", "ROBUST", "LOG"};
    permrun::Case c;
    const std::size_t variables = 2 + rng() % 4;
    const std::size_t n = sizes[rng() % 6];
    for (std::size_t v = 0; v < variables; ++v) {
        c.columns.push_back(permdata::column(kinds[rng() % 8], n, rng));
        if (v > 0 && rng() % 2 == 0) {
            for (std::size_t i = 0; i < n; ++i) c.columns[v][i] += 0.3 * c.columns[0][i] * c.columns[0][i];
        }
    }
    c.normalization = normalizations[rng() % 5];
    c.seed = static_cast<double>(rng() % (std::uint64_t{1} << 34));
    c.iterations = static_cast<double>(1 + rng() % 300);
    c.alpha = 0.01 + 0.5 * static_cast<double>(rng() % 100) / 99.0;
    return c;
}

bool sameOutcomes(const permrun::EngineOutcome& a, const permrun::EngineOutcome& b) {
    if (a.status != b.status || a.raw.size() != b.raw.size() || a.results.size() != b.results.size()) return false;
    for (std::size_t k = 0; k < a.raw.size(); ++k) {
        if (!permrun::sameBits(a.raw[k].pValue, b.raw[k].pValue) ||
            !permrun::sameBits(a.raw[k].lower, b.raw[k].lower) || !permrun::sameBits(a.raw[k].upper, b.raw[k].upper) ||
            a.results[k].pValue != b.results[k].pValue || a.results[k].permLower != b.results[k].permLower ||
            a.results[k].permUpper != b.results[k].permUpper) {
            return false;
        }
    }
    return true;
}

// Installs a pool for the scope's lifetime.
class InstalledPool {
public:
    explicit InstalledPool(std::unique_ptr<WorkerPool> pool) : pool_(std::move(pool)) {
        host::setWorkerPool(pool_.get());
    }
    ~InstalledPool() { host::setWorkerPool(nullptr); }

private:
    std::unique_ptr<WorkerPool> pool_;
};

std::unique_ptr<WorkerPool> makePool(int kind) {
    if (kind == 0) return std::make_unique<FixedWorkerPool>(5);  // tasks one after another
    static const unsigned threads[] = {0, 2, 3, 8};
    return std::make_unique<host::ThreadWorkerPool>(threads[kind]);
}

TEST(DistanceCorrPermutationThreads, AnyPoolGivesTheOutcomesOfOneThreadBitForBit) {
    const int cases = 120;
    int informative = 0;
    for (int number = 0; number < cases; ++number) {
        const permrun::Case c = makeCase(static_cast<std::uint64_t>(number));
        const How how = number % 5 == 3 ? How::Kernel : number % 5 == 4 ? How::Recipe : How::Fast;
        const permrun::EngineOutcome alone = permrun::runEngine(c, how);
        ASSERT_EQ(alone.status, 0) << "case " << number;
        for (const auto& o : alone.raw) informative += o.pValue > 0 && o.pValue < 1 ? 1 : 0;
        for (int pool = 0; pool < 4; ++pool) {
            const InstalledPool installed(makePool(pool));
            const permrun::EngineOutcome shared = permrun::runEngine(c, how);
            EXPECT_TRUE(sameOutcomes(alone, shared)) << "case " << number << " pool " << pool;
        }
    }
    EXPECT_GT(informative, cases / 2);
}

TEST(DistanceCorrPermutationThreads, OnePairSplitAcrossThreadsMatchesTheRecipe) {
    // One pair, more threads than pairs: the pair's permutations are shared.
    // Smooth data take the kernel; binary data run again with the recipe.
    using permdata::Kind;
    std::mt19937_64 rng(4242);
    for (Kind kind : {Kind::Normal, Kind::Binary, Kind::Tied}) {
        permrun::Case c;
        c.columns = {permdata::column(kind, 100, rng), permdata::column(kind, 100, rng)};
        c.seed = 31;
        c.iterations = 999;
        const std::vector<literal::Outcome> recipe = permrun::runRecipe(c);
        for (unsigned threads : {2u, 3u, 8u}) {
            const InstalledPool installed(std::make_unique<host::ThreadWorkerPool>(threads));
            EXPECT_TRUE(permrun::identical(permrun::runEngine(c, How::Fast), recipe))
                << permdata::name(kind) << " at " << threads << " threads";
        }
    }
}

}  // namespace
