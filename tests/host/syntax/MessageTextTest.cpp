#include "syntax/MessageText.h"

#include <gtest/gtest.h>

using host::syntax::quotedText;
using host::syntax::shownText;

TEST(MessageText, PlainTextIsShownAsItIs) {
    EXPECT_EQ(shownText("Solar.R"), "Solar.R");
    EXPECT_EQ(shownText(""), "");
    EXPECT_EQ(shownText("gr\xC3\xB6\xC3\x9F"
                        "e \xE2\x82\xAC \xF0\x9F\x98\x80"),
              "gr\xC3\xB6\xC3\x9F"
              "e \xE2\x82\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(quotedText("x1"), "\"x1\"");
}

TEST(MessageText, ControlCharactersAreEscapedByCodePoint) {
    EXPECT_EQ(shownText(std::string("a\0b", 3)), "a\\u0000b");
    EXPECT_EQ(shownText("\t\n\r\x1b\x7f"), "\\u0009\\u000A\\u000D\\u001B\\u007F");
    EXPECT_EQ(shownText("\xC2\x9B"
                        "2J"),
              "\\u009B2J");  // C1 control sequence introducer
}

TEST(MessageText, InvisibleFormattingCharactersAreEscaped) {
    EXPECT_EQ(shownText("a\xE2\x80\xAE"
                        "b"),
              "a\\u202Eb");  // right-to-left override
    EXPECT_EQ(shownText("\xEF\xBB\xBF"
                        "x"),
              "\\uFEFFx");  // byte order mark
    EXPECT_EQ(shownText("a\xE2\x80\x8B"
                        "b"),
              "a\\u200Bb");  // zero width space
    EXPECT_EQ(shownText("a\xE2\x81\xA6"
                        "b"),
              "a\\u2066b");  // left-to-right isolate
}

TEST(MessageText, BytesThatAreNotUtf8AreEscapedOneByOne) {
    EXPECT_EQ(shownText("gr\xF6\xDF"
                        "e"),
              "gr\\xF6\\xDFe");                                        // Latin-1
    EXPECT_EQ(shownText("\xC0\xAF"), "\\xC0\\xAF");                    // overlong "/"
    EXPECT_EQ(shownText("\xED\xA0\x80"), "\\xED\\xA0\\x80");           // surrogate
    EXPECT_EQ(shownText("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");  // beyond U+10FFFF
    EXPECT_EQ(shownText("\xE2\x82"), "\\xE2\\x82");                    // cut short
}

TEST(MessageText, LongTextsAreShortenedToEightyCharacters) {
    const std::string eighty(80, 'a');
    EXPECT_EQ(shownText(eighty), eighty);
    EXPECT_EQ(shownText(eighty + "b"), std::string(77, 'a') + "...");
    EXPECT_EQ(shownText(std::string(10000000, '9')), std::string(77, '9') + "...");
}

TEST(MessageText, ShorteningCountsCharactersNotBytes) {
    std::string umlauts;
    for (int i = 0; i < 80; ++i) umlauts += "\xC3\xA4";
    EXPECT_EQ(shownText(umlauts), umlauts);
    std::string expected;
    for (int i = 0; i < 77; ++i) expected += "\xC3\xA4";
    EXPECT_EQ(shownText(umlauts + "x"), expected + "...");
    // An escape is one character of the text, however long it is shown.
    const std::string controls(81, '\x01');
    std::string escaped;
    for (int i = 0; i < 77; ++i) escaped += "\\u0001";
    EXPECT_EQ(shownText(controls), escaped + "...");
}
