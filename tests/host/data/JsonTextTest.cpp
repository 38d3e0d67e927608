#include "data/JsonText.h"

#include <gtest/gtest.h>

#include <string>

using host::parseJsonText;

TEST(JsonTextTest, ParsesAndKeepsNumbersAsTextWhenAsked) {
    rapidjson::Document doc;
    ASSERT_TRUE(parseJsonText(doc, R"({"a": [1, 2.50], "b": "x"})", true).ok);
    EXPECT_STREQ(doc["a"][1].GetString(), "2.50");
    ASSERT_TRUE(parseJsonText(doc, R"({"a": 2.5})").ok);
    EXPECT_EQ(doc["a"].GetDouble(), 2.5);
}

TEST(JsonTextTest, ErrorsGiveLineColumnAndReason) {
    rapidjson::Document doc;
    const host::JsonParseResult result = parseJsonText(doc, "{\n  \"a\": [1 2]\n}");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.line, 2);
    EXPECT_EQ(result.column, 11);
    EXPECT_EQ(result.reason, "Missing a comma or ']' after an array element.");
    EXPECT_EQ(parseJsonText(doc, "{\"a\": \"\xE9\"}").reason, "Invalid encoding in string.");
}

// 150,000 nested brackets overflowed the stack of a recursive parser.
TEST(JsonTextTest, DeepNestingIsRefusedWithBoundedStack) {
    rapidjson::Document doc;
    const std::string deep = std::string(150000, '[') + std::string(150000, ']');
    host::JsonParseResult result = parseJsonText(doc, deep);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.reason, "Arrays and objects are nested more than 200 levels deep.");
    EXPECT_FALSE(parseJsonText(doc, std::string(150000, '[')).ok);
    EXPECT_FALSE(parseJsonText(doc, std::string(300000, '{')).ok);
    const std::string allowed = std::string(host::kMaxJsonDepth, '[') + std::string(host::kMaxJsonDepth, ']');
    EXPECT_TRUE(parseJsonText(doc, allowed).ok);
}
