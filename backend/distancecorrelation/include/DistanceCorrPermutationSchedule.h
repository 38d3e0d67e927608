#pragma once
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

#include "DistanceCorrPermutationPair.h"
#include "PermutationStream.h"

class DistanceCorrPermutationProgress;
class WorkerPool;

// Runs the permutation test of every pair: on the host's workers where it
// offers them, otherwise on the calling thread.
//
// The pairs draw on one random stream, pair after pair, each pair's blocks of
// permutations in order. Blocks are handed out in that order: whoever takes
// the next block takes the stream's state at the block's start and moves the
// shared stream past the block's numbers. Every permutation therefore uses
// exactly the numbers it uses on one thread, and no statistic, p-value or
// bound depends on the number of threads or on which thread ran what. The
// thread that completes a pair's last block finishes the pair (selections,
// p-value, bounds). A pair whose kernel statistics cannot be settled runs its
// blocks again with the recipe, before any new block is handed out. A pair is
// set up when its first block is taken and released when finished, so only
// about one pair per thread holds its statistics at a time.
class DistanceCorrPermutationSchedule {
public:
    using Outcome = DistanceCorrPermutationPair::Outcome;
    // Called once per pair, from the thread that finished it.
    using Finished = std::function<void(std::size_t pair, const Outcome& outcome)>;

    // pairs in stream order, observed their observed statistics; the stream
    // starts from seed.
    DistanceCorrPermutationSchedule(std::vector<DistanceCorrPermutationPair>& pairs,
                                    const std::vector<double>& observed, std::uint64_t seed,
                                    DistanceCorrPermutationProgress& progress);

    // pool may be null. Rethrows the first exception of any block.
    void run(WorkerPool* pool, const Finished& finished);

    // Blocks per pair for workers threads and pairs pairs: at least 32, and
    // about 32 per worker where there are few pairs.
    static std::uint64_t blocksPerPair(std::size_t pairs, unsigned workers);

private:
    struct Task {
        std::size_t pair = 0;
        std::uint64_t block = 0;
        PermutationStream* stream = nullptr;
    };

    // One thread's loop: takes tasks until none is left. With inPlace (the
    // only thread) a block draws on the shared stream itself.
    void work(bool inPlace, const Finished& finished);
    // The next task, under the lock; false when there is none and none can
    // come (or a block failed).
    bool take(std::unique_lock<std::mutex>& lock, bool inPlace, PermutationStream& own, Task& task);
    void complete(const Task& task, DistanceCorrPermutationPair::Scratch& scratch, const Finished& finished);

    std::vector<DistanceCorrPermutationPair>& pairs_;
    const std::vector<double>& observed_;
    DistanceCorrPermutationProgress& progress_;

    std::mutex mutex_;
    std::condition_variable wake_;
    PermutationStream stream_;  // at the start of the next block handed out
    std::size_t nextPair_ = 0;
    std::uint64_t nextBlock_ = 0;
    std::vector<std::uint64_t> remaining_;  // blocks of each pair not yet completed
    std::deque<Task> again_;                // blocks to run again with the recipe
    unsigned busy_ = 0;                     // threads running a task
    bool failed_ = false;
};
