// The host parser against the procedure's real grammar: commands that must
// be accepted, and what the parsed objects then hold.
#include "UniversalParser.h"

#include <gtest/gtest.h>

#include "SyntaxTestSupport.h"

using syntaxtest::parse;
using syntaxtest::ParseRun;
using syntaxtest::withVariables;
using Names = std::vector<std::string>;

namespace {

Names varList(const ParamObj* p) {
    Names out;
    EXPECT_NE(p, nullptr);
    if (p != nullptr) {
        EXPECT_TRUE(p->getVarList(out));
    }
    return out;
}

Names textList(const ParamObj* p) {
    Names out;
    EXPECT_NE(p, nullptr);
    if (p != nullptr) {
        EXPECT_TRUE(p->getStringList(out));
    }
    return out;
}

double numberOf(const ParamObj* p) {
    double v = -12345.0;
    EXPECT_NE(p, nullptr);
    if (p != nullptr) {
        EXPECT_TRUE(p->getNumberValue(v));
    }
    return v;
}

std::string wordOf(const ParamObj* p) {
    std::string w;
    EXPECT_NE(p, nullptr);
    if (p != nullptr) {
        EXPECT_TRUE(p->getUpStringGeneric(w));
    }
    return w;
}

std::vector<ParamObj> qualifiers(const ParamObj* p) {
    std::vector<ParamObj> out;
    EXPECT_NE(p, nullptr);
    if (p != nullptr) {
        EXPECT_TRUE(p->getStringQualList(out, nullptr, nullptr));
    }
    return out;
}

void expectAccepted(const ParseRun& run) {
    EXPECT_EQ(run.status, 0u);
    EXPECT_TRUE(run.messages().empty()) << run.error();
}

}  // namespace

TEST(UniversalParser, OnlyTheVariableListIsAValidCommand) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=x1 x2.");
    expectAccepted(run);
    EXPECT_EQ(varList(run.param("", "VARIABLE")), (Names{"x1", "x2"}));
    for (const char* absent : {"ID", "CRITERIA", "PRINT", "PLOT"}) EXPECT_EQ(run.sub(absent), nullptr) << absent;
}

TEST(UniversalParser, EveryKeywordOfTheGrammar) {
    auto run = parse(
        "DISTANCE CORRELATION VARIABLE=x1 x2 x3\n"
        "  /ID VARIABLE=id\n"
        "  /CRITERIA NORMALIZATION=zscore CILEVEL=90\n"
        "     PERMUTATION(SEED=42 MAXITERATIONS=500 SIGNIFICANCELEVEL=0.01)\n"
        "  /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR\n"
        "     DISTMATRIX(CONFIGURE=[x1 x2] SAVE=TRUE OUTFILE='dist.sav')\n"
        "  /PLOT SCATTERPLOT(XAXIS=x1 YAXIS=x2).\n");
    expectAccepted(run);

    std::string id;
    ASSERT_NE(run.param("ID", "VARIABLE"), nullptr);
    EXPECT_TRUE(run.param("ID", "VARIABLE")->getVarName(id));
    EXPECT_EQ(id, "id");

    EXPECT_EQ(wordOf(run.param("CRITERIA", "NORMALIZATION")), "ZSCORE");
    EXPECT_DOUBLE_EQ(numberOf(run.param("CRITERIA", "CILEVEL")), 90.0);
    auto perm = qualifiers(run.param("CRITERIA", "PERMUTATION"));
    ASSERT_EQ(perm.size(), 3u);
    EXPECT_DOUBLE_EQ(numberOf(ParamObj::getParamObj("SEED", perm)), 42.0);
    EXPECT_DOUBLE_EQ(numberOf(ParamObj::getParamObj("MAXITERATIONS", perm)), 500.0);
    EXPECT_DOUBLE_EQ(numberOf(ParamObj::getParamObj("SIGNIFICANCELEVEL", perm)), 0.01);

    for (const char* flag : {"DETAILS", "DISTCORRCOEFF", "CORREST", "DISTVAR"})
        EXPECT_NE(run.param("PRINT", flag), nullptr) << flag;
    auto matrix = qualifiers(run.param("PRINT", "DISTMATRIX"));
    ASSERT_EQ(matrix.size(), 3u);
    EXPECT_EQ(varList(ParamObj::getParamObj("CONFIGURE", matrix)), (Names{"x1", "x2"}));
    EXPECT_EQ(wordOf(ParamObj::getParamObj("SAVE", matrix)), "TRUE");
    std::string file;
    bool literal = false;
    ASSERT_NE(ParamObj::getParamObj("OUTFILE", matrix), nullptr);
    EXPECT_TRUE(ParamObj::getParamObj("OUTFILE", matrix)->getStringOrLiteral(file, literal));
    EXPECT_EQ(file, "dist.sav");
    EXPECT_TRUE(literal);

    auto axes = qualifiers(run.param("PLOT", "SCATTERPLOT"));
    std::string x, y;
    ASSERT_NE(ParamObj::getParamObj("XAXIS", axes), nullptr);
    ASSERT_NE(ParamObj::getParamObj("YAXIS", axes), nullptr);
    EXPECT_TRUE(ParamObj::getParamObj("XAXIS", axes)->getVarName(x));
    EXPECT_TRUE(ParamObj::getParamObj("YAXIS", axes)->getVarName(y));
    EXPECT_EQ(x, "x1");
    EXPECT_EQ(y, "x2");
}

