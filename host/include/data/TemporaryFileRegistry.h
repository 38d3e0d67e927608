#pragma once

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

// Records a temporary file; returns its slot, or -1 when it was not recorded.
int add(const char* path);
// Forgets a slot returned by add() (-1 is ignored).
void remove(int slot);

// Removes every recorded file now (what the signal handler does).
void removeAll();

}  // namespace temporaryFiles
}  // namespace host
