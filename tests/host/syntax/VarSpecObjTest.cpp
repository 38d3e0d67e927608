#include "VarSpecObj.h"

#include <gtest/gtest.h>

#include "ProcedureDataSource.h"
#include "SyntaxTestSupport.h"

using syntaxtest::beginCommand;
using syntaxtest::standardData;

namespace {

const std::vector<host::HostMessage>& messages() { return host::HostSession::instance().messages(); }

std::string onlyError() {
    const auto& m = messages();
    if (m.size() != 1) return "<" + std::to_string(m.size()) + " messages>";
    return m[0].level == host::MessageLevel::Error ? m[0].text : "<not an error>";
}

}  // namespace

class VarSpecObjTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(DistanceCorrCommandDescriber(descriptor).start(), 0u); }
    CommandDescriptor descriptor{"DISTANCE CORRELATION"};
};

TEST_F(VarSpecObjTest, ValidNamesGiveTheirDataSetIndicesInOrder) {
    beginCommand("DISTANCE CORRELATION VARIABLE=my_var x1 Solar.R.");
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_TRUE(spec.ValidateVariables({"my_var", "x1", "Solar.R"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(spec.GetNValidVars(), 3);
    EXPECT_EQ(spec.GetValidVarList(), (std::vector<int>{6, 0, 5}));
    EXPECT_TRUE(messages().empty());
}

TEST_F(VarSpecObjTest, NamesMatchInAnyLetterCase) {
    beginCommand("DISTANCE CORRELATION VARIABLE=X1 SOLAR.r.");
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_TRUE(spec.ValidateVariables({"X1", "SOLAR.r"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(spec.GetValidVarList(), (std::vector<int>{0, 5}));
}

TEST_F(VarSpecObjTest, UnknownNameIsReportedWhereItIsWritten) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 zz.");
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_FALSE(spec.ValidateVariables({"x1", "zz"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(spec.GetNValidVars(), 0);
    EXPECT_EQ(onlyError(), "VARIABLE: variable \"zz\" is not in the active data set (command line, line 1, column 34).");
}

TEST_F(VarSpecObjTest, SameVariableTwiceInAnyCaseIsAnError) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2 X1.");
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_FALSE(spec.ValidateVariables({"x1", "x2", "X1"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(onlyError(), "VARIABLE: variable \"X1\" is named more than once (command line, line 1, column 37).");
}

TEST_F(VarSpecObjTest, RepeatThroughARangeIsReportedWithoutAPlace) {
    // x2 is written once; the range x1 TO x3 holds it as well.
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 TO x3 x2.");
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_FALSE(spec.ValidateVariables({"x1", "x2", "x3", "x2"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(onlyError(), "VARIABLE: variable \"x2\" is named more than once (command line).");
}

TEST_F(VarSpecObjTest, RepeatsMayBeAllowed) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 x1.");
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_TRUE(spec.ValidateVariables({"x1", "x1"}, UPSpecTypes::RepeatVarAllowed));
    EXPECT_EQ(spec.GetValidVarList(), (std::vector<int>{0, 0}));
    EXPECT_TRUE(messages().empty());
}

TEST_F(VarSpecObjTest, TextVariableIsRefusedWhenNumbersAreNeeded) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 Name.");
    VarSpecObj numeric("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_FALSE(numeric.ValidateVariables({"x1", "Name"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(onlyError(),
              "VARIABLE: variable \"Name\" is a text variable; a numeric variable is needed "
              "(command line, line 1, column 34).");
}

TEST_F(VarSpecObjTest, TextVariableIsAcceptedWhenNumbersAreNotNeeded) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 Name.");
    VarSpecObj any("VARIABLE", "VARIABLE", descriptor, nullptr, false);
    EXPECT_TRUE(any.ValidateVariables({"x1", "Name"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(any.GetValidVarList(), (std::vector<int>{0, 7}));
}

TEST_F(VarSpecObjTest, SingleVariableGivesItsIndexOrMinusOne) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2\n  /ID VARIABLE=zz.");
    VarSpecObj spec("VARIABLE", "ID", descriptor, nullptr, true);
    EXPECT_EQ(spec.ValidateVariable("ID"), 10);
    EXPECT_EQ(spec.GetValidVarList(), (std::vector<int>{10}));
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(spec.ValidateVariable("zz"), -1);
    EXPECT_EQ(spec.GetNValidVars(), 0);
    EXPECT_EQ(onlyError(), "ID VARIABLE: variable \"zz\" is not in the active data set (command line, line 2, column 16).");
}

TEST_F(VarSpecObjTest, QualifierProblemsAreFoundInsideTheirKeyword) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2\n  /PRINT DISTMATRIX(CONFIGURE=x1 X1).");
    VarSpecObj spec("CONFIGURE", "DISTMATRIX", descriptor, nullptr, false);
    EXPECT_FALSE(spec.ValidateVariables({"x1", "X1"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(onlyError(),
              "PRINT DISTMATRIX CONFIGURE: variable \"X1\" is named more than once (command line, line 2, column 34).");
}

TEST_F(VarSpecObjTest, ReadsTheDataSetOfItsDataSource) {
    auto first = standardData();
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2.", first);
    ProcedureDataSource source;
    auto other = std::make_shared<syntaxtest::FakeDataSet>();
    other->add("x2");
    host::HostSession::instance().setActiveDataSet(other);
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, &source, true);
    EXPECT_TRUE(spec.ValidateVariables({"x1", "x2"}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(spec.GetValidVarList(), (std::vector<int>{0, 1}));
}

TEST_F(VarSpecObjTest, NoDataSetIsReported) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2.", nullptr);
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_EQ(spec.ValidateVariable("x1"), -1);
    EXPECT_EQ(onlyError(),
              "VARIABLE: there is no active data set in which to find variable \"x1\" (command line, line 1, column 31).");
}

TEST_F(VarSpecObjTest, EmptyListIsValidAndHoldsNoVariables) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    VarSpecObj spec("VARIABLE", "VARIABLE", descriptor, nullptr, true);
    EXPECT_TRUE(spec.ValidateVariables({}, UPSpecTypes::RepeatVarForbidden));
    EXPECT_EQ(spec.GetNValidVars(), 0);
}

TEST_F(VarSpecObjTest, AxisProblemsNameTheirSubcommand) {
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2\n  /PLOT SCATTERPLOT(XAXIS=x1 YAXIS=nothere).");
    VarSpecObj spec("YAXIS", "SCATTERPLOT", descriptor, nullptr, false);
    EXPECT_EQ(spec.ValidateVariable("nothere"), -1);
    EXPECT_EQ(onlyError(),
              "PLOT SCATTERPLOT YAXIS: variable \"nothere\" is not in the active data set (command line, line 2, column 36).");
}

TEST(VarSpecObj, WithoutAGrammarTheGivenNamesMakeTheContext) {
    CommandDescriptor bare("DISTANCE CORRELATION");
    beginCommand("DISTANCE CORRELATION VARIABLE=x1 zz.");
    VarSpecObj spec("VARIABLE", "SOMEWHERE", bare, nullptr, true);
    EXPECT_EQ(spec.ValidateVariable("zz"), -1);
    EXPECT_EQ(onlyError(), "SOMEWHERE VARIABLE: variable \"zz\" is not in the active data set (command line, line 1, column 34).");
}
