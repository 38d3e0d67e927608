#include "data/NumberText.h"

#include <gtest/gtest.h>

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "DataTestSupport.h"

using host::NumberParse;
using host::parseNumber;

namespace {

NumberParse parse(const char* text, double& value) { return parseNumber(text, value); }

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

}  // namespace

TEST(NumberTextTest, ReadsPlainDecimalForms) {
    double v = 0.0;
    ASSERT_EQ(parse("12", v), NumberParse::Ok);
    EXPECT_EQ(v, 12.0);
    ASSERT_EQ(parse("-3.5", v), NumberParse::Ok);
    EXPECT_EQ(v, -3.5);
    ASSERT_EQ(parse(".5", v), NumberParse::Ok);
    EXPECT_EQ(v, 0.5);
    ASSERT_EQ(parse("5.", v), NumberParse::Ok);
    EXPECT_EQ(v, 5.0);
    ASSERT_EQ(parse("+2", v), NumberParse::Ok);
    EXPECT_EQ(v, 2.0);
    ASSERT_EQ(parse("1e-3", v), NumberParse::Ok);
    EXPECT_EQ(v, 0.001);
    ASSERT_EQ(parse("2.5E+2", v), NumberParse::Ok);
    EXPECT_EQ(v, 250.0);
    ASSERT_EQ(parse("  7 \t", v), NumberParse::Ok);
    EXPECT_EQ(v, 7.0);
    // Correctly rounded: the same double the compiler makes of the literal.
    ASSERT_EQ(parse("0.1", v), NumberParse::Ok);
    EXPECT_EQ(bitsOf(v), bitsOf(0.1));
}

TEST(NumberTextTest, RejectsEverythingElse) {
    double v = 0.0;
    for (const char* text : {"", " ", "abc", "1,5", "1.5x", "1e", "--1", "+-1", "-", ".", "inf", "-inf", "nan",
                             "Infinity", "0x10", "1 2", "1.2.3", "e5"})
        EXPECT_EQ(parse(text, v), NumberParse::NotANumber) << "text: \"" << text << "\"";
}

TEST(NumberTextTest, TooLargeIsOutOfRangeTooSmallIsZero) {
    double v = 1.0;
    EXPECT_EQ(parse("1e400", v), NumberParse::OutOfRange);
    EXPECT_EQ(parse("-123456e999", v), NumberParse::OutOfRange);
    ASSERT_EQ(parse("1e-400", v), NumberParse::Ok);
    EXPECT_EQ(v, 0.0);
    ASSERT_EQ(parse("-0.000001e-400", v), NumberParse::Ok);
    EXPECT_EQ(v, 0.0);
    EXPECT_TRUE(std::signbit(v));
    ASSERT_EQ(parse("1.7976931348623157e308", v), NumberParse::Ok);
    EXPECT_EQ(v, std::numeric_limits<double>::max());
}

TEST(NumberTextTest, SystemMissingIsTheMostNegativeFiniteDouble) {
    EXPECT_EQ(host::kSystemMissing, -1.7976931348623157e308);
    EXPECT_TRUE(host::isSystemMissing(-std::numeric_limits<double>::max()));
    EXPECT_FALSE(host::isSystemMissing(0.0));
}

TEST(NumberTextTest, FormatsShortestTextThatReadsBack) {
    EXPECT_EQ(host::formatNumber(0.1), "0.1");
    EXPECT_EQ(host::formatNumber(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(host::formatNumber(34.0), "34");
    EXPECT_EQ(host::formatNumber(-2.5), "-2.5");
    std::mt19937_64 random(12345);
    for (int i = 0; i < 20000; ++i) {
        std::uint64_t bits = random();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value)) continue;
        double back = 0.0;
        ASSERT_EQ(parseNumber(host::formatNumber(value), back), NumberParse::Ok) << host::formatNumber(value);
        EXPECT_EQ(bitsOf(back), bitsOf(value)) << host::formatNumber(value);
    }
}

