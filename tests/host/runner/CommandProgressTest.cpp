#include "runner/CommandProgress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using host::CommandProgress;
using namespace std::chrono_literals;

namespace {

// Records what the progress display asked the terminal to do.
struct Screen {
    std::mutex mutex;
    std::vector<std::string> shown;
    int clears = 0;

    CommandProgress make(std::chrono::milliseconds delay, std::chrono::milliseconds interval = 10ms) {
        return CommandProgress(
            [this](const std::string& line) {
                std::lock_guard<std::mutex> lock(mutex);
                shown.push_back(line);
            },
            [this] {
                std::lock_guard<std::mutex> lock(mutex);
                ++clears;
            },
            [] { return 100; }, delay, interval);
    }
    std::size_t shownCount() {
        std::lock_guard<std::mutex> lock(mutex);
        return shown.size();
    }
    std::string last() {
        std::lock_guard<std::mutex> lock(mutex);
        return shown.empty() ? "" : shown.back();
    }
};

void waitForLines(Screen& screen, std::size_t count) {
    for (int i = 0; i < 500 && screen.shownCount() < count; ++i) std::this_thread::sleep_for(5ms);
}

}  // namespace

TEST(CommandProgress, QuickCommandShowsNothing) {
    Screen screen;
    CommandProgress progress = screen.make(1000ms);
    progress.beginCommand("DISTANCE CORRELATION (command line, line 1)");
    std::this_thread::sleep_for(30ms);
    progress.endCommand();
    EXPECT_EQ(screen.shownCount(), 0u);
}

TEST(CommandProgress, SilentProcedureStillGetsTheElapsedTime) {
    Screen screen;
    CommandProgress progress = screen.make(0ms);
    progress.beginCommand("PROBE (job.sps, line 2)");
    waitForLines(screen, 3);
    progress.endCommand();
    ASSERT_GE(screen.shownCount(), 3u) << "the ticker redraws the line";
    EXPECT_EQ(screen.shown.front(), "PROBE (job.sps, line 2)  0:00");
    EXPECT_EQ(screen.clears, 1);
}

TEST(CommandProgress, ReportedPhaseShowsItsFraction) {
    Screen screen;
    CommandProgress progress = screen.make(0ms);
    progress.beginCommand("C");
    progress.Begin("permutation test", 200);
    progress.Update(50);
    EXPECT_EQ(progress.currentLine(), "C  0:00  permutation test 25%");
    // Updates may come from any thread.
    std::thread worker([&] { progress.Update(100); });
    worker.join();
    EXPECT_EQ(progress.currentLine(), "C  0:00  permutation test 50%");
    const std::size_t before = screen.shownCount();
    waitForLines(screen, before + 2);
    EXPECT_EQ(screen.last(), "C  0:00  permutation test 50%");
    progress.End();
    EXPECT_EQ(progress.currentLine(), "C  0:00");
    progress.endCommand();
}

TEST(CommandProgress, EstimateAppearsOnceThePhaseHasAPace) {
    Screen screen;
    CommandProgress progress = screen.make(100000ms);
    progress.beginCommand("C");
    progress.Begin("phase", 4);
    progress.Update(1);
    std::this_thread::sleep_for(600ms);  // a quarter in at least 0.6 s: at least 1.8 s left
    const std::string line = progress.currentLine();
    const std::string head = "phase 25%  about 0:";
    const std::size_t at = line.find(head);
    ASSERT_NE(at, std::string::npos) << line;
    EXPECT_GE(std::stoi(line.substr(at + head.size(), 2)), 2) << line;
    EXPECT_EQ(line.substr(line.size() - 5), " left") << line;
    progress.endCommand();
}

TEST(CommandProgress, EndingTheCommandStopsTheTickerAndClearsTheLine) {
    Screen screen;
    CommandProgress progress = screen.make(0ms);
    progress.beginCommand("C");
    waitForLines(screen, 1);
    progress.endCommand();
    const std::size_t after = screen.shownCount();
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(screen.shownCount(), after) << "no line after the command ended";
    EXPECT_EQ(screen.clears, 1);
    progress.endCommand();  // a second end changes nothing
    EXPECT_EQ(screen.clears, 1);
}

TEST(CommandProgress, EachCommandStartsAfresh) {
    Screen screen;
    CommandProgress progress = screen.make(100000ms);
    progress.beginCommand("FIRST");
    progress.Begin("phase", 10);
    progress.Update(5);
    progress.endCommand();
    progress.beginCommand("SECOND");
    EXPECT_EQ(progress.currentLine(), "SECOND  0:00");
    progress.endCommand();
}
