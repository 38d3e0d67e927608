#pragma once

#define DC_EXPORT __attribute__((visibility("default")))

// The procedure's entry: runs one DISTANCE CORRELATION command. The pointer is
// the host's and is not used by the procedure.
DC_EXPORT void distancecorr_entry(void* host);

// C-linkage entry: runs distancecorr_entry and swallows any exception.
extern "C" DC_EXPORT void discorr_(void* host);
