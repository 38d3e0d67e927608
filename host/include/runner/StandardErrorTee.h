#pragma once
#include <atomic>
#include <memory>
#include <mutex>
#include <ostream>
#include <streambuf>
#include <string>

namespace host {

// Standard error while distcorr runs commands. It takes the place of the
// stream buffer of `stream` (std::cerr) and forwards everything to the buffer
// it replaced, with three additions:
// - It notes whether text arrived through `stream` itself. While a command
//   runs, the host writes its messages through hostStream(), so text on
//   `stream` is the procedure's own (its stage-failure line).
// - It keeps one live line (the progress line) at the bottom: any other text
//   first clears it, and it is drawn only at the start of a line.
// - Writes from several threads are serialised.
class StandardErrorTee {
public:
    explicit StandardErrorTee(std::ostream& stream);
    StandardErrorTee(const StandardErrorTee&) = delete;
    StandardErrorTee& operator=(const StandardErrorTee&) = delete;
    ~StandardErrorTee();  // clears the live line and gives the stream its buffer back

    // A stream for the host's own messages: not counted as procedure text.
    std::ostream& hostStream() { return hostStream_; }

    // Whether text arrived through the tee'd stream since the last reset.
    bool procedureWrote() const { return procedureWrote_.load(); }
    void resetProcedureWrote() { procedureWrote_.store(false); }

    // Shows `text` as the live line (replacing the previous one). Does nothing
    // while another writer is in the middle of a line.
    void showLiveLine(const std::string& text);
    void clearLiveLine();

    // When a signal ends the program while a live line is shown, erase it by
    // writing straight to descriptor `fd` (the one behind the stream). Lasts
    // as long as the tee; one tee at a time.
    void eraseLiveLineOnSignal(int fd);

private:
    class Lane : public std::streambuf {
    public:
        Lane(StandardErrorTee& tee, bool countsAsProcedure) : tee_(tee), procedure_(countsAsProcedure) {}

    protected:
        int overflow(int c) override;
        std::streamsize xsputn(const char* s, std::streamsize n) override;
        int sync() override;

    private:
        StandardErrorTee& tee_;
        bool procedure_;
    };

    std::streamsize forward(const char* s, std::streamsize n, bool procedure);
    void clearLiveLineLocked();

    std::ostream& stream_;
    std::streambuf* real_;
    Lane procedureLane_;
    Lane hostLane_;
    std::ostream hostStream_;
    std::mutex mutex_;
    std::atomic<bool> procedureWrote_{false};
    bool liveLineShown_ = false;
    int signalFd_ = -1;
    bool atLineStart_ = true;
};

}  // namespace host
