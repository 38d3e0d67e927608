#include "data/NumberText.h"

#include <charconv>
#include <system_error>

namespace host {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// For a well-formed number that does not fit a double: true when it is too
// small (its magnitude is below 1), false when it is too large.
bool isUnderflow(std::string_view text) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
    long magnitude = 0;       // decimal exponent of the first non-zero digit
    bool seenNonZero = false;
    bool afterPoint = false;
    long position = 0;        // digits seen before the point, or minus those after
    for (; i < text.size() && text[i] != 'e' && text[i] != 'E'; ++i) {
        if (text[i] == '.') {
            afterPoint = true;
            continue;
        }
        if (afterPoint) --position;
        if (!seenNonZero && text[i] != '0') {
            seenNonZero = true;
            magnitude = afterPoint ? position : 0;
        }
        if (!afterPoint && seenNonZero) ++magnitude;
    }
    if (!seenNonZero) return true;
    if (magnitude > 0) --magnitude;  // integer digits: 123 has magnitude 2
    long exponent = 0;
    bool negative = false;
    if (i < text.size()) {
        ++i;
        if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
        for (; i < text.size(); ++i)
            if (exponent < 100000000L) exponent = exponent * 10 + (text[i] - '0');
    }
    return magnitude + (negative ? -exponent : exponent) < 0;
}

}  // namespace

std::string_view trimBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

NumberParse parseNumber(std::string_view text, double& value) {
    text = trimBlanks(text);
    std::string_view body = text;
    if (!body.empty() && body.front() == '+') {
        body.remove_prefix(1);
        if (!body.empty() && body.front() == '-') return NumberParse::NotANumber;
    }
    std::string_view unsignedBody = body;
    if (!unsignedBody.empty() && unsignedBody.front() == '-') unsignedBody.remove_prefix(1);
    // Only digits or a point may start the number: rules out inf, nan, "+-1".
    if (unsignedBody.empty() || !(isDigit(unsignedBody.front()) || unsignedBody.front() == '.'))
        return NumberParse::NotANumber;
    double parsed = 0.0;
    const char* end = body.data() + body.size();
    const std::from_chars_result result = std::from_chars(body.data(), end, parsed);
    if (result.ptr != end) return NumberParse::NotANumber;
    if (result.ec == std::errc::result_out_of_range) {
        if (!isUnderflow(body)) return NumberParse::OutOfRange;
        value = body.front() == '-' ? -0.0 : 0.0;
        return NumberParse::Ok;
    }
    if (result.ec != std::errc()) return NumberParse::NotANumber;
    value = parsed;
    return NumberParse::Ok;
}

char* writeNumber(char* out, double value) { return std::to_chars(out, out + kNumberTextCapacity, value).ptr; }

std::string formatNumber(double value) {
    char buffer[kNumberTextCapacity];
    return std::string(buffer, writeNumber(buffer, value));
}

int writtenDecimals(std::string_view text) {
    text = trimBlanks(text);
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos) return 0;
    int count = 0;
    for (std::size_t i = point + 1; i < text.size() && isDigit(text[i]); ++i) ++count;
    if (point + 1 + count < text.size()) return 0;  // exponent form
    return count;
}

}  // namespace host
