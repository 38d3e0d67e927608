#include "data/CsvLoadOptions.h"

#include <gtest/gtest.h>

using Texts = std::vector<std::string>;

TEST(CsvLoadOptionsTest, ReadsTheCommandLineTexts) {
    EXPECT_EQ(host::parseMissingValueList("NA,-99,."), (Texts{"NA", "-99", "."}));
    EXPECT_EQ(host::parseMissingValueList(""), Texts{});
    EXPECT_EQ(host::parseMissingValueList("NA,"), (Texts{"NA", ""}));
    EXPECT_EQ(host::parseDelimiterOption(";"), ';');
    EXPECT_EQ(host::parseDelimiterOption("tab"), '\t');
    EXPECT_EQ(host::parseDelimiterOption("\\t"), '\t');
    EXPECT_EQ(host::parseDelimiterOption(":"), 0);
    EXPECT_EQ(host::parseDecimalOption(","), ',');
    EXPECT_EQ(host::parseDecimalOption(";"), 0);
}
