#include "runner/ProgressLine.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace host {

namespace {

// The phase needs this much behind it before its pace says anything.
constexpr double kMinimumPhaseSeconds = 0.5;

// Cuts UTF-8 text to at most `bytes` bytes without splitting a character. No
// character takes more columns than bytes, so the line fits the terminal.
std::string cutText(const std::string& text, std::size_t bytes) {
    if (text.size() <= bytes) return text;
    std::size_t end = bytes;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return text.substr(0, end);
}

// Whole percent of `done` out of `total` (done <= total), rounded down.
int percent(std::uint64_t done, std::uint64_t total) {
    if (total <= UINT64_MAX / 100) return static_cast<int>(done * 100 / total);
    return static_cast<int>(done / (total / 100));
}

}  // namespace

int terminalColumns(int fd) {
    struct winsize size {};
    if (::ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    return 80;
}

std::string formatDuration(double seconds) {
    if (!(seconds > 0)) seconds = 0;
    const auto whole = static_cast<unsigned long long>(std::floor(std::min(seconds, 1e12)));
    const unsigned long long h = whole / 3600, m = whole / 60 % 60, s = whole % 60;
    char text[48];
    if (h > 0)
        std::snprintf(text, sizeof text, "%llu:%02llu:%02llu", h, m, s);
    else
        std::snprintf(text, sizeof text, "%llu:%02llu", m, s);
    return text;
}

std::string formatProgressLine(const ProgressSnapshot& snapshot, int columns) {
    std::string line = snapshot.command + "  " + formatDuration(snapshot.elapsedSeconds);
    if (!snapshot.activity.empty()) {
        line += "  " + snapshot.activity;
        if (snapshot.total > 0) {
            const std::uint64_t done = std::min(snapshot.done, snapshot.total);
            line += " " + std::to_string(percent(done, snapshot.total)) + "%";
            if (done > 0 && done < snapshot.total && snapshot.phaseSeconds >= kMinimumPhaseSeconds) {
                // The rest at the pace so far.
                const double left = snapshot.phaseSeconds * static_cast<double>(snapshot.total - done) /
                                    static_cast<double>(done);
                line += "  about " + formatDuration(std::ceil(left)) + " left";
            }
        } else if (snapshot.done > 0) {
            line += " " + std::to_string(snapshot.done) + " done";
        }
    }
    // One column stays free, so that the cursor never wraps to a new line.
    const std::size_t room = columns > 1 ? static_cast<std::size_t>(columns - 1) : 0;
    return cutText(line, room);
}

}  // namespace host
