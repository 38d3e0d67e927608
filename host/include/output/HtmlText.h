#pragma once
#include <string>

namespace host {

// Text made safe for HTML element content and attribute values.
std::string htmlEscape(const std::string& text);

// Base64 of bytes, for data URIs.
std::string base64(const std::string& bytes);

}  // namespace host
