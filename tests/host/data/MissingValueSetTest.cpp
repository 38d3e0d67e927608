#include "data/MissingValueSet.h"

#include <gtest/gtest.h>

TEST(MissingValueSetTest, ComparesTextsWithoutTheirBlanks) {
    const host::MissingValueSet set({"NA", " -99 ", "", "n/a"});
    EXPECT_TRUE(set.contains("NA"));
    EXPECT_TRUE(set.contains("-99"));
    EXPECT_TRUE(set.contains("n/a"));
    EXPECT_FALSE(set.contains("-99.0"));
    EXPECT_FALSE(set.contains("na"));
    EXPECT_FALSE(set.contains("N"));
    EXPECT_FALSE(host::MissingValueSet({}).contains("NA"));
}

TEST(MissingValueSetTest, LongTextsAndManyTexts) {
    const std::string longText(100, 'x');
    std::vector<std::string> texts{longText};
    for (int i = 0; i < 20000; ++i) texts.push_back("code" + std::to_string(i));
    const host::MissingValueSet set(texts);
    EXPECT_TRUE(set.contains(longText));
    EXPECT_FALSE(set.contains(std::string(99, 'x') + "y"));
    EXPECT_TRUE(set.contains("code19999"));
    EXPECT_FALSE(set.contains("code20000"));
}
