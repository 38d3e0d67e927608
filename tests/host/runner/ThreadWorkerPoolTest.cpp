#include "runner/ThreadWorkerPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

using host::ThreadWorkerPool;

namespace {

// Records how tasks ran: how often each index ran, which worker ran it, and
// whether one worker ever ran two tasks at once.
struct RunLog {
    explicit RunLog(std::size_t tasks, unsigned workers)
        : runs(new std::atomic<int>[tasks]()), busy(new std::atomic<int>[workers]()), workers(workers) {}

    void task(std::size_t index, unsigned worker) {
        if (worker >= workers) {
            outOfRange = true;
            return;
        }
        if (busy[worker].fetch_add(1) != 0) overlap = true;
        runs[index].fetch_add(1);
        {
            std::lock_guard<std::mutex> lock(mutex);
            threads.insert(std::this_thread::get_id());
            workerIds.insert(worker);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(50));
        busy[worker].fetch_sub(1);
    }

    std::unique_ptr<std::atomic<int>[]> runs;
    std::unique_ptr<std::atomic<int>[]> busy;
    unsigned workers;
    std::atomic<bool> outOfRange{false}, overlap{false};
    std::mutex mutex;
    std::set<std::thread::id> threads;
    std::set<unsigned> workerIds;
};

void expectEachIndexOnce(const RunLog& log, std::size_t tasks) {
    for (std::size_t i = 0; i < tasks; ++i) ASSERT_EQ(log.runs[i].load(), 1) << "index " << i;
}

}  // namespace

TEST(ThreadWorkerPool, RunsEveryIndexOnceOnWorkersInRangeNeverTwiceAtOnce) {
    ThreadWorkerPool pool(4);
    EXPECT_EQ(pool.GetThreadCount(), 4u);
    const std::size_t tasks = 2000;
    RunLog log(tasks, 4);
    pool.Run(tasks, [&](std::size_t i, unsigned w) { log.task(i, w); });
    expectEachIndexOnce(log, tasks);
    EXPECT_FALSE(log.outOfRange);
    EXPECT_FALSE(log.overlap);
    // Four workers, each its own thread; the caller is one of them.
    EXPECT_EQ(log.workerIds, (std::set<unsigned>{0, 1, 2, 3}));
    EXPECT_EQ(log.threads.size(), 4u);
    EXPECT_EQ(log.threads.count(std::this_thread::get_id()), 1u);
}

TEST(ThreadWorkerPool, ThreadsAreCreatedOnceAndReused) {
    ThreadWorkerPool pool(3);
    std::set<std::thread::id> seen;
    for (int run = 0; run < 20; ++run) {
        RunLog log(300, 3);
        pool.Run(300, [&](std::size_t i, unsigned w) { log.task(i, w); });
        expectEachIndexOnce(log, 300);
        seen.insert(log.threads.begin(), log.threads.end());
    }
    // Twenty runs, still only the caller and the two helpers.
    EXPECT_LE(seen.size(), 3u);
}

TEST(ThreadWorkerPool, EmptyRunReturnsAtOnce) {
    ThreadWorkerPool pool(3);
    bool called = false;
    pool.Run(0, [&](std::size_t, unsigned) { called = true; });
    EXPECT_FALSE(called);
}

TEST(ThreadWorkerPool, FewerTasksThanWorkers) {
    ThreadWorkerPool pool(8);
    RunLog log(3, 8);
    pool.Run(3, [&](std::size_t i, unsigned w) { log.task(i, w); });
    expectEachIndexOnce(log, 3);
    EXPECT_FALSE(log.outOfRange);
}

TEST(ThreadWorkerPool, OneWorkerRunsEverythingOnTheCaller) {
    ThreadWorkerPool pool(1);
    EXPECT_EQ(pool.GetThreadCount(), 1u);
    RunLog log(50, 1);
    pool.Run(50, [&](std::size_t i, unsigned w) { log.task(i, w); });
    expectEachIndexOnce(log, 50);
    EXPECT_EQ(log.threads, (std::set<std::thread::id>{std::this_thread::get_id()}));
}

TEST(ThreadWorkerPool, ZeroWorkersMeansOne) { EXPECT_EQ(ThreadWorkerPool(0).GetThreadCount(), 1u); }

TEST(ThreadWorkerPool, TheFirstExceptionIsRethrownAfterTheStartedTasksEnd) {
    ThreadWorkerPool pool(4);
    std::atomic<int> running{0};
    std::atomic<int> stillRunningAtThrow{-1};
    try {
        pool.Run(1000, [&](std::size_t i, unsigned) {
            ++running;
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            --running;
            if (i == 10) throw std::runtime_error("task 10 failed");
        });
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "task 10 failed");
        stillRunningAtThrow = running.load();
    }
    EXPECT_EQ(stillRunningAtThrow.load(), 0) << "every started task has ended";
    // The pool works on afterwards.
    RunLog log(100, 4);
    pool.Run(100, [&](std::size_t i, unsigned w) { log.task(i, w); });
    expectEachIndexOnce(log, 100);
}

