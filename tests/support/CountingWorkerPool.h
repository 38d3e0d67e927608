#pragma once
// Worker pools for tests of procedures that split their work: a host thread
// pool, or the tasks run one after another on the calling thread in a
// shuffled order on changing workers (a result that depended on the order in
// which tasks run would show). Either counts the tasks it is given, so that a
// test can tell that the work was split.
#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "WorkerPool.h"
#include "runner/ProcedureServices.h"
#include "runner/ThreadWorkerPool.h"

class CountingWorkerPool : public WorkerPool {
public:
    CountingWorkerPool(unsigned threads, bool scrambled)
        : threads_(threads), scrambled_(scrambled), pool_(scrambled ? nullptr : new host::ThreadWorkerPool(threads)) {}
    unsigned GetThreadCount() const override { return threads_; }
    void Run(std::size_t count, const std::function<void(std::size_t, unsigned)>& task) override {
        tasks_ += count;
        if (!scrambled_) {
            pool_->Run(count, [&](std::size_t index, unsigned worker) {
                if (worker >= threads_) badWorker_ = true;
                task(index, worker);
            });
            return;
        }
        std::vector<std::size_t> order(count);
        for (std::size_t i = 0; i < count; ++i) order[i] = i;
        std::shuffle(order.begin(), order.end(), rng_);
        for (std::size_t i = 0; i < count; ++i) task(order[i], static_cast<unsigned>(i % threads_));
    }
    std::size_t tasks() const { return tasks_; }
    bool badWorker() const { return badWorker_; }

private:
    unsigned threads_;
    bool scrambled_;
    std::unique_ptr<host::ThreadWorkerPool> pool_;
    std::mt19937 rng_{7};
    std::atomic<std::size_t> tasks_{0};
    std::atomic<bool> badWorker_{false};
};

// Offers a pool to procedures for the scope's lifetime.
class InstalledWorkerPool {
public:
    explicit InstalledWorkerPool(WorkerPool* pool) { host::setWorkerPool(pool); }
    ~InstalledWorkerPool() { host::setWorkerPool(nullptr); }
    InstalledWorkerPool(const InstalledWorkerPool&) = delete;
    InstalledWorkerPool& operator=(const InstalledWorkerPool&) = delete;
};
