#include "output/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

namespace host {

std::string shortestNumber(double value) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
    char buffer[32];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string fixedNumber(double value, int decimals) {
    if (!std::isfinite(value)) return ".";
    decimals = std::clamp(decimals, 0, 16);
    const int size = std::snprintf(nullptr, 0, "%.*f", decimals, value);
    std::vector<char> buffer(static_cast<std::size_t>(size) + 1);
    std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    std::string text(buffer.data(), static_cast<std::size_t>(size));
    if (text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
    return text;
}

std::string groupedCount(std::size_t count) {
    std::string digits = std::to_string(count);
    std::string text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
    return text;
}

}  // namespace host
