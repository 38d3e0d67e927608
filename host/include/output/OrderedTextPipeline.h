#pragma once
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace host {

// Formats blocks of text on worker threads and hands the texts to a sink in
// the order the blocks were submitted, so the bytes written are the same for
// any number of threads. With one thread every block is formatted on the
// caller's thread as it comes. The sink always runs on the caller's thread,
// inside submit() or finish(); an exception from it, or from a block's
// formatting, reaches the caller there. At most maxPending blocks wait at
// once, which bounds the memory.
class OrderedTextPipeline {
public:
    // Puts one block's bytes in `text`, replacing what it holds: the bytes
    // of an earlier block, left there so that its memory is reused without
    // being cleared. `text` must end exactly as long as the block.
    using Format = std::function<void(std::string& text)>;
    using Sink = std::function<void(const std::string& text)>;

    OrderedTextPipeline(unsigned threads, Sink sink);
    OrderedTextPipeline(const OrderedTextPipeline&) = delete;
    OrderedTextPipeline& operator=(const OrderedTextPipeline&) = delete;
    // Stops the workers; texts not yet handed to the sink are dropped.
    ~OrderedTextPipeline();

    void submit(Format format);
    // Waits for every block and hands the rest to the sink.
    void finish();

    // Threads for formatting output: the host's worker count when it has
    // installed a worker pool, otherwise one (distcorr installs none for
    // --threads 1 or a single processor).
    static unsigned defaultThreads();

private:
    struct Block {
        Format format;
        std::string text;
        std::exception_ptr error;
        bool done = false;
    };

    void work();
    // Hands the first block to the sink once it is done; false when it is not.
    bool writeFirst(std::unique_lock<std::mutex>& lock, bool wait);

    Sink sink_;
    std::size_t maxPending_;
    std::vector<std::thread> workers_;
    std::mutex mutex_;
    std::condition_variable blockAdded_;
    std::condition_variable blockDone_;
    std::deque<Block> blocks_;
    std::size_t started_ = 0;  // blocks at the front of blocks_ that a worker has taken
    bool stopping_ = false;
    std::vector<std::string> spare_;  // buffers of written blocks, for reuse
};

}  // namespace host
