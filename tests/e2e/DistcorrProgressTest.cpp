// The live progress line of a long command, seen through a pseudo-terminal:
// it appears after about a second, shows the command, the elapsed time and,
// when the procedure reports a phase, the fraction done and the time left,
// and it is cleared when the command ends. Nothing is shown when standard
// error is not a terminal, or with --quiet.
#include <gtest/gtest.h>

#include "DistcorrRunner.h"

namespace {

const std::string kSmall = fixture("e2e/small.csv");
const std::string kProbes = std::string(DC_BINARY_DIR) + "/tests/probe";
const std::string kClear = "\r\033[K";

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The progress lines drawn: each starts with "\r" and ends with ESC [ K.
std::vector<std::string> progressLines(const std::string& terminal) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    while ((at = terminal.find('\r', at)) != std::string::npos) {
        const std::size_t end = terminal.find("\033[K", at);
        if (end == std::string::npos) break;
        if (end > at + 1) lines.push_back(terminal.substr(at + 1, end - at - 1));
        at = end;
    }
    return lines;
}

TEST(DistcorrProgress, ReportedPhaseShowsFractionAndTimeLeftThenTheLineIsCleared) {
    const DistcorrResult r =
        runDistcorrOnTerminal({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE WAIT 2500 REPORT 1000."});
    EXPECT_EQ(r.exitCode, 0) << r.out;
    const std::vector<std::string> lines = progressLines(r.out);
    ASSERT_FALSE(lines.empty()) << r.out;
    for (const std::string& line : lines) {
        EXPECT_EQ(line.rfind("PROBE (command line, line 1)  0:0", 0), 0u) << line;
        EXPECT_TRUE(contains(line, "  probe phase ")) << line;
        EXPECT_TRUE(contains(line, "%")) << line;
    }
    EXPECT_TRUE(contains(lines.front(), " left")) << lines.front();
    // Nothing in the first second: the first line shows at least 0:01.
    EXPECT_EQ(lines.front().rfind("PROBE (command line, line 1)  0:00", 0), std::string::npos) << lines.front();
    // Cleared before the host's note, which then stands alone on its line.
    EXPECT_TRUE(contains(r.out, "\033[K" + kClear + "Note: PROBE: waited 2500 ms with a progress monitor")) << r.out;
}

TEST(DistcorrProgress, ProcedureThatReportsNothingStillShowsTheElapsedTime) {
    const DistcorrResult r =
        runDistcorrOnTerminal({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE WAIT 1800."});
    EXPECT_EQ(r.exitCode, 0) << r.out;
    const std::vector<std::string> lines = progressLines(r.out);
    ASSERT_FALSE(lines.empty()) << r.out;
    EXPECT_EQ(lines.back(), "PROBE (command line, line 1)  0:01");
    EXPECT_TRUE(contains(r.out, kClear + "Note: PROBE: waited 1800 ms with a progress monitor")) << r.out;
}

TEST(DistcorrProgress, InterruptEndsTheProgramWithTheLineErased) {
    bool interrupted = false;
    const DistcorrResult r =
        runDistcorrOnTerminal({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE WAIT 20000 REPORT 1000."},
                              [&interrupted](const std::string& received, pid_t pid) {
                                  // Ctrl-C once the first progress line is on the screen.
                                  if (!interrupted && contains(received, "\033[K")) {
                                      ::kill(pid, SIGINT);
                                      interrupted = true;
                                  }
                              });
    ASSERT_TRUE(interrupted) << r.out;
    EXPECT_EQ(r.exitCode, 128 + SIGINT);
    ASSERT_FALSE(progressLines(r.out).empty()) << r.out;
    // The last thing on the terminal erases the line the progress stood on.
    ASSERT_GE(r.out.size(), kClear.size());
    EXPECT_EQ(r.out.substr(r.out.size() - kClear.size()), kClear) << r.out;
    EXPECT_FALSE(contains(r.out, "waited 20000 ms")) << "the command ran to its end";
}

TEST(DistcorrProgress, QuickCommandShowsNoLine) {
    const DistcorrResult r =
        runDistcorrOnTerminal({"--data", kSmall, "-e", "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF."});
    EXPECT_EQ(r.exitCode, 0) << r.out;
    EXPECT_FALSE(contains(r.out, "\033[K")) << r.out;
    EXPECT_TRUE(contains(r.out, "Distance Correlation Coefficients")) << r.out;
}

TEST(DistcorrProgress, QuietShowsNoLine) {
    const DistcorrResult r = runDistcorrOnTerminal(
        {"--quiet", "--data", kSmall, "--procedures", kProbes, "-e", "PROBE WAIT 1500 REPORT 10."});
    EXPECT_EQ(r.exitCode, 0) << r.out;
    EXPECT_FALSE(contains(r.out, "\033[K")) << r.out;
    // Without a display the host offers procedures no monitor at all.
    EXPECT_TRUE(contains(r.out, "Note: PROBE: waited 1500 ms without a progress monitor")) << r.out;
}

TEST(DistcorrProgress, NoLineWhenStandardErrorIsNotATerminal) {
    const DistcorrResult r =
        runDistcorr({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE WAIT 1500 REPORT 10."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "Note: PROBE: waited 1500 ms without a progress monitor\n");
}

}  // namespace
