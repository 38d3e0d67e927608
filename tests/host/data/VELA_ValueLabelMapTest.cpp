#include "VELA_ValueLabelMap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "DataTestSupport.h"
#include "ErrorText.h"

using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(VELA_ValueLabelMapTest, NumericValuesInShortestText) {
    VELA_ValueLabelMap map;
    EXPECT_EQ(map.GetType(), 0);
    map.AddPair(1.0, "One");
    map.AddPair(0.1, "Tenth");
    map.AddPair(std::string("2.50"), "Two and a half");
    EXPECT_EQ(map.Size(), 3);
    EXPECT_EQ(map.GetPairs(), (Pairs{{"1", "One"}, {"0.1", "Tenth"}, {"2.5", "Two and a half"}}));
}

TEST(VELA_ValueLabelMapTest, ValueGivenTwiceKeepsItsPlaceWithTheNewLabel) {
    VELA_ValueLabelMap map;
    map.AddPair(1.0, "a");
    map.AddPair(2.0, "b");
    map.AddPair(std::string("1"), "c");
    EXPECT_EQ(map.GetPairs(), (Pairs{{"1", "c"}, {"2", "b"}}));
}

TEST(VELA_ValueLabelMapTest, TextValuesLoseTrailingBlanks) {
    VELA_ValueLabelMap map(8);
    EXPECT_EQ(map.GetType(), 8);
    map.AddPair(std::string("P1      "), "[x = 1.000]");
    map.AddPair(std::string("P10"), "[x = 2.000]");
    EXPECT_EQ(map.GetPairs(), (Pairs{{"P1", "[x = 1.000]"}, {"P10", "[x = 2.000]"}}));
}

TEST(VELA_ValueLabelMapTest, CopiesAreIndependent) {
    VELA_ValueLabelMap map;
    map.AddPair(1.0, "a");
    VELA_ValueLabelMap copy = map;
    copy.AddPair(2.0, "b");
    EXPECT_EQ(map.Size(), 1);
    EXPECT_EQ(copy.Size(), 2);
    map = copy;
    EXPECT_EQ(map.Size(), 2);
}

TEST(VELA_ValueLabelMapTest, RefusesValuesThatCannotBeLabelled) {
    datatest::quietSession();
    VELA_ValueLabelMap numeric;
    EXPECT_THROW(numeric.AddPair(std::string("abc"), "x"), ErrorText);
    EXPECT_THROW(numeric.AddPair(std::numeric_limits<double>::quiet_NaN(), "x"), ErrorText);
    EXPECT_THROW(numeric.AddPair(-std::numeric_limits<double>::max(), "x"), ErrorText);
    VELA_ValueLabelMap text(4);
    EXPECT_THROW(text.AddPair(1.0, "x"), ErrorText);
    EXPECT_EQ(numeric.Size(), 0);
    EXPECT_EQ(text.Size(), 0);
    const auto errors = datatest::errorTexts();
    ASSERT_EQ(errors.size(), 4u);
    EXPECT_EQ(errors[0], "Cannot label the value \"abc\" of a numeric variable: it is not a number.");
}