TEST(ThreadWorkerPool, TasksAfterAFailureAreSkipped) {
    // Until the pool has caught the exception, the other worker may still take
    // indices: the throwing thread can be preempted between its throw and the
    // catch. Each task therefore lasts a millisecond, so running half of them
    // would need a pause of five seconds.
    ThreadWorkerPool pool(2);
    const std::size_t tasks = 10000;
    std::atomic<std::size_t> ran{0};
    EXPECT_THROW(pool.Run(tasks,
                          [&](std::size_t i, unsigned) {
                              ++ran;
                              if (i == 0) throw std::logic_error("first");
                              std::this_thread::sleep_for(std::chrono::milliseconds(1));
                          }),
                 std::logic_error);
    EXPECT_LT(ran.load(), tasks / 2);
}

TEST(ThreadWorkerPool, OnOneWorkerNoTaskRunsAfterTheFailure) {
    ThreadWorkerPool pool(1);
    std::vector<std::size_t> ran;
    EXPECT_THROW(pool.Run(100,
                          [&](std::size_t i, unsigned) {
                              ran.push_back(i);
                              if (i == 5) throw std::logic_error("sixth");
                          }),
                 std::logic_error);
    EXPECT_EQ(ran, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));
}

TEST(ThreadWorkerPool, TheWorkerThatFailedTakesNoFurtherTask) {
    // The worker that caught the exception sees its own failure at once,
    // whatever the timing of the others.
    ThreadWorkerPool pool(4);
    const std::size_t tasks = 2000;
    std::atomic<std::size_t> order{0};
    std::unique_ptr<std::atomic<std::size_t>[]> startedAs(new std::atomic<std::size_t>[tasks]());
    std::unique_ptr<std::atomic<unsigned>[]> workerOf(new std::atomic<unsigned>[tasks]());
    for (std::size_t i = 0; i < tasks; ++i) startedAs[i] = tasks;  // not started
    EXPECT_THROW(pool.Run(tasks,
                          [&](std::size_t i, unsigned worker) {
                              startedAs[i] = order++;
                              workerOf[i] = worker;
                              std::this_thread::sleep_for(std::chrono::microseconds(50));
                              if (i == 10) throw std::logic_error("task 10");
                          }),
                 std::logic_error);
    ASSERT_LT(startedAs[10].load(), tasks);
    for (std::size_t i = 0; i < tasks; ++i) {
        if (startedAs[i] != tasks && workerOf[i] == workerOf[10]) {
            EXPECT_LE(startedAs[i].load(), startedAs[10].load()) << "task " << i << " after the failure";
        }
    }
}

TEST(ThreadWorkerPool, NestedRunStaysOnTheCallingWorker) {
    ThreadWorkerPool pool(4);
    const std::size_t outer = 40, inner = 25;
    RunLog log(outer * inner, 4);
    std::atomic<bool> wrongWorker{false};
    pool.Run(outer, [&](std::size_t o, unsigned worker) {
        pool.Run(inner, [&](std::size_t i, unsigned innerWorker) {
            if (innerWorker != worker) wrongWorker = true;
            log.task(o * inner + i, innerWorker);
        });
    });
    expectEachIndexOnce(log, outer * inner);
    EXPECT_FALSE(wrongWorker);
    EXPECT_FALSE(log.overlap);
}

TEST(ThreadWorkerPool, RunsFromTwoOutsideThreadsTakeTurns) {
    ThreadWorkerPool pool(3);
    RunLog first(500, 3), second(500, 3);
    std::thread other([&] { pool.Run(500, [&](std::size_t i, unsigned w) { second.task(i, w); }); });
    pool.Run(500, [&](std::size_t i, unsigned w) { first.task(i, w); });
    other.join();
    expectEachIndexOnce(first, 500);
    expectEachIndexOnce(second, 500);
    EXPECT_FALSE(first.overlap);
    EXPECT_FALSE(second.overlap);
}

TEST(ThreadWorkerPool, AvailableProcessorsFollowsTheAffinity) {
    cpu_set_t set;
    CPU_ZERO(&set);
    ASSERT_EQ(sched_getaffinity(0, sizeof set, &set), 0);
    EXPECT_EQ(host::availableProcessors(), static_cast<unsigned>(CPU_COUNT(&set)));
}
