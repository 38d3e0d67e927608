#pragma once

class ProgressMonitor;
class WorkerPool;

// The host's optional services, or null where the host offers none. A host
// library without a service leaves its weak symbol unresolved, so the
// function's address is tested before it is called.
class HostServices {
public:
    static WorkerPool* workerPool();
    static ProgressMonitor* progressMonitor();
};
