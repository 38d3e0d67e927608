#pragma once
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "ProgressMonitor.h"

namespace host {

// The host's progress service. While a command runs, a ticker thread redraws
// one live line through `show` (the command, the elapsed time and, when the
// procedure reports a phase, how far it has got); the line appears only once
// the command has run for `delay`, so quick commands show nothing. `clear`
// removes the line when the command ends. Procedures report through the
// ProgressMonitor interface, from any thread.
class CommandProgress : public ProgressMonitor {
public:
    using Clock = std::chrono::steady_clock;
    using ShowLine = std::function<void(const std::string& text)>;
    using ClearLine = std::function<void()>;
    using Columns = std::function<int()>;

    CommandProgress(ShowLine show, ClearLine clear, Columns columns, Clock::duration delay = std::chrono::seconds(1),
                    Clock::duration interval = std::chrono::milliseconds(200));
    CommandProgress(const CommandProgress&) = delete;
    CommandProgress& operator=(const CommandProgress&) = delete;
    ~CommandProgress() override;

    // A command starts: `label` names it on the line. Starts the ticker.
    void beginCommand(const std::string& label);
    // The command has ended: stops the ticker and clears the line.
    void endCommand();

    void Begin(const char* activity, std::uint64_t total) override;
    void Update(std::uint64_t done) override;
    void End() override;

    // The line as it would be drawn now (used by the ticker and by tests).
    std::string currentLine() const;

private:
    void tick();

    ShowLine show_;
    ClearLine clear_;
    Columns columns_;
    Clock::duration delay_;
    Clock::duration interval_;

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool running_ = false;
    std::thread ticker_;
    std::string label_;
    Clock::time_point commandStart_;
    std::string activity_;
    std::uint64_t total_ = 0;
    Clock::time_point phaseStart_;
    std::atomic<std::uint64_t> done_{0};
};

}  // namespace host
