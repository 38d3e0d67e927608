#include "runner/CommandProgress.h"

#include <utility>

#include "runner/ProgressLine.h"

namespace host {

namespace {
double secondsBetween(CommandProgress::Clock::time_point from, CommandProgress::Clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}
}  // namespace

CommandProgress::CommandProgress(ShowLine show, ClearLine clear, Columns columns, Clock::duration delay,
                                 Clock::duration interval)
    : show_(std::move(show)),
      clear_(std::move(clear)),
      columns_(std::move(columns)),
      delay_(delay),
      interval_(interval) {}

CommandProgress::~CommandProgress() { endCommand(); }

void CommandProgress::beginCommand(const std::string& label) {
    endCommand();
    std::lock_guard<std::mutex> lock(mutex_);
    label_ = label;
    commandStart_ = Clock::now();
    activity_.clear();
    total_ = 0;
    done_.store(0);
    running_ = true;
    ticker_ = std::thread([this] { tick(); });
}

void CommandProgress::endCommand() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!running_) return;
        running_ = false;
    }
    wake_.notify_all();
    ticker_.join();
    clear_();
}

void CommandProgress::Begin(const char* activity, std::uint64_t total) {
    std::lock_guard<std::mutex> lock(mutex_);
    activity_ = activity != nullptr ? activity : "";
    total_ = total;
    done_.store(0);
    phaseStart_ = Clock::now();
}

void CommandProgress::Update(std::uint64_t done) { done_.store(done, std::memory_order_relaxed); }

void CommandProgress::End() {
    std::lock_guard<std::mutex> lock(mutex_);
    activity_.clear();
    total_ = 0;
    done_.store(0);
}

std::string CommandProgress::currentLine() const {
    ProgressSnapshot snapshot;
    const Clock::time_point now = Clock::now();
    {
        std::lock_guard<std::mutex> lock(mutex_);
        snapshot.command = label_;
        snapshot.elapsedSeconds = secondsBetween(commandStart_, now);
        snapshot.activity = activity_;
        snapshot.total = total_;
        snapshot.phaseSeconds = secondsBetween(phaseStart_, now);
    }
    snapshot.done = done_.load(std::memory_order_relaxed);
    return formatProgressLine(snapshot, columns_());
}

void CommandProgress::tick() {
    std::unique_lock<std::mutex> lock(mutex_);
    Clock::time_point next = commandStart_ + delay_;
    while (running_) {
        if (wake_.wait_until(lock, next, [this] { return !running_; })) break;
        lock.unlock();
        show_(currentLine());
        lock.lock();
        next = Clock::now() + interval_;
    }
}

}  // namespace host
