// Keeps the two entry points in the plug-in when it is linked from the
// procedure's static library.
#include "DependenceEntry.h"

namespace {
[[maybe_unused]] void (*const keepEntry)(void*) = &dependence_entry;
[[maybe_unused]] void (*const keepCEntry)(void*) = &dependence_;
}  // namespace
