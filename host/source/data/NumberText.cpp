#include "data/NumberText.h"

#include <charconv>
#include <cstdint>
#include <system_error>

namespace host {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// For a well-formed number that does not fit a double: true when it is too
// small (its magnitude is below 1), false when it is too large.
bool isUnderflow(std::string_view text) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
    long magnitude = 0;  // decimal exponent of the first non-zero digit
    bool seenNonZero = false;
    bool afterPoint = false;
    long position = 0;  // digits seen before the point, or minus those after
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

// Plain decimals of at most 15 significant digits and no exponent ("-12.375"),
// the common case, without the general parser: the digits form an integer m
// below 2^53 and the value is m / 10^k with k at most 22, where both are
// exact doubles and one division rounds correctly. False for anything else.
bool parseShortDecimal(std::string_view text, double& value) {
    static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                         1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const char* p = text.data();
    const char* const end = p + text.size();
    const bool negative = p < end && *p == '-';
    if (negative) ++p;
    if (end - p > 20) return false;  // more than 19 digits could overflow
    std::uint64_t mantissa = 0;
    const char* const first = p;
    while (p < end && static_cast<unsigned>(*p - '0') < 10)
        mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
    std::ptrdiff_t decimals = 0;
    const bool point = p < end && *p == '.';
    if (point) {
        const char* const fraction = ++p;
        while (p < end && static_cast<unsigned>(*p - '0') < 10)
            mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
        decimals = p - fraction;
    }
    if (p != end || end - first == decimals + (point ? 1 : 0) || mantissa > (std::uint64_t{1} << 53) || decimals > 22)
        return false;
    const double magnitude = static_cast<double>(mantissa) / kPowers[decimals];
    value = negative ? -magnitude : magnitude;
    return true;
}

}  // namespace

NumberParse parseNumber(std::string_view text, double& value) { return parseTrimmedNumber(trimBlanks(text), value); }

NumberParse parseTrimmedNumber(std::string_view text, double& value) {
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
    if (parseShortDecimal(body, value)) return NumberParse::Ok;
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

NumberParse parseNumber(std::string_view text, double& value, const NumberStyle& style) {
    text = trimBlanks(text);
    if (style.decimal == '.' && style.group == 0 && style.bare) return parseTrimmedNumber(text, value);
    if (!style.bare) {
        auto numeric = [&](char c) { return isDigit(c) || c == style.decimal; };
        while (!text.empty() && !numeric(text.front()) && text.front() != '-' && text.front() != '+')
            text.remove_prefix(1);
        while (!text.empty() && !numeric(text.back())) text.remove_suffix(1);
    }
    std::string plain;
    plain.reserve(text.size());
    for (const char c : text) {
        if (c == style.group) continue;
        if (c == style.decimal)
            plain += '.';
        else if (c == '.' || c == ' ' || c == '\t')
            return NumberParse::NotANumber;  // a point that is not the decimal mark, or blanks inside
        else
            plain += c;
    }
    return parseTrimmedNumber(plain, value);
}

char* writeNumber(char* out, double value) { return std::to_chars(out, out + kNumberTextCapacity, value).ptr; }

std::string formatNumber(double value) {
    char buffer[kNumberTextCapacity];
    return std::string(buffer, writeNumber(buffer, value));
}

int writtenDecimals(std::string_view text, char decimal) {
    text = trimBlanks(text);
    const std::size_t point = text.find(decimal);
    if (point == std::string_view::npos) return 0;
    int count = 0;
    for (std::size_t i = point + 1; i < text.size() && isDigit(text[i]); ++i) ++count;
    if (point + 1 + count < text.size()) return 0;  // exponent form
    return count;
}

}  // namespace host
