#pragma once

#define DEPENDENCE_EXPORT __attribute__((visibility("default")))

// The procedure's entry: runs one DEPENDENCE command. The pointer is the
// host's and is not used.
DEPENDENCE_EXPORT void dependence_entry(void* host);

// C-linkage entry: runs dependence_entry and swallows any exception.
extern "C" DEPENDENCE_EXPORT void dependence_(void* host);
