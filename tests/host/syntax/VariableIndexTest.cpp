#include "syntax/VariableIndex.h"

#include <gtest/gtest.h>

#include "SyntaxTestSupport.h"

using host::syntax::VariableIndex;

TEST(VariableIndex, FindsNamesInAnyLetterCase) {
    VariableIndex index(syntaxtest::standardData());
    EXPECT_EQ(index.find("x1"), 0);
    EXPECT_EQ(index.find("SOLAR.r"), 5);
    EXPECT_EQ(index.find("Id"), 10);
    EXPECT_EQ(index.find("zz"), -1);
    EXPECT_EQ(index.find(""), -1);
}

TEST(VariableIndex, TheFirstOfTwoSpellingsWins) {
    auto data = std::make_shared<syntaxtest::FakeDataSet>();
    data->add("a");
    data->add("Score");
    data->add("SCORE");
    VariableIndex index(data);
    EXPECT_EQ(index.find("score"), data->findVariable("score"));
    EXPECT_EQ(index.find("score"), 1);
}

TEST(VariableIndex, WithoutADataSetNothingIsFound) {
    VariableIndex index(nullptr);
    EXPECT_EQ(index.find("x1"), -1);
}
