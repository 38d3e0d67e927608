#include "data/TextEncoding.h"

#include <gtest/gtest.h>

#include "data/DataLoadError.h"

using host::decodeDataText;
using host::firstInvalidUtf8;

TEST(TextEncodingTest, FindsTheFirstByteThatIsNotUtf8) {
    EXPECT_EQ(firstInvalidUtf8("plain ascii text, longer than eight bytes"), std::string::npos);
    EXPECT_EQ(firstInvalidUtf8("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::string::npos);  // é € 😀
    EXPECT_EQ(firstInvalidUtf8("abcdefgh\xE9t\xE9"), 8u);                                    // Latin-1 é
    EXPECT_EQ(firstInvalidUtf8("\xC0\xAF"), 0u);                                             // overlong
    EXPECT_EQ(firstInvalidUtf8("ab\xED\xA0\x80"), 2u);                                       // surrogate
    EXPECT_EQ(firstInvalidUtf8("\xF4\x90\x80\x80"), 0u);                                     // above U+10FFFF
    EXPECT_EQ(firstInvalidUtf8("ok\xE2\x82"), 2u);                                           // cut short
}

TEST(TextEncodingTest, Utf8StaysAsItIs) {
    std::string note;
    EXPECT_EQ(decodeDataText("\xEF\xBB\xBF"
                             "a\n\xC3\xA9\n",
                             "f.csv", note),
              "\xEF\xBB\xBF"
              "a\n\xC3\xA9\n");
    EXPECT_EQ(note, "");
}

TEST(TextEncodingTest, OtherBytesAreReadAsWindows1252WithTheLineInTheNote) {
    std::string note;
    EXPECT_EQ(decodeDataText("a\r\nb\rc\n\x80\xE9\x81\x9F\n", "f.csv", note),
              "a\r\nb\rc\n\xE2\x82\xAC\xC3\xA9\xC2\x81\xC5\xB8\n");
    EXPECT_EQ(note, "f.csv:4: the file is not UTF-8 text; it is read as Windows-1252 (Latin-1)");
    // A UTF-8 byte-order mark before such bytes is dropped, not converted.
    EXPECT_EQ(decodeDataText("\xEF\xBB\xBFx\xFF", "f.csv", note), "x\xC3\xBF");
}

TEST(TextEncodingTest, Utf16IsConverted) {
    std::string note;
    EXPECT_EQ(decodeDataText(std::string("\xFE\xFF\x00"
                                         "a\xD8\x3D\xDE\x00",
                                         8),
                             "f.csv", note),
              "a\xF0\x9F\x98\x80");
    EXPECT_EQ(decodeDataText(std::string("\xFF\xFE"
                                         "a\x00\n\x00",
                                         6),
                             "f.csv", note),
              "a\n");
    EXPECT_THROW(decodeDataText(std::string("\xFF\xFE"
                                            "a\x00\n\x00\x00\xDC",
                                            8),
                                "f.csv", note),
                 host::DataLoadError);
    EXPECT_THROW(decodeDataText(std::string("\xFF\xFE"
                                            "a",
                                            3),
                                "f.csv", note),
                 host::DataLoadError);
}
