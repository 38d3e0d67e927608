#include "runner/ProgressLine.h"

#include <gtest/gtest.h>

using host::formatDuration;
using host::formatProgressLine;
using host::ProgressSnapshot;

TEST(ProgressLine, DurationsInMinutesAndHours) {
    EXPECT_EQ(formatDuration(0), "0:00");
    EXPECT_EQ(formatDuration(7.9), "0:07");
    EXPECT_EQ(formatDuration(59.99), "0:59");
    EXPECT_EQ(formatDuration(60), "1:00");
    EXPECT_EQ(formatDuration(750), "12:30");
    EXPECT_EQ(formatDuration(3723), "1:02:03");
    EXPECT_EQ(formatDuration(-5), "0:00");
}

TEST(ProgressLine, ElapsedTimeAloneWhenNothingIsReported) {
    ProgressSnapshot s;
    s.command = "DISTANCE CORRELATION (job.sps, line 3)";
    s.elapsedSeconds = 7.4;
    EXPECT_EQ(formatProgressLine(s, 80), "DISTANCE CORRELATION (job.sps, line 3)  0:07");
}

TEST(ProgressLine, FractionAndTimeLeftFromThePhasePace) {
    ProgressSnapshot s;
    s.command = "DISTANCE CORRELATION (command line, line 1)";
    s.elapsedSeconds = 12;
    s.activity = "permutation test";
    s.total = 50000;
    s.done = 20000;      // 40 % in 8 s of the phase ...
    s.phaseSeconds = 8;  // ... so 12 s remain
    EXPECT_EQ(formatProgressLine(s, 120),
              "DISTANCE CORRELATION (command line, line 1)  0:12  permutation test 40%  about 0:12 left");
}

TEST(ProgressLine, TimeLeftIsRoundedUp) {
    ProgressSnapshot s;
    s.command = "C";
    s.activity = "phase";
    s.total = 100;
    s.done = 95;
    s.phaseSeconds = 9.5;  // 0.5 s left: shown as 0:01, not 0:00
    EXPECT_EQ(formatProgressLine(s, 80), "C  0:00  phase 95%  about 0:01 left");
}

TEST(ProgressLine, NoEstimateBeforeAnyWorkOrTooEarly) {
    ProgressSnapshot s;
    s.command = "C";
    s.activity = "phase";
    s.total = 100;
    s.phaseSeconds = 3;
    EXPECT_EQ(formatProgressLine(s, 80), "C  0:00  phase 0%");
    s.done = 50;
    s.phaseSeconds = 0.2;
    EXPECT_EQ(formatProgressLine(s, 80), "C  0:00  phase 50%");
}

TEST(ProgressLine, CompletePhaseShowsAHundredPercentWithoutEstimate) {
    ProgressSnapshot s;
    s.command = "C";
    s.activity = "phase";
    s.total = 10;
    s.done = 12;  // more than announced is taken as all
    s.phaseSeconds = 5;
    EXPECT_EQ(formatProgressLine(s, 80), "C  0:00  phase 100%");
}

TEST(ProgressLine, PhaseWithoutTotalShowsTheCountDone) {
    ProgressSnapshot s;
    s.command = "C";
    s.activity = "reading";
    s.done = 1234;
    EXPECT_EQ(formatProgressLine(s, 80), "C  0:00  reading 1234 done");
    s.done = 0;
    EXPECT_EQ(formatProgressLine(s, 80), "C  0:00  reading");
}

TEST(ProgressLine, CutToTheTerminalLeavingTheLastColumnFree) {
    ProgressSnapshot s;
    s.command = "DISTANCE CORRELATION (job.sps, line 3)";
    s.elapsedSeconds = 61;
    EXPECT_EQ(formatProgressLine(s, 21), "DISTANCE CORRELATION");
    EXPECT_EQ(formatProgressLine(s, 1), "");
}

TEST(ProgressLine, CutNeverSplitsACharacter) {
    ProgressSnapshot s;
    s.command = "\xC3\xA4\xC3\xA4\xC3\xA4";  // three two-byte letters
    EXPECT_EQ(formatProgressLine(s, 5), "\xC3\xA4\xC3\xA4");
    EXPECT_EQ(formatProgressLine(s, 4), "\xC3\xA4");
}