TEST(UniversalParser, EveryNormalizationWordPassesInAnyLetterCase) {
    for (const char* word : {"NONE", "minmax", "ZScore", "robust", "LOG"}) {
        auto run = parse(withVariables("/CRITERIA NORMALIZATION=" + std::string(word) + "."));
        expectAccepted(run);
        std::string upper = word;
        for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        EXPECT_EQ(wordOf(run.param("CRITERIA", "NORMALIZATION")), upper);
    }
}

TEST(UniversalParser, NormalizationLogPasses) {
    auto run = parse(withVariables("/CRITERIA NORMALIZATION=LOG."));
    expectAccepted(run);
    EXPECT_EQ(wordOf(run.param("CRITERIA", "NORMALIZATION")), "LOG");
}

TEST(UniversalParser, CiLevelAtBothBoundsPasses) {
    for (const char* value : {"0", "100", "0.0", "1e2"}) {
        auto run = parse(withVariables("/CRITERIA CILEVEL=" + std::string(value) + "."));
        expectAccepted(run);
    }
    EXPECT_DOUBLE_EQ(numberOf(parse(withVariables("/CRITERIA CILEVEL=0.")).param("CRITERIA", "CILEVEL")), 0.0);
    EXPECT_DOUBLE_EQ(numberOf(parse(withVariables("/CRITERIA CILEVEL=100.")).param("CRITERIA", "CILEVEL")), 100.0);
}

TEST(UniversalParser, PermutationQualifiersAtTheirBoundsPass) {
    auto run = parse(withVariables("/CRITERIA PERMUTATION(SEED=0 MAXITERATIONS=0 SIGNIFICANCELEVEL=1)."));
    expectAccepted(run);
    run = parse(withVariables("/CRITERIA PERMUTATION(SIGNIFICANCELEVEL=0 SEED=1e9)."));
    expectAccepted(run);
    auto perm = qualifiers(run.param("CRITERIA", "PERMUTATION"));
    EXPECT_DOUBLE_EQ(numberOf(ParamObj::getParamObj("SEED", perm)), 1e9);  // SEED has no upper bound
    run = parse(withVariables("/CRITERIA PERMUTATION(MAXITERATIONS=1e7)."));
    expectAccepted(run);  // nor has MAXITERATIONS
}

TEST(UniversalParser, PermutationWithoutQualifiersHasAnEmptyList) {
    auto run = parse(withVariables("/CRITERIA PERMUTATION."));
    expectAccepted(run);
    EXPECT_TRUE(qualifiers(run.param("CRITERIA", "PERMUTATION")).empty());
    run = parse(withVariables("/CRITERIA PERMUTATION()."));
    expectAccepted(run);
    EXPECT_TRUE(qualifiers(run.param("CRITERIA", "PERMUTATION")).empty());
}

TEST(UniversalParser, SaveTakesTrueOrFalse) {
    auto run = parse(withVariables("/PRINT DISTMATRIX(CONFIGURE=x1 SAVE=false)."));
    expectAccepted(run);
    EXPECT_EQ(wordOf(ParamObj::getParamObj("SAVE", qualifiers(run.param("PRINT", "DISTMATRIX")))), "FALSE");
}

TEST(UniversalParser, ToExpandsInDictionaryOrderInTextAndVariableListsAlike) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=x1 x3 TO x5 my_var.");
    expectAccepted(run);
    const Names expected{"x1", "x3", "x4", "x5", "my_var"};
    EXPECT_EQ(varList(run.param("", "VARIABLE")), expected);
    EXPECT_EQ(textList(run.param("", "VARIABLE")), expected);
}

