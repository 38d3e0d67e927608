#include "runner/ThreadWorkerPool.h"

#include <sched.h>

#include <algorithm>

namespace host {

namespace {
// The pool and worker whose task this thread is running (none outside tasks).
thread_local const ThreadWorkerPool* currentPool = nullptr;
thread_local unsigned currentWorker = 0;

// Marks the thread as running a task of `pool` on `worker` for one scope.
class InTask {
public:
    InTask(const ThreadWorkerPool* pool, unsigned worker) : pool_(currentPool), worker_(currentWorker) {
        currentPool = pool;
        currentWorker = worker;
    }
    ~InTask() {
        currentPool = pool_;
        currentWorker = worker_;
    }

private:
    const ThreadWorkerPool* pool_;
    unsigned worker_;
};
}  // namespace

unsigned availableProcessors() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (::sched_getaffinity(0, sizeof set, &set) == 0) return std::max(1, CPU_COUNT(&set));
    return std::max(1u, std::thread::hardware_concurrency());
}

ThreadWorkerPool::ThreadWorkerPool(unsigned workers) : workers_(std::max(1u, workers)) {
    helpers_.reserve(workers_ - 1);
    for (unsigned w = 1; w < workers_; ++w) helpers_.emplace_back([this, w] { helperLoop(w); });
}

ThreadWorkerPool::~ThreadWorkerPool() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    jobReady_.notify_all();
    for (std::thread& t : helpers_) t.join();
}

void ThreadWorkerPool::Run(std::size_t taskCount, const Task& task) {
    if (taskCount == 0) return;
    if (currentPool == this) {
        // A task of this pool asks for more work: run it here, on its worker.
        for (std::size_t i = 0; i < taskCount; ++i) task(i, currentWorker);
        return;
    }
    std::lock_guard<std::mutex> runLock(runMutex_);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        task_ = &task;
        taskCount_ = taskCount;
        nextIndex_.store(0);
        failed_.store(false);
        firstError_ = nullptr;
        // Only as many helpers join as there are tasks beyond the caller's first.
        helpersJoining_ = static_cast<unsigned>(std::min<std::size_t>(helpers_.size(), taskCount - 1));
        helpersBusy_ = helpersJoining_;
        if (helpersJoining_ > 0) ++generation_;
    }
    jobReady_.notify_all();
    work(0);
    std::exception_ptr error;
    {
        std::unique_lock<std::mutex> lock(mutex_);
        jobDone_.wait(lock, [this] { return helpersBusy_ == 0; });
        task_ = nullptr;
        error = firstError_;
        firstError_ = nullptr;
    }
    if (error) std::rethrow_exception(error);
}

void ThreadWorkerPool::helperLoop(unsigned worker) {
    unsigned long long seen = 0;
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        jobReady_.wait(lock, [&] { return stopping_ || generation_ != seen; });
        if (stopping_) return;
        seen = generation_;
        // Helpers 1 .. helpersJoining_ take part in this job.
        if (worker > helpersJoining_) continue;
        lock.unlock();
        work(worker);
        lock.lock();
        if (--helpersBusy_ == 0) jobDone_.notify_all();
    }
}

void ThreadWorkerPool::work(unsigned worker) {
    const InTask inTask(this, worker);
    const Task* task;
    std::size_t count;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        task = task_;
        count = taskCount_;
    }
    while (!failed_.load(std::memory_order_relaxed)) {
        const std::size_t index = nextIndex_.fetch_add(1);
        if (index >= count) return;
        try {
            (*task)(index, worker);
        } catch (...) {
            // Other workers stop taking indices as soon as they see the flag, so
            // it is raised before waiting for the lock that guards the error.
            failed_.store(true);
            std::lock_guard<std::mutex> lock(mutex_);
            if (!firstError_) firstError_ = std::current_exception();
        }
    }
}

}  // namespace host
