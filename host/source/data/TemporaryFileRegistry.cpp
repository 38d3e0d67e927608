#include "data/TemporaryFileRegistry.h"

#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <initializer_list>

namespace host {
namespace temporaryFiles {
namespace {

constexpr int kSlots = 256;
constexpr std::size_t kPathBytes = 4096;

enum SlotState : int { kFree = 0, kFilling = 1, kInUse = 2 };

struct Slot {
    std::atomic<int> state{kFree};
    char path[kPathBytes];
};

Slot slots[kSlots];
std::atomic<bool> installed{false};
// Threads inside an Uninterrupted section; the handler waits for them.
std::atomic<int> uninterrupted{0};
std::atomic<SignalHook> signalHook{nullptr};

void sleepMilliseconds(long milliseconds) {
    struct timespec pause {};
    pause.tv_nsec = milliseconds * 1000000L;
    ::nanosleep(&pause, nullptr);
}

extern "C" void removeAndReraise(int signalNumber) {
    const int savedErrno = errno;
    if (const SignalHook hook = signalHook.load()) hook();
    // Another thread may be in a short uninterrupted step (recording a new
    // file, putting files in place); wait for it, but not forever.
    for (int i = 0; i < 2000 && uninterrupted.load() > 0; ++i) sleepMilliseconds(1);
    removeAll();
    // Default action now, so that the signal ends the program with the
    // status a shell expects (128 + signal number).
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    ::sigaction(signalNumber, &action, nullptr);
    errno = savedErrno;
    ::raise(signalNumber);
}

}  // namespace

void setSignalHook(SignalHook hook) { signalHook.store(hook); }

void installSignalCleanup() {
    if (installed.exchange(true)) return;
    for (int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        ::sigaction(signalNumber, nullptr, &previous);
        // A signal ignored by the caller (nohup, a background job) stays ignored.
        if (previous.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = removeAndReraise;
        sigemptyset(&action.sa_mask);
        // While one handler runs, the others wait: the files are removed once.
        sigaddset(&action.sa_mask, SIGINT);
        sigaddset(&action.sa_mask, SIGTERM);
        sigaddset(&action.sa_mask, SIGHUP);
        ::sigaction(signalNumber, &action, nullptr);
    }
}

Uninterrupted::Uninterrupted() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    ::pthread_sigmask(SIG_BLOCK, &signals, &previous_);
    ++uninterrupted;
}

Uninterrupted::~Uninterrupted() {
    --uninterrupted;
    ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

int createRecorded(char* pattern, int& slot) {
    const Uninterrupted section;
    const int fd = ::mkstemp(pattern);
    slot = fd >= 0 ? add(pattern) : -1;
    return fd;
}

int add(const char* path) {
    const std::size_t length = std::strlen(path);
    if (length >= kPathBytes) return -1;
    for (int i = 0; i < kSlots; ++i) {
        int expected = kFree;
        if (!slots[i].state.compare_exchange_strong(expected, kFilling)) continue;
        std::memcpy(slots[i].path, path, length + 1);
        slots[i].state.store(kInUse);
        return i;
    }
    return -1;
}

void remove(int slot) {
    if (slot < 0 || slot >= kSlots) return;
    slots[slot].state.store(kFree);
}

void removeAll() {
    for (Slot& slot : slots)
        if (slot.state.load() == kInUse) ::unlink(slot.path);
}

}  // namespace temporaryFiles
}  // namespace host
