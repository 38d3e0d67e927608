#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>

class ProgressMonitor;

// The permutation test's progress, reported to the host's ProgressMonitor
// when there is one: Begin("permutation test", total) on construction,
// Update(done) at most five times a second, End() on destruction, so also
// when the stage ends early. Without a monitor every call returns at once.
class DistanceCorrPermutationProgress {
public:
    DistanceCorrPermutationProgress(std::uint64_t total, ProgressMonitor* monitor);
    ~DistanceCorrPermutationProgress();
    DistanceCorrPermutationProgress(const DistanceCorrPermutationProgress&) = delete;
    DistanceCorrPermutationProgress& operator=(const DistanceCorrPermutationProgress&) = delete;

    // count more permutations are done; from any thread.
    void add(std::uint64_t count);

    // How many permutations of n cases to count before calling add(): about a
    // million distance pairs' work, so that the clock is read only every few
    // milliseconds.
    static std::uint64_t reportEvery(std::size_t cases);

private:
    ProgressMonitor* monitor_;
    std::atomic<std::uint64_t> done_{0};
    std::atomic<std::int64_t> nextUpdate_{0};  // steady clock, nanoseconds
};