TEST(UniversalParser, RangeEndsKeepTheirSpellingAndNamesBetweenTakeTheDictionarys) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=X2 to X4.");
    expectAccepted(run);
    EXPECT_EQ(varList(run.param("", "VARIABLE")), (Names{"X2", "x3", "X4"}));
    EXPECT_EQ(textList(run.param("", "VARIABLE")), (Names{"X2", "x3", "X4"}));
}

TEST(UniversalParser, RangeOfOneVariable) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=x2 TO x2 x1.");
    expectAccepted(run);
    EXPECT_EQ(varList(run.param("", "VARIABLE")), (Names{"x2", "x1"}));
}

TEST(UniversalParser, ToExpandsInsideConfigureToo) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=x1 TO x5 /PRINT DISTMATRIX(CONFIGURE=[x2 TO x4]).");
    expectAccepted(run);
    EXPECT_EQ(varList(ParamObj::getParamObj("CONFIGURE", qualifiers(run.param("PRINT", "DISTMATRIX")))),
              (Names{"x2", "x3", "x4"}));
}

TEST(UniversalParser, NamesMatchTheDictionaryInAnyCaseAndKeepTheirWrittenSpelling) {
    auto run =
        parse("DISTANCE CORRELATION VARIABLE=SOLAR.r My_Var X1 /ID VARIABLE=ID /PLOT SCATTERPLOT(XAXIS=solar.R).");
    expectAccepted(run);
    EXPECT_EQ(varList(run.param("", "VARIABLE")), (Names{"SOLAR.r", "My_Var", "X1"}));
    EXPECT_EQ(textList(run.param("", "VARIABLE")), (Names{"SOLAR.r", "My_Var", "X1"}));
    std::string id, x;
    EXPECT_TRUE(run.param("ID", "VARIABLE")->getVarName(id));
    EXPECT_EQ(id, "ID");
    EXPECT_TRUE(ParamObj::getParamObj("XAXIS", qualifiers(run.param("PLOT", "SCATTERPLOT")))->getVarName(x));
    EXPECT_EQ(x, "solar.R");
}

TEST(UniversalParser, BracketsAroundAVariableListAreOptional) {
    auto plain = parse("DISTANCE CORRELATION VARIABLE=x1 x2 x3 /PRINT DISTMATRIX(CONFIGURE=x1 x2 SAVE=FALSE).");
    auto bracketed = parse("DISTANCE CORRELATION VARIABLE=[x1 x2 x3] /PRINT DISTMATRIX(CONFIGURE=[x1 x2] SAVE=FALSE).");
    expectAccepted(plain);
    expectAccepted(bracketed);
    EXPECT_EQ(varList(plain.param("", "VARIABLE")), (Names{"x1", "x2", "x3"}));
    EXPECT_EQ(varList(bracketed.param("", "VARIABLE")), (Names{"x1", "x2", "x3"}));
    auto q1 = qualifiers(plain.param("PRINT", "DISTMATRIX"));
    auto q2 = qualifiers(bracketed.param("PRINT", "DISTMATRIX"));
    EXPECT_EQ(varList(ParamObj::getParamObj("CONFIGURE", q1)), (Names{"x1", "x2"}));
    EXPECT_EQ(varList(ParamObj::getParamObj("CONFIGURE", q2)), (Names{"x1", "x2"}));
    EXPECT_NE(ParamObj::getParamObj("SAVE", q1), nullptr);
    EXPECT_NE(ParamObj::getParamObj("SAVE", q2), nullptr);
}

TEST(UniversalParser, UnbracketedListEndsAtSlashParenthesisAndKeyword) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=x1 x2/PRINT DISTMATRIX(CONFIGURE=x1 x2) DETAILS.");
    expectAccepted(run);
    EXPECT_EQ(varList(run.param("", "VARIABLE")), (Names{"x1", "x2"}));
    EXPECT_NE(run.param("PRINT", "DETAILS"), nullptr);
}

TEST(UniversalParser, BracketsLetAVariableBeSpelledLikeAKeyword) {
    auto data = syntaxtest::standardData();
    data->add("save");
    auto run = parse("DISTANCE CORRELATION VARIABLE=x1 save /PRINT DISTMATRIX(CONFIGURE=[x1 save] SAVE=TRUE).", data);
    expectAccepted(run);
    EXPECT_EQ(varList(ParamObj::getParamObj("CONFIGURE", qualifiers(run.param("PRINT", "DISTMATRIX")))),
              (Names{"x1", "save"}));
}

