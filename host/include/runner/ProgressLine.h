#pragma once
#include <cstdint>
#include <string>

namespace host {

// What the live progress line shows at one moment.
struct ProgressSnapshot {
    std::string command;        // e.g. "DISTANCE CORRELATION (job.sps, line 3)"
    double elapsedSeconds = 0;  // since the command began
    std::string activity;       // the phase the procedure reported ("" when none)
    std::uint64_t total = 0;    // units of the phase (0 when unknown)
    std::uint64_t done = 0;     // units finished
    double phaseSeconds = 0;    // since the phase began
};

// The text of the live progress line, cut to fit `columns` terminal columns:
//   "DISTANCE CORRELATION (job.sps, line 3)  0:07  permutation test 42%  about 0:10 left"
// The time left is estimated from the phase's own pace, once some of it is done.
std::string formatProgressLine(const ProgressSnapshot& snapshot, int columns);

// Columns of the terminal on descriptor `fd` (80 when it does not say).
int terminalColumns(int fd);

// "0:07", "12:30", "1:02:03": whole seconds, rounded down.
std::string formatDuration(double seconds);

}  // namespace host
