#pragma once
#include <ostream>

class ProgressMonitor;
class WorkerPool;

// While the commands run: host messages go to `messages`, and the progress
// monitor and the worker pool (either may be null) are offered to
// procedures. Everything is put back when the object goes.
class InstalledServices {
public:
    InstalledServices(std::ostream& messages, ProgressMonitor* progress, WorkerPool* pool);
    InstalledServices(const InstalledServices&) = delete;
    InstalledServices& operator=(const InstalledServices&) = delete;
    ~InstalledServices();
};
