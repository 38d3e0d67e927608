#include "runner/ProcedureServices.h"

#include <atomic>

#include "ProgressMonitor.h"
#include "WorkerPool.h"

namespace {
std::atomic<WorkerPool*> installedPool{nullptr};
std::atomic<ProgressMonitor*> installedMonitor{nullptr};
}  // namespace

namespace host {
void setWorkerPool(WorkerPool* pool) { installedPool = pool; }
void setProgressMonitor(ProgressMonitor* monitor) { installedMonitor = monitor; }
}  // namespace host

extern "C" __attribute__((visibility("default"))) WorkerPool* GetProcedureWorkerPool() { return installedPool; }
extern "C" __attribute__((visibility("default"))) ProgressMonitor* GetProcedureProgressMonitor() {
    return installedMonitor;
}
