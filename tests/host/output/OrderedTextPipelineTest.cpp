// The ordered text pipeline: blocks formatted on any number of threads reach
// the sink in the order they were submitted, errors reach the caller, and the
// number of blocks waiting stays bounded.
#include "output/OrderedTextPipeline.h"

#include <atomic>
#include <chrono>
#include <random>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "FixedWorkerPool.h"

namespace {

// Blocks "0;", "1;", ... formatted after a random short pause, so that later
// blocks often finish first.
std::string runBlocks(unsigned threads, int blocks) {
    std::string written;
    host::OrderedTextPipeline pipeline(threads, [&](const std::string& text) { written += text; });
    std::mt19937 random(static_cast<unsigned>(blocks));
    for (int b = 0; b < blocks; ++b) {
        const int pause = static_cast<int>(random() % 300);
        pipeline.submit([b, pause](std::string& text) {
            std::this_thread::sleep_for(std::chrono::microseconds(pause));
            text = std::to_string(b) + ";";
        });
    }
    pipeline.finish();
    return written;
}

TEST(OrderedTextPipelineTest, BlocksReachTheSinkInSubmissionOrderForAnyThreadCount) {
    std::string expected;
    for (int b = 0; b < 200; ++b) expected += std::to_string(b) + ";";
    for (unsigned threads : {1u, 2u, 3u, 8u}) EXPECT_EQ(runBlocks(threads, 200), expected) << threads << " threads";
}

TEST(OrderedTextPipelineTest, NothingSubmittedWritesNothing) {
    for (unsigned threads : {1u, 4u}) EXPECT_EQ(runBlocks(threads, 0), "");
}

TEST(OrderedTextPipelineTest, EachBlockGetsTheMemoryOfAnEarlierOne) {
    for (unsigned threads : {1u, 3u}) {
        std::string written;
        std::atomic<int> reused{0};
        host::OrderedTextPipeline pipeline(threads, [&](const std::string& text) { written += text + "|"; });
        for (int b = 0; b < 50; ++b)
            pipeline.submit([b, &reused](std::string& text) {
                if (!text.empty()) ++reused;  // an earlier block's bytes, to be replaced
                text.assign(static_cast<std::size_t>(b % 7), 'x');
            });
        pipeline.finish();
        std::string expected;
        for (int b = 0; b < 50; ++b) expected += std::string(static_cast<std::size_t>(b % 7), 'x') + "|";
        EXPECT_EQ(written, expected) << threads << " threads";
        EXPECT_GT(reused.load(), 0) << threads << " threads";
    }
}

TEST(OrderedTextPipelineTest, WithOneThreadEveryBlockIsWrittenBeforeSubmitReturns) {
    std::string written;
    host::OrderedTextPipeline pipeline(1, [&](const std::string& text) { written += text; });
    pipeline.submit([](std::string& text) { text = "a"; });
    EXPECT_EQ(written, "a");
    pipeline.submit([](std::string& text) { text = "b"; });
    EXPECT_EQ(written, "ab");
}

TEST(OrderedTextPipelineTest, WaitingBlocksAreBounded) {
    for (unsigned threads : {2u, 3u}) {
        std::atomic<int> waiting{0};
        int most = 0;
        host::OrderedTextPipeline pipeline(threads, [&](const std::string&) {
            most = std::max(most, waiting.load());
            --waiting;
            // A slow sink: formatting runs ahead until the bound stops it.
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        });
        for (int b = 0; b < 300; ++b)
            pipeline.submit([&](std::string& text) {
                text = "x";
                ++waiting;
            });
        pipeline.finish();
        EXPECT_GT(most, 1) << "formatting ran ahead of the sink";
        EXPECT_LE(most, static_cast<int>(4 * threads + 1)) << threads << " threads";
    }
}

TEST(OrderedTextPipelineTest, AFormattingErrorReachesTheCallerInOrder) {
    for (unsigned threads : {1u, 2u, 8u}) {
        std::string written;
        host::OrderedTextPipeline pipeline(threads, [&](const std::string& text) { written += text; });
        bool thrown = false;
        try {
            for (int b = 0; b < 100; ++b)
                pipeline.submit([b](std::string& text) {
                    if (b == 40) throw std::runtime_error("no memory for block 40");
                    text = std::to_string(b) + ";";
                });
            pipeline.finish();
        } catch (const std::runtime_error& e) {
            thrown = true;
            EXPECT_STREQ(e.what(), "no memory for block 40");
        }
        EXPECT_TRUE(thrown) << threads << " threads";
        std::string before;
        for (int b = 0; b < 40; ++b) before += std::to_string(b) + ";";
        EXPECT_EQ(written, before) << threads << " threads";
    }
}

TEST(OrderedTextPipelineTest, ASinkErrorReachesTheCaller) {
    for (unsigned threads : {1u, 3u}) {
        int writes = 0;
        host::OrderedTextPipeline pipeline(threads, [&](const std::string&) {
            if (++writes == 5) throw std::runtime_error("disk full");
        });
        EXPECT_THROW(
            {
                for (int b = 0; b < 100; ++b) pipeline.submit([](std::string& text) { text = "x"; });
                pipeline.finish();
            },
            std::runtime_error);
        EXPECT_EQ(writes, 5);
    }
}

TEST(OrderedTextPipelineTest, DefaultThreadsAreTheHostPoolsOrOne) {
    {
        ScopedThreadCount pool(5);
        EXPECT_EQ(host::OrderedTextPipeline::defaultThreads(), 5u);
    }
    EXPECT_EQ(host::OrderedTextPipeline::defaultThreads(), 1u);
}

}  // namespace
