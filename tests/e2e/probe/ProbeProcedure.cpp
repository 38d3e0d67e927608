// PROBE: a procedure for end-to-end tests of the host's services, built only
// with the tests. Its command says what it does:
//   PROBE WAIT ms [REPORT units].  Runs for `ms` milliseconds; with REPORT it
//                                  reports a phase of `units` units through
//                                  the progress service as it goes.
//   PROBE STDERR.                  Writes a line of its own to standard error.
//   PROBE THROW.                   Lets an exception leave its entry.
//   PROBE POOL tasks.              Runs `tasks` tasks on the host's worker pool
//                                  and checks how they ran.
// It tells what it saw through notes ("Note: PROBE: ...").
#include <atomic>
#include <chrono>
#include <iostream>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "HostSession.h"
#include "ProgressMonitor.h"
#include "WorkerPool.h"

namespace {

void note(const std::string& text) {
    host::HostSession::instance().addMessage(host::MessageLevel::Note, "PROBE", text);
}

void wait(long milliseconds, unsigned long long units) {
    ProgressMonitor* monitor = GetProcedureProgressMonitor != nullptr ? GetProcedureProgressMonitor() : nullptr;
    if (units > 0 && monitor != nullptr) monitor->Begin("probe phase", units);
    const auto start = std::chrono::steady_clock::now();
    const auto length = std::chrono::milliseconds(milliseconds);
    for (;;) {
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
        if (elapsed >= length) break;
        if (units > 0 && monitor != nullptr)
            monitor->Update(units * static_cast<unsigned long long>(elapsed.count()) /
                            static_cast<unsigned long long>(length.count()));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    if (units > 0 && monitor != nullptr) monitor->End();
    note("waited " + std::to_string(milliseconds) + " ms" + (monitor != nullptr ? " with" : " without") +
         " a progress monitor");
}

void pool(std::size_t tasks) {
    WorkerPool* pool = GetProcedureWorkerPool != nullptr ? GetProcedureWorkerPool() : nullptr;
    if (pool == nullptr) {
        note("no worker pool");
        return;
    }
    const unsigned workers = pool->GetThreadCount();
    std::unique_ptr<std::atomic<int>[]> runs(new std::atomic<int>[tasks]());
    std::unique_ptr<std::atomic<int>[]> busy(new std::atomic<int>[workers]());
    std::atomic<bool> badWorker{false}, overlap{false};
    std::mutex mutex;
    std::set<std::thread::id> threads;
    pool->Run(tasks, [&](std::size_t index, unsigned worker) {
        if (worker >= workers) {
            badWorker = true;
            return;
        }
        if (busy[worker].fetch_add(1) != 0) overlap = true;
        runs[index].fetch_add(1);
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        {
            std::lock_guard<std::mutex> lock(mutex);
            threads.insert(std::this_thread::get_id());
        }
        busy[worker].fetch_sub(1);
    });
    std::size_t once = 0;
    for (std::size_t i = 0; i < tasks; ++i) once += runs[i].load() == 1 ? 1 : 0;
    note("worker pool of " + std::to_string(workers) + " workers ran " + std::to_string(once) + " of " +
         std::to_string(tasks) + " tasks once on " + std::to_string(threads.size()) + " threads" +
         (badWorker ? ", worker out of range" : "") + (overlap ? ", one worker ran two tasks at once" : ""));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void probe_entry(void*) {
    std::istringstream words(host::HostSession::instance().command().text);
    std::string probe, action, unitsWord;
    long amount = 0;
    unsigned long long units = 0;
    words >> probe >> action >> amount >> unitsWord >> units;
    if (action.rfind("WAIT", 0) == 0) wait(amount, unitsWord.rfind("REPORT", 0) == 0 ? units : 0);
    if (action.rfind("STDERR", 0) == 0) std::cerr << "probe: a line of the procedure's own" << std::endl;
    if (action.rfind("THROW", 0) == 0) throw std::runtime_error("probe failure");
    if (action.rfind("POOL", 0) == 0) pool(static_cast<std::size_t>(amount));
}
