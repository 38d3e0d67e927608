#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace host::syntax {

// Keywords and variable names compare without regard to letter case (ASCII).
std::string upperCase(std::string_view text);
bool equalsIgnoreCase(std::string_view a, std::string_view b);
// "A, B, C": the allowed words of a message.
std::string joinWords(const std::vector<std::string>& words, const std::string& separator = ", ");

}  // namespace host::syntax
