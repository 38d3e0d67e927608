#pragma once
#include <string>
#include <vector>

namespace host::syntax {

// Keywords and variable names compare without regard to letter case (ASCII).
std::string upperCase(const std::string& text);
bool equalsIgnoreCase(const std::string& a, const std::string& b);
// "A, B, C": the allowed words of a message.
std::string joinWords(const std::vector<std::string>& words, const std::string& separator = ", ");

}  // namespace host::syntax
