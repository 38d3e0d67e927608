#include "Version.h"

namespace host {

const char* version() { return DC_VERSION; }

}  // namespace host
