#include "InstalledServices.h"

#include <iostream>

#include "HostSession.h"
#include "runner/ProcedureServices.h"

InstalledServices::InstalledServices(std::ostream& messages, ProgressMonitor* progress, WorkerPool* pool) {
    host::HostSession::instance().setErrorStream(&messages);
    host::setProgressMonitor(progress);
    host::setWorkerPool(pool);
}

InstalledServices::~InstalledServices() {
    host::setProgressMonitor(nullptr);
    host::setWorkerPool(nullptr);
    host::HostSession::instance().setErrorStream(&std::cerr);
}
