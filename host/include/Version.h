#pragma once

namespace host {

// The release of distcorr and its host library, as "MAJOR.MINOR" (set by the build).
const char* version();

}  // namespace host
