#include "data/CsvDialect.h"

#include <gtest/gtest.h>

using host::detectDelimiter;

TEST(CsvDialectTest, FindsTheSeparatorThatSplitsEveryLineAlike) {
    EXPECT_EQ(detectDelimiter("a,b\n1,2\n"), ',');
    EXPECT_EQ(detectDelimiter("\"\";\"mpg\";\"cyl\"\n\"Mazda RX4\";21;6\n\"Datsun 710\";22,8;4\n"), ';');
    EXPECT_EQ(detectDelimiter("\"mpg\"\t\"cyl\"\n\"Mazda RX4\"\t21\t6\n"), '\t');
    EXPECT_EQ(detectDelimiter("a|b|c\n1|x, y|3\n"), '|');
    // Decimal commas split lines unevenly; semicolons do not.
    EXPECT_EQ(detectDelimiter("a;b\n1,5;2\n3;4,25\n"), ';');
    // Commas inside quotes do not count.
    EXPECT_EQ(detectDelimiter("a;b\n\"x,y,z\";1\n"), ';');
}

TEST(CsvDialectTest, CommaWinsTiesAndIsTheDefault) {
    EXPECT_EQ(detectDelimiter("a,b;c\n1,2;3\n"), ',');
    EXPECT_EQ(detectDelimiter("x\n1\n2\n"), ',');
    EXPECT_EQ(detectDelimiter(""), ',');
    // Ragged everywhere: the separator that splits the header most.
    EXPECT_EQ(detectDelimiter("a;b;c\n1;2\n1\n"), ';');
}

TEST(CsvDialectTest, AQuotedLineBreakAtTheSampleEndDoesNotMisleadIt) {
    std::string text = "a;b\n";
    for (int i = 0; i < 200; ++i) text += "1;\"two\nlines, with a comma\"\n";
    EXPECT_EQ(detectDelimiter(text), ';');
}
