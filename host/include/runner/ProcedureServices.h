#pragma once

class ProgressMonitor;
class WorkerPool;

namespace host {

// Installs the optional services that procedures find through
// GetProcedureWorkerPool() and GetProcedureProgressMonitor(). Null removes one,
// so procedures then run as under a host that does not offer it. The host keeps
// ownership; the objects must outlive every procedure call.
void setWorkerPool(WorkerPool* pool);
void setProgressMonitor(ProgressMonitor* monitor);

}  // namespace host
