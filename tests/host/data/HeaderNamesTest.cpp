#include "data/HeaderNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using host::variableNamesFromHeader;

namespace {

std::vector<std::string> namesOf(const std::vector<std::string>& cells) {
    std::vector<std::string> names;
    for (const host::HeaderName& header : variableNamesFromHeader(cells)) names.push_back(header.name);
    return names;
}

using Names = std::vector<std::string>;

}  // namespace

TEST(HeaderNamesTest, ValidNamesAreKept) {
    const auto names = variableNamesFromHeader({"Ozone", " Solar.R ", "x_1",
                                                "G\xC3\xB6\xC3\x9F"
                                                "e"});
    EXPECT_EQ(names[1].name, "Solar.R");
    EXPECT_EQ(names[1].original, "Solar.R");
    for (const auto& header : names) EXPECT_EQ(header.reason, "") << header.name;
    EXPECT_EQ(names[3].name,
              "G\xC3\xB6\xC3\x9F"
              "e");
}

TEST(HeaderNamesTest, InvalidNamesAreMadeValid) {
    EXPECT_EQ(namesOf({"Infant Mortality", "x (cm)", "  % of GDP", "2019", "_id", "x..", "BY", "all", "", "%"}),
              (Names{"Infant_Mortality", "x_cm", "of_GDP", "V2019", "V_id", "x", "BY_", "all_", "V9", "V10"}));
}

TEST(HeaderNamesTest, DuplicatesGetANumberAndValidNamesKeepTheirs) {
    EXPECT_EQ(namesOf({"a", "A", "a", "a b", "a_b", "a_2"}), (Names{"a", "A_3", "a_4", "a_b_2", "a_b", "a_2"}));
    const auto names = variableNamesFromHeader({"x", "X"});
    EXPECT_EQ(names[1].reason, "column 1 has the same name (letter case does not count)");
}

TEST(HeaderNamesTest, LongNamesAreCutAtACharacterBoundary) {
    const std::string longName = "a" + std::string(62, 'b') + "\xC3\xA9" + "cd";  // é straddles byte 64
    const auto names = variableNamesFromHeader({longName, longName});
    EXPECT_EQ(names[0].name, "a" + std::string(62, 'b'));
    EXPECT_EQ(names[0].reason, "a variable name may be at most 64 bytes long");
    EXPECT_EQ(names[1].name, "a" + std::string(61, 'b') + "_2");
    EXPECT_LE(names[1].name.size(), host::kMaxHeaderNameBytes);
}

// 100,000 columns, all of one name: every name is unique and the work stays
// near-linear (a quadratic check took minutes here).
TEST(HeaderNamesTest, ManyDuplicateColumnsGetUniqueNames) {
    const std::vector<std::string> cells(100000, "x");
    const auto names = variableNamesFromHeader(cells);
    EXPECT_EQ(names[0].name, "x");
    EXPECT_EQ(names[1].name, "x_2");
    EXPECT_EQ(names[99999].name, "x_100000");
    const std::vector<std::string> many = [] {
        std::vector<std::string> v;
        for (int i = 0; i < 100000; ++i) v.push_back("v" + std::to_string(i));
        return v;
    }();
    const auto distinct = variableNamesFromHeader(many);
    for (std::size_t i = 0; i < many.size(); ++i) ASSERT_EQ(distinct[i].name, many[i]);
}
