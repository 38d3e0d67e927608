#pragma once
#include <cstddef>
#include <functional>

class ProgressMonitor;
class WorkerPool;

// The host's optional services, or null where the host offers none. A host
// library without a service leaves its weak symbol unresolved, so the
// function's address is tested before it is called.
class HostServices {
public:
    static WorkerPool* workerPool();
    static ProgressMonitor* progressMonitor();

    // The workers of the host's pool; 1 without a pool.
    static unsigned workerCount();

    // Runs task(index, worker) for every index below `count`: on the workers
    // of `pool` when it has more than one and there is more than one task,
    // otherwise in order on this thread as worker 0.
    static void run(WorkerPool* pool, std::size_t count,
                    const std::function<void(std::size_t index, unsigned worker)>& task);
};
