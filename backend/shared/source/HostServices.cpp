#include "HostServices.h"

#include "ProgressMonitor.h"
#include "WorkerPool.h"

WorkerPool* HostServices::workerPool() {
    WorkerPool* (*const get)() = &GetProcedureWorkerPool;
    return get != nullptr ? get() : nullptr;
}

ProgressMonitor* HostServices::progressMonitor() {
    ProgressMonitor* (*const get)() = &GetProcedureProgressMonitor;
    return get != nullptr ? get() : nullptr;
}

unsigned HostServices::workerCount() {
    WorkerPool* pool = workerPool();
    return pool != nullptr && pool->GetThreadCount() > 1 ? pool->GetThreadCount() : 1;
}

void HostServices::run(WorkerPool* pool, std::size_t count,
                       const std::function<void(std::size_t index, unsigned worker)>& task) {
    if (pool != nullptr && pool->GetThreadCount() > 1 && count > 1) {
        pool->Run(count, task);
    } else {
        for (std::size_t t = 0; t < count; ++t) task(t, 0);
    }
}