namespace {

// Switches to a German locale (decimal comma), compiling one into a scratch
// folder when the system has none installed. False when impossible.
bool useGermanLocale(const datatest::ScratchFolder& folder) {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"})
        if (std::setlocale(LC_ALL, name) != nullptr) return true;
    const std::string command = "localedef -i de_DE -f UTF-8 '" + folder.file("de_DE.UTF-8") + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) return false;
    ::setenv("LOCPATH", folder.path().c_str(), 1);
    const bool ok = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    ::unsetenv("LOCPATH");
    return ok;
}

}  // namespace

TEST(NumberTextTest, IgnoresTheLocaleDecimalComma) {
    datatest::ScratchFolder folder;
    if (!useGermanLocale(folder)) GTEST_SKIP() << "no locale with a decimal comma can be made here";
    const std::string point = std::localeconv()->decimal_point;
    const double viaStrtod = std::strtod("1,25", nullptr);
    double v = 0.0;
    const NumberParse withPoint = parse("1.25", v);
    const double parsed = v;
    const NumberParse withComma = parse("1,25", v);
    const std::string text = host::formatNumber(2.75);
    std::setlocale(LC_ALL, "C");
    // The locale is in effect: the C library reads a decimal comma...
    ASSERT_EQ(point, ",");
    ASSERT_EQ(viaStrtod, 1.25);
    // ...while numbers in data files keep the point.
    EXPECT_EQ(withPoint, NumberParse::Ok);
    EXPECT_EQ(parsed, 1.25);
    EXPECT_EQ(withComma, NumberParse::NotANumber);
    EXPECT_EQ(text, "2.75");
}

TEST(NumberTextTest, CountsWrittenDecimals) {
    EXPECT_EQ(host::writtenDecimals("1.250"), 3);
    EXPECT_EQ(host::writtenDecimals("12"), 0);
    EXPECT_EQ(host::writtenDecimals("2e-3"), 0);
    EXPECT_EQ(host::writtenDecimals("2.5e-3"), 0);
    EXPECT_EQ(host::writtenDecimals(" -0.5 "), 1);
}

// Short decimals take a fast path; it must give exactly what the general
// parser (std::from_chars, correctly rounded) gives.
TEST(NumberTextTest, ShortDecimalsReadExactlyLikeTheGeneralParser) {
    std::mt19937_64 random(11);
    char text[40];
    for (int i = 0; i < 200000; ++i) {
        const int digits = 1 + static_cast<int>(random() % 17);
        const int decimals = static_cast<int>(random() % (digits + 1));
        std::string number = (random() % 2) ? "-" : "";
        for (int d = 0; d < digits; ++d) {
            if (d == digits - decimals) number += (d == 0 ? "0." : ".");
            number += static_cast<char>('0' + random() % 10);
        }
        if (decimals == digits && digits > 0 && number.find('.') == std::string::npos) number = "0." + number;
        std::snprintf(text, sizeof text, "%s", number.c_str());
        double fast = 0.0;
        double general = 0.0;
        ASSERT_EQ(host::parseNumber(text, fast), NumberParse::Ok) << text;
        std::from_chars(text, text + std::strlen(text), general);
        ASSERT_EQ(std::memcmp(&fast, &general, sizeof fast), 0) << text;
    }
}

TEST(NumberTextTest, StyledNumbers) {
    double v = 0.0;
    host::NumberStyle comma;
    comma.decimal = ',';
    EXPECT_EQ(host::parseNumber(" -2,5 ", v, comma), NumberParse::Ok);
    EXPECT_EQ(v, -2.5);
    EXPECT_EQ(host::parseNumber("2.5", v, comma), NumberParse::NotANumber);
    host::NumberStyle grouped;
    grouped.group = ' ';
    grouped.decimal = ',';
    EXPECT_EQ(host::parseNumber("1 234 567,25", v, grouped), NumberParse::Ok);
    EXPECT_EQ(v, 1234567.25);
    host::NumberStyle loose;
    loose.bare = false;
    EXPECT_EQ(host::parseNumber("EUR 95.5", v, loose), NumberParse::Ok);
    EXPECT_EQ(v, 95.5);
    EXPECT_EQ(host::parseNumber("-12%", v, loose), NumberParse::Ok);
    EXPECT_EQ(v, -12.0);
    EXPECT_EQ(host::parseNumber("%", v, loose), NumberParse::NotANumber);
    EXPECT_EQ(host::writtenDecimals("1,250", ','), 3);
}
