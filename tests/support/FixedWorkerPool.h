#pragma once
// A host worker pool that reports a chosen thread count, for tests of what
// the host does with that count; its tasks run on the calling thread.
#include <functional>

#include "WorkerPool.h"
#include "runner/ProcedureServices.h"

class FixedWorkerPool : public WorkerPool {
public:
    explicit FixedWorkerPool(unsigned threads) : threads_(threads) {}
    unsigned GetThreadCount() const override { return threads_; }
    void Run(std::size_t count, const std::function<void(std::size_t, unsigned)>& task) override {
        for (std::size_t i = 0; i < count; ++i) task(i, 0);
    }

private:
    unsigned threads_;
};

// Installs a pool of the given count for the scope's lifetime.
class ScopedThreadCount {
public:
    explicit ScopedThreadCount(unsigned threads) : pool_(threads) { host::setWorkerPool(&pool_); }
    ~ScopedThreadCount() { host::setWorkerPool(nullptr); }
    ScopedThreadCount(const ScopedThreadCount&) = delete;
    ScopedThreadCount& operator=(const ScopedThreadCount&) = delete;

private:
    FixedWorkerPool pool_;
};
