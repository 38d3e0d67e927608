#pragma once
#include <cstddef>
#include <functional>

// Optional host service: worker threads owned by the host, on which a procedure
// may run independent pieces of its work. The procedure itself never creates a
// thread; it hands the host a number of tasks and waits until all have run.
class WorkerPool {
public:
    virtual ~WorkerPool() = default;

    // Number of workers the host lets a procedure use (at least 1).
    virtual unsigned GetThreadCount() const = 0;

    // Runs task(index, worker) for every index in [0, taskCount) and returns when
    // all have finished. `worker` is in [0, GetThreadCount()) and no two tasks run
    // on the same worker at once, so per-worker buffers need no lock. An exception
    // thrown by a task is rethrown here (the first one) after every task has ended.
    virtual void Run(std::size_t taskCount, const std::function<void(std::size_t index, unsigned worker)>& task) = 0;
};

// The host's pool, or null when the host offers none (then the procedure runs
// everything on the calling thread). Declared weak so that a host library
// without the service still loads the procedure: test the function's address.
extern "C" WorkerPool* GetProcedureWorkerPool() __attribute__((weak));
