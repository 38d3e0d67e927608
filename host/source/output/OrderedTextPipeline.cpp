#include "output/OrderedTextPipeline.h"

#include <algorithm>
#include <utility>

#include "WorkerPool.h"

namespace host {

OrderedTextPipeline::OrderedTextPipeline(unsigned threads, Sink sink)
    : sink_(std::move(sink)), maxPending_(4 * static_cast<std::size_t>(std::max(1u, threads))) {
    if (threads > 1)
        for (unsigned i = 0; i < threads; ++i) workers_.emplace_back([this] { work(); });
}

OrderedTextPipeline::~OrderedTextPipeline() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    blockAdded_.notify_all();
    for (std::thread& worker : workers_) worker.join();
}

unsigned OrderedTextPipeline::defaultThreads() {
    if (GetProcedureWorkerPool != nullptr)
        if (WorkerPool* pool = GetProcedureWorkerPool()) return std::max(1u, pool->GetThreadCount());
    return 1;
}

void OrderedTextPipeline::work() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        blockAdded_.wait(lock, [this] { return stopping_ || started_ < blocks_.size(); });
        if (stopping_) return;
        // Blocks leave the deque only when done, so this reference stays valid.
        Block& block = blocks_[started_++];
        lock.unlock();
        try {
            block.format(block.text);
        } catch (...) {
            block.error = std::current_exception();
        }
        lock.lock();
        block.done = true;
        blockDone_.notify_all();
    }
}

bool OrderedTextPipeline::writeFirst(std::unique_lock<std::mutex>& lock, bool wait) {
    if (blocks_.empty()) return false;
    if (!blocks_.front().done) {
        if (!wait) return false;
        blockDone_.wait(lock, [this] { return blocks_.front().done; });
    }
    Block block = std::move(blocks_.front());
    blocks_.pop_front();
    --started_;
    lock.unlock();
    if (block.error) std::rethrow_exception(block.error);
    sink_(block.text);
    lock.lock();
    spare_.push_back(std::move(block.text));
    return true;
}

void OrderedTextPipeline::submit(Format format) {
    if (workers_.empty()) {
        std::string text;
        if (!spare_.empty()) text = std::move(spare_.back());
        spare_.clear();
        format(text);
        sink_(text);
        spare_.push_back(std::move(text));
        return;
    }
    std::unique_lock<std::mutex> lock(mutex_);
    Block block;
    block.format = std::move(format);
    if (!spare_.empty()) {
        block.text = std::move(spare_.back());
        spare_.pop_back();
    }
    blocks_.push_back(std::move(block));
    blockAdded_.notify_one();
    while (writeFirst(lock, blocks_.size() > maxPending_)) {
    }
}

void OrderedTextPipeline::finish() {
    if (workers_.empty()) return;
    std::unique_lock<std::mutex> lock(mutex_);
    while (writeFirst(lock, true)) {
    }
}

}  // namespace host
