// Keeps the two entry points in the plug-in when it is linked from the
// procedure's static library.
#include "DistanceCorrEntry.h"

namespace {
[[maybe_unused]] void (*const keepEntry)(void*) = &distancecorr_entry;
[[maybe_unused]] void (*const keepCEntry)(void*) = &discorr_;
}  // namespace
