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
