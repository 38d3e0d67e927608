#pragma once
#include <cstdint>

// Optional host service: shows the user how far a long-running command has got.
// The procedure reports at most a few times a second; the host decides whether
// and how to show it (e.g. one live line on a terminal, nothing otherwise).
class ProgressMonitor {
public:
    virtual ~ProgressMonitor() = default;

    // A phase of the running command begins; `total` units of work are expected
    // (0 when unknown). `activity` is a short English text such as "permutation test".
    virtual void Begin(const char* activity, std::uint64_t total) = 0;
    // `done` of the phase's units are finished. May be called from any thread.
    virtual void Update(std::uint64_t done) = 0;
    // The phase is over (also called when it ends early).
    virtual void End() = 0;
};

// The host's monitor, or null when the host offers none. Declared weak so that a
// host library without the service still loads the procedure.
extern "C" ProgressMonitor* GetProcedureProgressMonitor() __attribute__((weak));
