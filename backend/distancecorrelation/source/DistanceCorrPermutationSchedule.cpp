#include "DistanceCorrPermutationSchedule.h"

#include <algorithm>

#include "DistanceCorrPermutationProgress.h"
#include "WorkerPool.h"

DistanceCorrPermutationSchedule::DistanceCorrPermutationSchedule(std::vector<DistanceCorrPermutationPair>& pairs,
                                                                 const std::vector<double>& observed,
                                                                 std::uint64_t seed,
                                                                 DistanceCorrPermutationProgress& progress)
    : pairs_(pairs), observed_(observed), progress_(progress), stream_(seed) {
    remaining_.reserve(pairs_.size());
    for (const DistanceCorrPermutationPair& pair : pairs_) remaining_.push_back(pair.blockCount());
}

std::uint64_t DistanceCorrPermutationSchedule::blocksPerPair(std::size_t pairs, unsigned workers) {
    // About 32 blocks per worker: the last one to finish then leaves the
    // others idle for little time.
    const std::uint64_t wanted = (32 * std::uint64_t{workers} + pairs - 1) / std::max<std::size_t>(pairs, 1);
    return std::max(DistanceCorrPermutationPair::kCheckpoints, wanted);
}

void DistanceCorrPermutationSchedule::run(WorkerPool* pool, const Finished& finished) {
    const unsigned workers = pool != nullptr ? pool->GetThreadCount() : 1;
    if (workers <= 1) {
        work(true, finished);
        return;
    }
    pool->Run(workers, [&](std::size_t, unsigned) { work(false, finished); });
}

void DistanceCorrPermutationSchedule::work(bool inPlace, const Finished& finished) {
    DistanceCorrPermutationPair::Scratch scratch;
    PermutationStream own(0);
    for (;;) {
        Task task;
        try {
            {
                std::unique_lock<std::mutex> lock(mutex_);
                if (!take(lock, inPlace, own, task)) return;
            }
            complete(task, scratch, finished);
        } catch (...) {
            {
                std::lock_guard<std::mutex> lock(mutex_);
                failed_ = true;
            }
            wake_.notify_all();
            throw;
        }
    }
}

bool DistanceCorrPermutationSchedule::take(std::unique_lock<std::mutex>& lock, bool inPlace, PermutationStream& own,
                                           Task& task) {
    for (;;) {
        if (failed_) return false;
        if (!again_.empty()) {
            task = again_.front();
            again_.pop_front();
            own = pairs_[task.pair].savedStart(task.block);
            task.stream = &own;
            break;
        }
        if (nextPair_ < pairs_.size()) {
            DistanceCorrPermutationPair& pair = pairs_[nextPair_];
            // Set up under the lock, so that an allocation that fails stops
            // the test before the stream moves on.
            if (nextBlock_ == 0) pair.prepare();
            task.pair = nextPair_;
            task.block = nextBlock_;
            if (inPlace) {
                task.stream = &stream_;
            } else {
                own = stream_;
                stream_.skip(pair.blockLength(nextBlock_), pair.cases());
                task.stream = &own;
            }
            if (++nextBlock_ >= pair.blockCount()) {
                ++nextPair_;
                nextBlock_ = 0;
            }
            break;
        }
        // Nothing to hand out: done unless a running task can still add some.
        if (busy_ == 0) return false;
        wake_.wait(lock);
    }
    ++busy_;
    return true;
}

void DistanceCorrPermutationSchedule::complete(const Task& task, DistanceCorrPermutationPair::Scratch& scratch,
                                               const Finished& finished) {
    DistanceCorrPermutationPair& pair = pairs_[task.pair];
    pair.runBlock(task.block, *task.stream, scratch, progress_);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (--remaining_[task.pair] != 0) {
            if (--busy_ == 0) wake_.notify_all();
            return;
        }
    }
    Outcome outcome;
    const bool done = pair.finish(observed_[task.pair], scratch, outcome);
    if (done) finished(task.pair, outcome);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!done) {
            remaining_[task.pair] = pair.blockCount();
            for (std::uint64_t b = 0; b < pair.blockCount(); ++b) again_.push_back(Task{task.pair, b, nullptr});
        }
        --busy_;
    }
    wake_.notify_all();
}
