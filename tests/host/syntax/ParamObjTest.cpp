#include "ParamObj.h"

#include <climits>

#include <gtest/gtest.h>

#include "SyntaxTestSupport.h"
#include "syntax/ParamObjImpl.h"

using Value = ParamObj::Impl::Value;

namespace {

ParamObj numberParam(double v, const std::string& written) {
    auto impl = std::make_unique<ParamObj::Impl>();
    impl->name = "SEED";
    impl->value = Value::Number;
    impl->number = v;
    impl->token = written;
    return ParamObj(std::move(impl));
}

ParamObj listParam(std::vector<std::string> names) {
    auto impl = std::make_unique<ParamObj::Impl>();
    impl->name = "VARIABLE";
    impl->value = Value::Variables;
    impl->names = std::move(names);
    return ParamObj(std::move(impl));
}

}  // namespace

TEST(ParamObj, EmptyObjectReadsAsNothing) {
    ParamObj p;
    std::vector<std::string> list;
    std::string text;
    bool literal = false;
    double number = 0;
    int integer = 0;
    EXPECT_FALSE(p.getStringList(list));
    EXPECT_FALSE(p.getUpStringGeneric(text));
    EXPECT_FALSE(p.getStringOrLiteral(text, literal));
    EXPECT_FALSE(p.getNumberValue(number));
    EXPECT_FALSE(p.getIntegerValue(integer));
    EXPECT_FALSE(p.getVarList(list));
    EXPECT_FALSE(p.getVarName(text));
    EXPECT_EQ(p.getParamName(), "");
    EXPECT_EQ(p.getStringToken(), "");
}

TEST(ParamObj, IntegerValueOnlyForWholeNumbersInRange) {
    int v = 0;
    EXPECT_TRUE(numberParam(42.0, "42").getIntegerValue(v));
    EXPECT_EQ(v, 42);
    EXPECT_TRUE(numberParam(-3.0, "-3").getIntegerValue(v));
    EXPECT_EQ(v, -3);
    EXPECT_TRUE(numberParam(1000.0, "1e3").getIntegerValue(v));
    EXPECT_EQ(v, 1000);
    EXPECT_FALSE(numberParam(1.5, "1.5").getIntegerValue(v));
    EXPECT_FALSE(numberParam(3e9, "3e9").getIntegerValue(v));
}

TEST(ParamObj, NumberReadsAsTextButNotAsWordOrLiteral) {
    ParamObj p = numberParam(2e6, "2e6");
    std::vector<std::string> list;
    std::string text;
    bool literal = false;
    double v = 0;
    EXPECT_TRUE(p.getNumberValue(v));
    EXPECT_DOUBLE_EQ(v, 2e6);
    EXPECT_TRUE(p.getStringList(list));
    EXPECT_EQ(list, (std::vector<std::string>{"2e6"}));
    EXPECT_FALSE(p.getUpStringGeneric(text));
    EXPECT_FALSE(p.getStringOrLiteral(text, literal));
    EXPECT_FALSE(p.getVarList(list));
}

TEST(ParamObj, ListOfSeveralNamesIsNeitherOneNameNorOneWord) {
    ParamObj p = listParam({"a", "b"});
    std::string text;
    bool literal = false;
    double v = 0;
    EXPECT_FALSE(p.getVarName(text));
    EXPECT_FALSE(p.getUpStringGeneric(text));
    EXPECT_FALSE(p.getStringOrLiteral(text, literal));
    EXPECT_FALSE(p.getNumberValue(v));
}

TEST(ParamObj, OneVariableNameIsAlsoAWord) {
    ParamObj p = listParam({"Solar.R"});
    std::string text;
    EXPECT_TRUE(p.getVarName(text));
    EXPECT_EQ(text, "Solar.R");
    EXPECT_TRUE(p.getUpStringGeneric(text));
    EXPECT_EQ(text, "SOLAR.R");
}

TEST(ParamObj, CopiesAndMovesKeepTheValue) {
    ParamObj original = listParam({"x1", "x2"});
    ParamObj copy(original);
    ParamObj moved(std::move(original));
    std::vector<std::string> a, b;
    EXPECT_TRUE(copy.getVarList(a));
    EXPECT_TRUE(moved.getVarList(b));
    EXPECT_EQ(a, b);
    std::vector<std::string> none;
    EXPECT_FALSE(original.getVarList(none));  // NOLINT(bugprone-use-after-move): a moved-from object is empty
    ParamObj assigned;
    assigned = copy;
    EXPECT_EQ(assigned.getParamName(), "VARIABLE");
}

TEST(ParamObj, LookupByNameIgnoresCaseAndGivesNullWhenAbsent) {
    std::vector<ParamObj> list{numberParam(1.0, "1"), listParam({"x"})};
    EXPECT_EQ(ParamObj::getParamObj("seed", list), &list[0]);
    EXPECT_EQ(ParamObj::getParamObj("Variable", list), &list[1]);
    EXPECT_EQ(ParamObj::getParamObj("MAXITERATIONS", list), nullptr);
    EXPECT_EQ(ParamObj::getParamObj("SEED", {}), nullptr);
}

TEST(ParamObj, QuotedStringIsALiteralAndNotAWord) {
    auto run = syntaxtest::parse(syntaxtest::withVariables("/PRINT DISTMATRIX(OUTFILE=\"d.sav\")."));
    ASSERT_EQ(run.status, 0u) << run.error();
    std::vector<ParamObj> q;
    ASSERT_TRUE(run.param("PRINT", "DISTMATRIX")->getStringQualList(q, nullptr, nullptr));
    const ParamObj* out = ParamObj::getParamObj("OUTFILE", q);
    ASSERT_NE(out, nullptr);
    std::string text;
    bool literal = false;
    std::vector<std::string> list;
    EXPECT_TRUE(out->getStringOrLiteral(text, literal));
    EXPECT_TRUE(literal);
    EXPECT_EQ(text, "d.sav");
    EXPECT_FALSE(out->getUpStringGeneric(text));
    EXPECT_TRUE(out->getStringList(list));
    EXPECT_EQ(list, (std::vector<std::string>{"d.sav"}));
    EXPECT_EQ(out->getStringToken(), "\"d.sav\"");
}

TEST(ParamObj, BareKeywordHasNoValueAndAnEmptyQualifierList) {
    auto run = syntaxtest::parse(syntaxtest::withVariables("/PRINT DETAILS."));
    ASSERT_EQ(run.status, 0u) << run.error();
    const ParamObj* details = run.param("PRINT", "DETAILS");
    ASSERT_NE(details, nullptr);
    std::vector<std::string> list;
    std::vector<ParamObj> q{ParamObj()};
    EXPECT_FALSE(details->getStringList(list));
    EXPECT_TRUE(details->getStringQualList(q, nullptr, nullptr));
    EXPECT_TRUE(q.empty());
    EXPECT_EQ(details->getStringToken(), "");
    EXPECT_EQ(details->getSubComExtName(), "PRINT");
}

TEST(ParamObj, SubcommandLookupGivesNullForKeywordsNotWritten) {
    auto run = syntaxtest::parse(syntaxtest::withVariables("/PRINT DETAILS."));
    ASSERT_EQ(run.status, 0u) << run.error();
    EXPECT_EQ(run.sub("PRINT")->getParamObj("DISTVAR"), nullptr);
    EXPECT_EQ(run.sub("PRINT")->getParamObj("NOSUCH"), nullptr);
    EXPECT_NE(run.sub("print"), nullptr);
}
