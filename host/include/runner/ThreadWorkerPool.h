#pragma once
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "WorkerPool.h"

namespace host {

// The host's worker pool: threads created once and reused by every command.
// The calling thread takes part as worker 0, so a pool of N workers owns
// N - 1 threads. Tasks are handed out one index at a time, so uneven tasks
// balance themselves.
// - Run() called from inside one of this pool's tasks runs the inner tasks
//   on the calling worker, one after another (no deadlock, and per-worker
//   buffers stay private to their worker).
// - Run() calls from two outside threads take turns.
// - After a task throws, the tasks not yet started are skipped; the first
//   exception is rethrown once every started task has ended.
class ThreadWorkerPool : public WorkerPool {
public:
    explicit ThreadWorkerPool(unsigned workers);
    ThreadWorkerPool(const ThreadWorkerPool&) = delete;
    ThreadWorkerPool& operator=(const ThreadWorkerPool&) = delete;
    ~ThreadWorkerPool() override;

    unsigned GetThreadCount() const override { return workers_; }
    void Run(std::size_t taskCount, const std::function<void(std::size_t, unsigned)>& task) override;

private:
    using Task = std::function<void(std::size_t, unsigned)>;

    void helperLoop(unsigned worker);
    void work(unsigned worker);

    unsigned workers_;
    std::vector<std::thread> helpers_;

    std::mutex runMutex_;  // one outside Run() at a time

    std::mutex mutex_;
    std::condition_variable jobReady_;
    std::condition_variable jobDone_;
    unsigned long long generation_ = 0;
    bool stopping_ = false;
    unsigned helpersJoining_ = 0;  // helpers taking part in the current job
    unsigned helpersBusy_ = 0;     // of those, the ones not yet done

    // The current job.
    const Task* task_ = nullptr;
    std::size_t taskCount_ = 0;
    std::atomic<std::size_t> nextIndex_{0};
    std::atomic<bool> failed_{false};
    std::exception_ptr firstError_;
};

// The number of processors this process may run on (its CPU affinity), at least 1.
unsigned availableProcessors();

}  // namespace host