TEST(UniversalParser, RequiredFlagsAreNotEnforced) {
    // DISTMATRIX without CONFIGURE and SCATTERPLOT without its axes reach the procedure's own checks.
    auto run = parse(withVariables("/PRINT DISTMATRIX /PLOT SCATTERPLOT."));
    expectAccepted(run);
    EXPECT_TRUE(qualifiers(run.param("PRINT", "DISTMATRIX")).empty());
    EXPECT_TRUE(qualifiers(run.param("PLOT", "SCATTERPLOT")).empty());
    run = parse(withVariables("/PLOT SCATTERPLOT(XAXIS=x1)."));
    expectAccepted(run);
    EXPECT_EQ(qualifiers(run.param("PLOT", "SCATTERPLOT")).size(), 1u);
    run = parse(withVariables("/PRINT DISTMATRIX(SAVE=TRUE)."));
    expectAccepted(run);
}

TEST(UniversalParser, CommandWithoutTheVariableListParses) {
    auto run = parse("DISTANCE CORRELATION /PRINT DETAILS.");
    expectAccepted(run);
    EXPECT_EQ(run.sub(""), nullptr);
    EXPECT_NE(run.param("PRINT", "DETAILS"), nullptr);
}

TEST(UniversalParser, SubcommandsMayBeEmpty) {
    auto run = parse(withVariables("/ID /PRINT /CRITERIA."));
    expectAccepted(run);
    ASSERT_NE(run.sub("ID"), nullptr);
    EXPECT_EQ(run.param("ID", "VARIABLE"), nullptr);
    ASSERT_NE(run.sub("PRINT"), nullptr);
    EXPECT_EQ(run.param("PRINT", "DETAILS"), nullptr);
}

TEST(UniversalParser, KeywordsAndCommandNameIgnoreLetterCase) {
    auto run = parse(
        "distance Correlation variable=x1 x2 /print Details distmatrix(configure=x1 save=true "
        "outfile='a.sav') /criteria permutation(seed=3).");
    expectAccepted(run);
    EXPECT_NE(run.param("PRINT", "DETAILS"), nullptr);
    EXPECT_EQ(run.param("PRINT", "DETAILS")->getParamName(), "DETAILS");
    auto matrix = qualifiers(run.param("PRINT", "DISTMATRIX"));
    ASSERT_NE(ParamObj::getParamObj("save", matrix), nullptr);
    EXPECT_EQ(ParamObj::getParamObj("save", matrix)->getParamName(), "SAVE");
}

TEST(UniversalParser, GlobalPartMayBeWrittenWithASlash) {
    auto run = parse("DISTANCE CORRELATION /VARIABLE=x1 x2 /PRINT DETAILS.");
    expectAccepted(run);
    EXPECT_EQ(varList(run.param("", "VARIABLE")), (Names{"x1", "x2"}));
}

TEST(UniversalParser, CommandWithoutTerminatorEndsAtTheEndOfTheText) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=x1 x2\n  /PRINT DETAILS");
    expectAccepted(run);
    EXPECT_NE(run.param("PRINT", "DETAILS"), nullptr);
}

TEST(UniversalParser, SubcommandExternalNames) {
    auto run = parse(withVariables("/ID VARIABLE=id /PRINT DISTMATRIX(SAVE=TRUE)."));
    expectAccepted(run);
    EXPECT_EQ(run.sub("")->getSubComExtName(), "VARIABLE");
    EXPECT_EQ(run.param("", "VARIABLE")->getSubComExtName(), "VARIABLE");
    EXPECT_EQ(run.sub("ID")->getSubComExtName(), "ID");
    EXPECT_EQ(run.sub("PRINT")->getSubComExtName(), "PRINT");
    // A qualifier belongs to the subcommand of its keyword.
    EXPECT_EQ(ParamObj::getParamObj("SAVE", qualifiers(run.param("PRINT", "DISTMATRIX")))->getSubComExtName(), "PRINT");
}

