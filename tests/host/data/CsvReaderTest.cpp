#include "data/CsvReader.h"

#include <gtest/gtest.h>

#include "data/DataLoadError.h"

using host::CsvReader;
using host::CsvRow;
using Fields = std::vector<std::string>;

namespace {

std::vector<CsvRow> readAll(const std::string& text) {
    CsvReader reader(text, "t.csv");
    std::vector<CsvRow> rows;
    CsvRow row;
    while (reader.readRow(row)) rows.push_back(row);
    return rows;
}

std::string errorOf(const std::string& text) {
    try {
        readAll(text);
    } catch (const host::DataLoadError& e) {
        return e.what();
    }
    return "(no error)";
}

}  // namespace

TEST(CsvReaderTest, SplitsFieldsAndRecords) {
    const auto rows = readAll("a,b,c\n1,2,3\n");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].fields, (Fields{"a", "b", "c"}));
    EXPECT_EQ(rows[1].fields, (Fields{"1", "2", "3"}));
    EXPECT_EQ(rows[0].line, 1);
    EXPECT_EQ(rows[1].line, 2);
}

TEST(CsvReaderTest, LastRecordNeedsNoLineBreak) {
    const auto rows = readAll("a,b\n1,2");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].fields, (Fields{"1", "2"}));
}

TEST(CsvReaderTest, KeepsEmptyFieldsIncludingTrailingOnes) {
    const auto rows = readAll(",x,\n,,\n");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].fields, (Fields{"", "x", ""}));
    EXPECT_EQ(rows[1].fields, (Fields{"", "", ""}));
}

TEST(CsvReaderTest, QuotedFieldsHoldCommasQuotesAndLineBreaks) {
    const auto rows = readAll("id,text\n1,\"a, b\"\n2,\"say \"\"hi\"\"\"\n3,\"two\nlines\"\n4,\"\"\n5,x\n");
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[1].fields[1], "a, b");
    EXPECT_EQ(rows[2].fields[1], "say \"hi\"");
    EXPECT_EQ(rows[3].fields[1], "two\nlines");
    EXPECT_EQ(rows[4].fields[1], "");
    // The record after the quoted line break starts one line later.
    EXPECT_EQ(rows[3].line, 4);
    EXPECT_EQ(rows[4].line, 6);
    EXPECT_EQ(rows[5].line, 7);
}

TEST(CsvReaderTest, AcceptsCrLfAndLoneCr) {
    const auto rows = readAll("a,b\r\n1,2\r\n3,\"x\r\ny\"\r\n5,6\r7,8");
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[1].fields, (Fields{"1", "2"}));
    EXPECT_EQ(rows[2].fields, (Fields{"3", "x\r\ny"}));
    EXPECT_EQ(rows[3].fields, (Fields{"5", "6"}));
    EXPECT_EQ(rows[4].fields, (Fields{"7", "8"}));
    EXPECT_EQ(rows[4].line, 6);
}

TEST(CsvReaderTest, SkipsByteOrderMarkAndBlankLines) {
    const auto rows = readAll("\xEF\xBB\xBFname\n\n  \n1\n\n");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].fields, (Fields{"name"}));
    EXPECT_EQ(rows[1].fields, (Fields{"1"}));
    EXPECT_EQ(rows[1].line, 4);
}

TEST(CsvReaderTest, EmptyTextHasNoRecords) {
    EXPECT_TRUE(readAll("").empty());
    EXPECT_TRUE(readAll("\xEF\xBB\xBF").empty());
    EXPECT_TRUE(readAll("\n\r\n").empty());
}

TEST(CsvReaderTest, UnterminatedQuoteNamesTheLineWhereItOpened) {
    EXPECT_EQ(errorOf("a,b\n1,\"open\n2,3\n"), "t.csv:2: field 2 opens a quote that is never closed");
}

TEST(CsvReaderTest, TextAfterClosingQuoteIsAnError) {
    EXPECT_EQ(errorOf("a,b\n1,\"x\"y\n"),
              "t.csv:2: field 2 has text after its closing quote (a quote inside a quoted field must be doubled)");
}

TEST(CsvReaderTest, QuoteInsidePlainFieldIsKept) {
    const auto rows = readAll("h\n5'10\"\n");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].fields[0], "5'10\"");
}

TEST(CsvReaderTest, BlanksAroundQuotedFieldAreIgnored) {
    const auto rows = readAll("a,b\n \"x\" , y \n");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].fields, (Fields{"x", " y "}));
}
