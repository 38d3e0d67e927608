// Progress of the permutation test through the host's ProgressMonitor: one
// phase "permutation test" with the total number of permutations, updates
// that only grow and come at most five times a second, and the end of the
// phase also when the stage fails. Without a monitor nothing is reported and
// nothing changes.
#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "DistanceCorrPermutationProgress.h"
#include "PermutationRecipeRun.h"
#include "ProgressMonitor.h"
#include "runner/ProcedureServices.h"
#include "runner/ThreadWorkerPool.h"

namespace {

class RecordingMonitor : public ProgressMonitor {
public:
    void Begin(const char* activity, std::uint64_t total) override {
        std::lock_guard<std::mutex> lock(mutex);
        events.push_back("begin " + std::string(activity) + " " + std::to_string(total));
    }
    void Update(std::uint64_t done) override {
        std::lock_guard<std::mutex> lock(mutex);
        updates.push_back(done);
    }
    void End() override {
        std::lock_guard<std::mutex> lock(mutex);
        events.push_back("end");
    }
    std::mutex mutex;
    std::vector<std::string> events;
    std::vector<std::uint64_t> updates;
};

class InstalledMonitor {
public:
    explicit InstalledMonitor(ProgressMonitor* monitor) { host::setProgressMonitor(monitor); }
    ~InstalledMonitor() { host::setProgressMonitor(nullptr); }
};

permrun::Case threeVariables(double iterations) {
    permrun::Case c;
    for (int v = 0; v < 3; ++v) {
        std::vector<double> column;
        for (int i = 0; i < 80; ++i) column.push_back(std::sin(i * (1.3 + v)) + 0.01 * i * v);
        c.columns.push_back(column);
    }
    c.iterations = iterations;
    c.seed = 5;
    return c;
}

TEST(DistanceCorrPermutationProgress, OnePhaseWithEveryPermutationOfEveryPair) {
    const permrun::Case c = threeVariables(700);
    const permrun::EngineOutcome without = permrun::runEngine(c, DistanceCorrAlgo::PermutationStatistics::Fast);
    for (unsigned threads : {1u, 3u}) {
        RecordingMonitor monitor;
        host::ThreadWorkerPool pool(threads);
        host::setWorkerPool(threads > 1 ? &pool : nullptr);
        permrun::EngineOutcome with;
        {
            const InstalledMonitor installed(&monitor);
            with = permrun::runEngine(c, DistanceCorrAlgo::PermutationStatistics::Fast);
        }
        host::setWorkerPool(nullptr);
        ASSERT_EQ(with.status, 0);
        EXPECT_EQ(monitor.events, (std::vector<std::string>{"begin permutation test 2100", "end"}));
        for (std::size_t u = 0; u < monitor.updates.size(); ++u) {
            EXPECT_LE(monitor.updates[u], 2100u);
            if (u > 0) {
                EXPECT_LE(monitor.updates[u - 1], monitor.updates[u]);
            }
        }
        // Reporting changes nothing.
        for (std::size_t k = 0; k < with.raw.size(); ++k) {
            EXPECT_TRUE(permrun::sameBits(with.raw[k].pValue, without.raw[k].pValue));
            EXPECT_TRUE(permrun::sameBits(with.raw[k].lower, without.raw[k].lower));
            EXPECT_TRUE(permrun::sameBits(with.raw[k].upper, without.raw[k].upper));
        }
    }
}

TEST(DistanceCorrPermutationProgress, NoPhaseWithoutPermutations) {
    RecordingMonitor monitor;
    const InstalledMonitor installed(&monitor);
    EXPECT_EQ(permrun::runEngine(threeVariables(0), DistanceCorrAlgo::PermutationStatistics::Fast).status, 0);
    EngineRun off(threeVariables(10).columns);
    EXPECT_EQ(off.algo.start(), 0);
    EXPECT_TRUE(monitor.events.empty());
    EXPECT_TRUE(monitor.updates.empty());
}

TEST(DistanceCorrPermutationProgress, PhaseEndsWhenTheStageFails) {
    RecordingMonitor monitor;
    const InstalledMonitor installed(&monitor);
    const permrun::Case c = threeVariables(50);
    EngineRun run(c.columns);
    run.settings.criteria().set_permEnabled(true);
    run.settings.criteria().set_permMaxIterations(50);
    std::vector<permrun::Matrix> centred;
    std::vector<double> dCor;
    permrun::observe(run.algo, c.columns, centred, dCor);
    run.results.resize(dCor.size());
    // A centred matrix of the wrong shape: the pair's set-up throws.
    centred[0].pop_back();
    EXPECT_THROW(run.algo.permutationTest(c.columns, dCor, centred), std::runtime_error);
    EXPECT_EQ(monitor.events, (std::vector<std::string>{"begin permutation test 150", "end"}));
}

TEST(DistanceCorrPermutationProgress, UpdatesAtMostFiveTimesASecond) {
    RecordingMonitor monitor;
    const auto start = std::chrono::steady_clock::now();
    {
        DistanceCorrPermutationProgress progress(1000, &monitor);
        for (int step = 0; step < 40; ++step) {
            progress.add(25);
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_EQ(monitor.events, (std::vector<std::string>{"begin permutation test 1000", "end"}));
    // One second or more of adding: at least two updates, never two within 0.2 s.
    EXPECT_GE(monitor.updates.size(), 2u);
    EXPECT_LE(static_cast<double>(monitor.updates.size()), seconds / 0.2 + 1);
    for (std::size_t u = 0; u < monitor.updates.size(); ++u) {
        EXPECT_EQ(monitor.updates[u] % 25, 0u);
        EXPECT_LE(monitor.updates[u], 1000u);
        if (u > 0) {
            EXPECT_LT(monitor.updates[u - 1], monitor.updates[u]);
        }
    }
}

TEST(DistanceCorrPermutationProgress, ReportsInStepsOfAboutAMillionDistances) {
    EXPECT_EQ(DistanceCorrPermutationProgress::reportEvery(0), std::uint64_t{1} << 20);
    EXPECT_EQ(DistanceCorrPermutationProgress::reportEvery(1024), 1024u);
    EXPECT_EQ(DistanceCorrPermutationProgress::reportEvery(5792), 181u);
    EXPECT_EQ(DistanceCorrPermutationProgress::reportEvery(5000000), 1u);
}

}  // namespace