TEST(UniversalParser, OutfileAsBareWordOrNumber) {
    auto run = parse(withVariables("/PRINT DISTMATRIX(OUTFILE=dist.sav)."));
    expectAccepted(run);
    auto matrix = qualifiers(run.param("PRINT", "DISTMATRIX"));
    const ParamObj* out = ParamObj::getParamObj("OUTFILE", matrix);
    ASSERT_NE(out, nullptr);
    std::string name;
    bool literal = true;
    EXPECT_TRUE(out->getStringOrLiteral(name, literal));
    EXPECT_EQ(name, "dist.sav");
    EXPECT_FALSE(literal);

    // A number is accepted as a value; the procedure decides it is no file name.
    run = parse(withVariables("/PRINT DISTMATRIX(OUTFILE=123)."));
    expectAccepted(run);
    matrix = qualifiers(run.param("PRINT", "DISTMATRIX"));
    out = ParamObj::getParamObj("OUTFILE", matrix);
    ASSERT_NE(out, nullptr);
    EXPECT_FALSE(out->getStringOrLiteral(name, literal));
    EXPECT_EQ(out->getStringToken(), "123");
}

TEST(UniversalParser, QuotedFileNameKeepsInnerQuotesAndPeriods) {
    auto run = parse(withVariables("/PRINT DISTMATRIX(OUTFILE='/tmp/it''s.sav')."));
    expectAccepted(run);
    auto matrix = qualifiers(run.param("PRINT", "DISTMATRIX"));
    const ParamObj* out = ParamObj::getParamObj("OUTFILE", matrix);
    std::string name;
    bool literal = false;
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(out->getStringOrLiteral(name, literal));
    EXPECT_EQ(name, "/tmp/it's.sav");
    EXPECT_EQ(out->getStringToken(), "'/tmp/it''s.sav'");
}

TEST(UniversalParser, ValueTokensAsWritten) {
    auto run = parse("DISTANCE CORRELATION VARIABLE=[x1 x2] /CRITERIA NORMALIZATION=zscore CILEVEL=1e1.");
    expectAccepted(run);
    EXPECT_EQ(run.param("", "VARIABLE")->getStringToken(), "[x1 x2]");
    EXPECT_EQ(run.param("CRITERIA", "NORMALIZATION")->getStringToken(), "zscore");
    EXPECT_EQ(run.param("CRITERIA", "CILEVEL")->getStringToken(), "1e1");
}

TEST(UniversalParser, TextVariablesAreLeftToTheVariableCheck) {
    // The parser checks that names exist; their type is checked by VarSpecObj.
    auto run = parse("DISTANCE CORRELATION VARIABLE=x1 Name.");
    expectAccepted(run);
}

TEST(UniversalParser, ParsingAgainReplacesTheEarlierResult) {
    auto first = parse("DISTANCE CORRELATION VARIABLE=x1 x2 /PRINT DETAILS.");
    expectAccepted(first);
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1 x3.");
    VELA_TokenSequence tokens(true);
    UniversalParser parser(tokens, *first.spec, *first.descriptor);
    EXPECT_EQ(parser.getCommandSpecifications(), 0u);
    EXPECT_EQ(first.sub("PRINT"), nullptr);
    EXPECT_EQ(varList(first.param("", "VARIABLE")), (Names{"x1", "x3"}));
}

TEST(UniversalParser, AListMayHoldOneHundredThousandNames) {
    std::string text = "DISTANCE CORRELATION VARIABLE=";
    for (int i = 0; i < 100000; ++i) text += "x1 ";
    const ParseRun run = parse(text + ".");
    ASSERT_EQ(run.status, 0u) << run.error();
    EXPECT_EQ(varList(run.param("", "VARIABLE")).size(), 100000u);
    EXPECT_EQ(textList(run.param("", "VARIABLE")).size(), 100000u);
}

TEST(UniversalParser, InAWiderDataSetAListMayNameEveryVariable) {
    auto data = std::make_shared<syntaxtest::FakeDataSet>();
    const int variables = 100005;
    for (int i = 1; i <= variables; ++i) data->add("v" + std::to_string(i));
    ParseRun run = parse("DISTANCE CORRELATION VARIABLE=v1 TO v100005.", data);
    ASSERT_EQ(run.status, 0u) << run.error();
    const Names names = varList(run.param("", "VARIABLE"));
    ASSERT_EQ(names.size(), static_cast<std::size_t>(variables));
    EXPECT_EQ(names[100004], "v100005");
    // One name more than the data set has variables is one too many.
    run = parse("DISTANCE CORRELATION VARIABLE=v1 TO v100005 v7.", data);
    EXPECT_EQ(run.error(),
              "VARIABLE: a variable list may hold at most 100,005 names; this one holds more "
              "(command line, line 1, column 45).");
}
