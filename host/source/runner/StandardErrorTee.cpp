#include "runner/StandardErrorTee.h"

#include <unistd.h>

#include "data/TemporaryFileRegistry.h"

namespace host {

namespace {
// Carriage return, then erase to the end of the line (ANSI).
const char kClearLine[] = "\r\033[K";

// The descriptor on which a live line stands now, or -1; read by the signal hook.
std::atomic<int> lineOnSignalFd{-1};

void eraseLineOnSignal() {
    const int fd = lineOnSignalFd.load();
    if (fd < 0) return;
    const ssize_t written = ::write(fd, kClearLine, sizeof kClearLine - 1);
    (void)written;  // nothing more can be done while the program ends
}
}  // namespace

StandardErrorTee::StandardErrorTee(std::ostream& stream)
    : stream_(stream),
      real_(stream.rdbuf()),
      procedureLane_(*this, true),
      hostLane_(*this, false),
      hostStream_(&hostLane_) {
    stream_.rdbuf(&procedureLane_);
}

StandardErrorTee::~StandardErrorTee() {
    clearLiveLine();
    if (signalFd_ >= 0) temporaryFiles::setSignalHook(nullptr);
    stream_.flush();
    stream_.rdbuf(real_);
}

int StandardErrorTee::Lane::overflow(int c) {
    if (c == traits_type::eof()) return traits_type::not_eof(c);
    const char ch = static_cast<char>(c);
    return tee_.forward(&ch, 1, procedure_) == 1 ? c : traits_type::eof();
}

std::streamsize StandardErrorTee::Lane::xsputn(const char* s, std::streamsize n) {
    return tee_.forward(s, n, procedure_);
}

int StandardErrorTee::Lane::sync() {
    std::lock_guard<std::mutex> lock(tee_.mutex_);
    return tee_.real_->pubsync();
}

std::streamsize StandardErrorTee::forward(const char* s, std::streamsize n, bool procedure) {
    if (n <= 0) return 0;
    std::lock_guard<std::mutex> lock(mutex_);
    if (procedure) procedureWrote_.store(true);
    clearLiveLineLocked();
    const std::streamsize written = real_->sputn(s, n);
    atLineStart_ = s[n - 1] == '\n';
    return written;
}

void StandardErrorTee::showLiveLine(const std::string& text) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!atLineStart_) return;
    real_->sputn("\r", 1);
    real_->sputn(text.data(), static_cast<std::streamsize>(text.size()));
    real_->sputn(kClearLine + 1, sizeof kClearLine - 2);  // erase what a longer line left
    real_->pubsync();
    liveLineShown_ = true;
    if (signalFd_ >= 0) lineOnSignalFd.store(signalFd_);
}

void StandardErrorTee::clearLiveLine() {
    std::lock_guard<std::mutex> lock(mutex_);
    clearLiveLineLocked();
}

void StandardErrorTee::clearLiveLineLocked() {
    if (!liveLineShown_) return;
    lineOnSignalFd.store(-1);
    real_->sputn(kClearLine, sizeof kClearLine - 1);
    real_->pubsync();
    liveLineShown_ = false;
}

void StandardErrorTee::eraseLiveLineOnSignal(int fd) {
    std::lock_guard<std::mutex> lock(mutex_);
    signalFd_ = fd;
    temporaryFiles::setSignalHook(&eraseLineOnSignal);
}

}  // namespace host
