#pragma once
#include <signal.h>

namespace host {

// Temporary files that must not outlive the program: the files being written
// under a temporary name until they are put in place. When SIGINT, SIGTERM or
// SIGHUP arrives, the handler removes every registered file (using only
// async-signal-safe calls) and then lets the signal end the program as usual.
//
// Registration copies the path into a fixed table, so the handler never
// touches memory that another thread might free. Paths longer than 4095 bytes
// and files beyond the 256th open at once are not registered (they are still
// removed on every ordinary failure, just not on a signal).
namespace temporaryFiles {

// Installs the signal handlers (once; later calls do nothing).
void installSignalCleanup();

// Creates a file from a mkstemp() pattern (changed in place to the name) and
// records it, with no moment in between at which a signal could end the
// program and leave the file behind. Returns the descriptor, or -1 with errno
// set; `slot` receives the record (-1 when the file could not be recorded).
int createRecorded(char* pattern, int& slot);

// Records an existing temporary file; returns its slot, or -1 when it was not recorded.
int add(const char* path);
// Forgets a slot returned by add() (-1 is ignored).
void remove(int slot);

// Removes every recorded file now (what the signal handler does).
void removeAll();

// A function the signal handler calls first, before it removes the files:
// for example to erase a progress line, so that the shell's prompt starts on
// a clean line. It must use only async-signal-safe calls. One at a time;
// nullptr removes it.
using SignalHook = void (*)();
void setSignalHook(SignalHook hook);

// While alive, SIGINT, SIGTERM and SIGHUP wait: they are blocked on this
// thread, and a handler running on another thread waits (up to two seconds)
// until the section ends. For short steps that must not be cut in half, such
// as putting a data file and its dictionary in place.
class Uninterrupted {
public:
    Uninterrupted();
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    ~Uninterrupted();

private:
    sigset_t previous_;
};

}  // namespace temporaryFiles
}  // namespace host
