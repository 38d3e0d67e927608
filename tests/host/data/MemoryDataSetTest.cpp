#include "data/MemoryDataSet.h"

#include <gtest/gtest.h>

#include "data/NumberText.h"

namespace {

host::VariableInfo variable(const std::string& name, int type) {
    host::VariableInfo info;
    info.name = name;
    info.type = type;
    return info;
}

}  // namespace

TEST(MemoryDataSetTest, HoldsVariablesAndCases) {
    host::MemoryDataSet data;
    data.setLabel("L");
    EXPECT_EQ(data.addVariable(variable("Solar.R", 0)), 0);
    EXPECT_EQ(data.addVariable(variable("name", 6)), 1);
    data.addCase({2.5, 0.0}, {"", "Ann"});
    data.addCase({host::kSystemMissing, 0.0}, {"", ""});
    EXPECT_EQ(data.label(), "L");
    EXPECT_EQ(data.caseCount(), 2u);
    EXPECT_EQ(data.numericValue(0, 0), 2.5);
    EXPECT_EQ(data.textValue(0, 0), "2.5");
    EXPECT_EQ(data.textValue(1, 0), "");
    EXPECT_EQ(data.textValue(0, 1), "Ann");
    EXPECT_EQ(data.numericValue(0, 1), host::kSystemMissing);
    EXPECT_EQ(data.findVariable("SOLAR.R"), 0);
    EXPECT_EQ(data.findVariable("solar"), -1);
}

TEST(MemoryDataSetTest, RefusesCellsOutsideTheData) {
    host::MemoryDataSet data;
    data.addVariable(variable("x", 0));
    data.addCase({1.0}, {""});
    EXPECT_THROW(data.numericValue(1, 0), std::out_of_range);
    EXPECT_THROW(data.numericValue(0, 1), std::out_of_range);
    EXPECT_THROW(data.textValue(0, -1), std::out_of_range);
    EXPECT_THROW(data.variable(1), std::out_of_range);
    EXPECT_THROW(data.addCase({1.0, 2.0}, {"", ""}), std::invalid_argument);
    EXPECT_THROW(data.addVariable(variable("y", 0)), std::logic_error);
}

TEST(MemoryDataSetTest, VariableReferencesStayValidAsVariablesAreAdded) {
    host::MemoryDataSet data;
    data.addVariable(variable("first", 0));
    data.editVariable(0).label = "First label";
    const char* label = data.variable(0).label.c_str();
    for (int i = 0; i < 1000; ++i) data.addVariable(variable("v" + std::to_string(i), 0));
    EXPECT_EQ(label, data.variable(0).label.c_str());
    EXPECT_STREQ(label, "First label");
}
