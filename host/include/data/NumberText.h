#pragma once
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace host {

// The value a missing number takes: the most negative finite double.
constexpr double kSystemMissing = -std::numeric_limits<double>::max();

inline bool isSystemMissing(double value) { return value == kSystemMissing; }

enum class NumberParse { Ok, NotANumber, OutOfRange };

// Reads a decimal number ("12", "-3.5", ".5", "1e-3", "+2"), always with '.'
// as the decimal point whatever the locale. Blanks around the number are
// allowed; anything else (trailing text, "inf", "nan", hexadecimal) is not.
// Numbers too small for a double read as zero; too large ones are OutOfRange.
NumberParse parseNumber(std::string_view text, double& value);

// How numbers are written in a column: the decimal mark, a group separator
// (0: none) that is dropped, and whether other characters may stand before
// and after the number ("95%", "EUR 95") and are dropped.
struct NumberStyle {
    char decimal = '.';
    char group = 0;
    bool bare = true;
};

// parseNumber for numbers written in a style; with the default style the same.
NumberParse parseNumber(std::string_view text, double& value, const NumberStyle& style);

// The shortest text that reads back to exactly the same double.
std::string formatNumber(double value);

// Room that writeNumber needs: the longest shortest text of a double is 24
// characters ("-2.2250738585072014e-308").
constexpr std::size_t kNumberTextCapacity = 32;

// Writes formatNumber's text at out, which has room for kNumberTextCapacity
// characters, and returns the end of the text. No string is made, so large
// blocks of numbers are formatted without an allocation per number.
char* writeNumber(char* out, double value);

// Number of digits after the decimal point as written ("1.250" -> 3,
// "2e-3" -> 0: exponent forms are not counted).
int writtenDecimals(std::string_view text, char decimal = '.');

// Removes blanks (spaces and tabs) at both ends.
inline std::string_view trimBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

// parseNumber for a text without blanks at its ends.
NumberParse parseTrimmedNumber(std::string_view text, double& value);

}  // namespace host
