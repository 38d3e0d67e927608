// The grammar descriptors keep what the procedure describes.
#include "CommandDescriptor.h"

#include <gtest/gtest.h>

#include "DistanceCorrCommandDescriber.h"
#include "syntax/CommandDescriptorImpl.h"
#include "syntax/ParamDescriptorImpl.h"
#include "syntax/SubComDescriptorImpl.h"

namespace {

std::vector<std::string> names(const std::vector<ParamDescriptor>& params) {
    std::vector<std::string> out;
    for (const auto& p : params) out.push_back(p.getName());
    return out;
}

class DescribedGrammar : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(DistanceCorrCommandDescriber(descriptor).start(), 0u); }
    const ParamDescriptor::Impl& param(const std::string& sub, const std::string& name) {
        const SubComDescriptor* s = descriptor.getSubComDesc(sub);
        EXPECT_NE(s, nullptr);
        const ParamDescriptor* p = s->getParamDesc(name);
        EXPECT_NE(p, nullptr);
        return p->impl();
    }
    CommandDescriptor descriptor{"DISTANCE CORRELATION"};
};

}  // namespace

TEST_F(DescribedGrammar, SubcommandsInDescribedOrder) {
    std::vector<std::string> subs;
    for (const auto& s : descriptor.impl().subcommands) subs.push_back(s.getName());
    EXPECT_EQ(subs, (std::vector<std::string>{"", "ID", "CRITERIA", "PRINT", "PLOT"}));
    EXPECT_EQ(descriptor.getSubComDesc("")->impl().spec, UPSpecTypes::SubComPlain);
    EXPECT_EQ(descriptor.getSubComDesc("PRINT")->impl().spec, UPSpecTypes::SubComKeywords);
    EXPECT_EQ(descriptor.getSubComDesc("print"), descriptor.getSubComDesc("PRINT"));
    EXPECT_EQ(descriptor.getSubComDesc("NOSUCH"), nullptr);
}

TEST_F(DescribedGrammar, VariableListsWithOptionalBrackets) {
    const auto& variable = param("", "VARIABLE");
    EXPECT_EQ(variable.spec, UPSpecTypes::ParamVariableList);
    EXPECT_TRUE(variable.flag1);
    EXPECT_TRUE(variable.flag2);
    EXPECT_EQ(variable.brackets, UPSpecTypes::BracketsOptional);
    EXPECT_TRUE(variable.hasQualifOption);
    const auto& configure = param("PRINT", "DISTMATRIX").findQualifier("CONFIGURE")->impl();
    EXPECT_EQ(configure.spec, UPSpecTypes::ParamVariableList);
    EXPECT_EQ(configure.brackets, UPSpecTypes::BracketsOptional);
}

TEST_F(DescribedGrammar, AllowedWordsInOrder) {
    EXPECT_EQ(param("CRITERIA", "NORMALIZATION").allowedValues,
              (std::vector<std::string>{"NONE", "MINMAX", "ZSCORE", "ROBUST", "LOG"}));
    EXPECT_EQ(param("PRINT", "DISTMATRIX").findQualifier("SAVE")->impl().allowedValues,
              (std::vector<std::string>{"TRUE", "FALSE"}));
}

TEST_F(DescribedGrammar, NumericBounds) {
    const auto& ci = param("CRITERIA", "CILEVEL");
    EXPECT_EQ(ci.lowerOption, UPSpecTypes::LowerInclusive);
    EXPECT_EQ(ci.lower, 0.0);
    EXPECT_EQ(ci.upperOption, UPSpecTypes::UpperInclusive);
    EXPECT_EQ(ci.upper, 100.0);
    const auto& perm = param("CRITERIA", "PERMUTATION");
    EXPECT_EQ(names(perm.qualifiers), (std::vector<std::string>{"SEED", "MAXITERATIONS", "SIGNIFICANCELEVEL"}));
    EXPECT_EQ(perm.findQualifier("SEED")->impl().upperOption, UPSpecTypes::UpperNone);
    EXPECT_EQ(perm.findQualifier("significancelevel")->impl().upper, 1.0);
}

TEST_F(DescribedGrammar, KeywordsInDescribedOrder) {
    EXPECT_EQ(names(descriptor.getSubComDesc("PRINT")->impl().params),
              (std::vector<std::string>{"DETAILS", "DISTCORRCOEFF", "CORREST", "DISTVAR", "DISTMATRIX"}));
    EXPECT_EQ(names(param("PLOT", "SCATTERPLOT").qualifiers), (std::vector<std::string>{"XAXIS", "YAXIS"}));
    EXPECT_EQ(descriptor.getSubComDesc("PRINT")->getParamDesc("NOSUCH"), nullptr);
}

TEST(CommandDescriptor, NameIsUpperCaseWithSingleBlanks) {
    CommandDescriptor d("distance   Correlation");
    EXPECT_EQ(d.getCommandName(), "DISTANCE CORRELATION");
}

TEST(CommandDescriptor, DescribingASubcommandAgainReplacesIt) {
    CommandDescriptor d("X");
    SubComDescriptor first("PRINT", UPSpecTypes::SubComKeywords, false, false);
    first.addParamDesc(ParamDescriptor("A", UPSpecTypes::ParamBareKeyword, false, false, UPSpecTypes::BracketsNone));
    d.addSubComDesc(first);
    SubComDescriptor second("print", UPSpecTypes::SubComKeywords, true, false);
    d.addSubComDesc(second);
    ASSERT_EQ(d.impl().subcommands.size(), 1u);
    EXPECT_TRUE(d.getSubComDesc("PRINT")->impl().flag1);
    EXPECT_EQ(d.getSubComDesc("PRINT")->getParamDesc("A"), nullptr);
}

TEST(CommandDescriptor, DescriptorsAreCopiedDeeply) {
    ParamDescriptor p("N", UPSpecTypes::ParamKeywordValue, false, true, UPSpecTypes::BracketsNone);
    p.addStringValue("a");
    ParamDescriptor copy(p);
    p.addStringValue("b");
    EXPECT_EQ(copy.impl().allowedValues, (std::vector<std::string>{"A"}));
    EXPECT_EQ(p.impl().allowedValues, (std::vector<std::string>{"A", "B"}));
}
