#include "DistanceCorrPermutationProgress.h"

#include <algorithm>
#include <chrono>

#include "ProgressMonitor.h"

namespace {

constexpr std::int64_t kInterval = 200'000'000;  // nanoseconds between updates

std::int64_t now() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

DistanceCorrPermutationProgress::DistanceCorrPermutationProgress(std::uint64_t total, ProgressMonitor* monitor)
    : monitor_(monitor) {
    if (monitor_ == nullptr) return;
    monitor_->Begin("permutation test", total);
    nextUpdate_.store(now() + kInterval);
}

DistanceCorrPermutationProgress::~DistanceCorrPermutationProgress() {
    if (monitor_ != nullptr) monitor_->End();
}

void DistanceCorrPermutationProgress::add(std::uint64_t count) {
    if (monitor_ == nullptr || count == 0) return;
    done_.fetch_add(count, std::memory_order_relaxed);
    const std::int64_t time = now();
    std::int64_t due = nextUpdate_.load(std::memory_order_relaxed);
    // One thread per interval reports.
    if (time < due || !nextUpdate_.compare_exchange_strong(due, time + kInterval)) return;
    monitor_->Update(done_.load(std::memory_order_relaxed));
}

std::uint64_t DistanceCorrPermutationProgress::reportEvery(std::size_t cases) {
    return std::max<std::uint64_t>(1, (std::uint64_t{1} << 20) / std::max<std::size_t>(cases, 1));
}
