#pragma once
#include <string>

namespace host {

// Reports a failure of the host's own services (files, dictionaries) to the
// session as an error, then raises it as ErrorText for the caller.
[[noreturn]] void raiseHostError(const std::string& text);

// Reports an error to the session without raising it.
void reportHostError(const std::string& text);

}  // namespace host
