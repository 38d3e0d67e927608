// The host parser reports exactly one clear error for each kind of syntax
// problem, and then refuses the command. Columns are counted by hand on the
// command texts below (line 2 starts with two blanks).
#include "UniversalParser.h"

#include <sstream>

#include <gtest/gtest.h>

#include "SyntaxTestSupport.h"

using syntaxtest::parse;
using syntaxtest::withVariables;

namespace {

std::string errorFor(const std::string& text, std::shared_ptr<host::DataSet> data = syntaxtest::standardData()) {
    auto run = parse(text, std::move(data));
    EXPECT_NE(run.status, 0u) << text;
    return run.error();
}

const char* kPrintKeywords = "Allowed: DETAILS, DISTCORRCOEFF, CORREST, DISTVAR, DISTMATRIX.";

}  // namespace

TEST(UniversalParserErrors, UnknownSubcommand) {
    EXPECT_EQ(errorFor(withVariables("  /FOO BAR.")),
              "Subcommand \"FOO\" is not recognized (command line, line 2, column 4). "
              "Allowed: ID, CRITERIA, PRINT, PLOT.");
}

TEST(UniversalParserErrors, SlashWithoutSubcommandName) {
    EXPECT_EQ(errorFor(withVariables("  /=3.")),
              "A subcommand name is expected after \"/\", found \"=\" (command line, line 2, column 4). "
              "Allowed: ID, CRITERIA, PRINT, PLOT.");
}

TEST(UniversalParserErrors, UnknownKeyword) {
    EXPECT_EQ(
        errorFor(withVariables("  /PRINT FOO.")),
        std::string("PRINT: keyword \"FOO\" is not recognized (command line, line 2, column 10). ") + kPrintKeywords);
}

TEST(UniversalParserErrors, UnknownKeywordInTheGlobalPart) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARS=x1 x2."),
              "Keyword \"VARS\" is not recognized (command line, line 1, column 22). Allowed: VARIABLE.");
}

TEST(UniversalParserErrors, UnknownQualifier) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA PERMUTATION(SEEDS=1).")),
              "CRITERIA PERMUTATION: qualifier \"SEEDS\" is not recognized (command line, line 2, column 25). "
              "Allowed: SEED, MAXITERATIONS, SIGNIFICANCELEVEL.");
}

TEST(UniversalParserErrors, NumberWhereAKeywordBelongs) {
    EXPECT_EQ(
        errorFor(withVariables("  /PRINT DETAILS 95.")),
        std::string("PRINT: a keyword is expected, found \"95\" (command line, line 2, column 18). ") + kPrintKeywords);
}

TEST(UniversalParserErrors, SecondValueForASingleValueKeyword) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL=90 95.")),
              "CRITERIA CILEVEL: only one value is allowed, found \"95\" (command line, line 2, column 24).");
    EXPECT_EQ(errorFor(withVariables("  /ID VARIABLE=id x1.")),
              "ID VARIABLE: only one variable name is allowed, found \"x1\" (command line, line 2, column 19).");
    // A word that names no variable is read as a misspelt keyword.
    EXPECT_EQ(errorFor(withVariables("  /ID VARIABLE=id zz.")),
              "ID: keyword \"zz\" is not recognized (command line, line 2, column 19). Allowed: VARIABLE.");
}

TEST(UniversalParserErrors, TextWhereANumberBelongs) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL=high.")),
              "CRITERIA CILEVEL: a number is expected, found \"high\" (command line, line 2, column 21). "
              "Allowed: numbers from 0 to 100.");
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL='95'.")),
              "CRITERIA CILEVEL: a number is expected, found \"'95'\" (command line, line 2, column 21). "
              "Allowed: numbers from 0 to 100.");
}

TEST(UniversalParserErrors, NumberWhereAWordBelongs) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA NORMALIZATION=3.")),
              "CRITERIA NORMALIZATION: a word is expected, found \"3\" (command line, line 2, column 27). "
              "Allowed: NONE, MINMAX, ZSCORE, ROBUST, LOG.");
}

TEST(UniversalParserErrors, StringWhereAVariableBelongs) {
    EXPECT_EQ(errorFor(withVariables("  /ID VARIABLE='id'.")),
              "ID VARIABLE: a variable name is expected, found \"'id'\" (command line, line 2, column 16).");
}

TEST(UniversalParserErrors, NumberInAVariableList) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x1 3."),
              "VARIABLE: a variable name is expected, found \"3\" (command line, line 1, column 34).");
}

TEST(UniversalParserErrors, ValueGivenToABareKeyword) {
    EXPECT_EQ(errorFor(withVariables("  /PRINT DETAILS=1.")),
              "PRINT DETAILS: DETAILS takes no value, found \"=\" (command line, line 2, column 17).");
}

TEST(UniversalParserErrors, ValueGivenToAKeywordWithQualifiers) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA PERMUTATION=1.")),
              "CRITERIA PERMUTATION: PERMUTATION takes qualifiers in parentheses, not a value, found \"=\" "
              "(command line, line 2, column 24). Allowed: SEED, MAXITERATIONS, SIGNIFICANCELEVEL.");
}

TEST(UniversalParserErrors, MissingEqualsSign) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL 95.")),
              "CRITERIA CILEVEL: \"=\" is expected after CILEVEL, found \"95\" (command line, line 2, column 21).");
}

TEST(UniversalParserErrors, MissingValueAtTheEnd) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL=.")),
              "CRITERIA CILEVEL: a number is expected, found the end of the command (command line, line 2, "
              "column 21). Allowed: numbers from 0 to 100.");
}

TEST(UniversalParserErrors, UnquotedPathAsFileName) {
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(OUTFILE=/tmp/x.sav).")),
              "PRINT DISTMATRIX OUTFILE: a file name is expected, found \"/\"; write it in quotes "
              "(command line, line 2, column 29).");
}

TEST(UniversalParserErrors, CiLevelOutsideItsBounds) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL=100.5.")),
              "CRITERIA CILEVEL: value 100.5 is above the maximum of 100 (command line, line 2, column 21). "
              "Allowed: numbers from 0 to 100.");
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL=-0.001.")),
              "CRITERIA CILEVEL: value -0.001 is below the minimum of 0 (command line, line 2, column 21). "
              "Allowed: numbers from 0 to 100.");
}

TEST(UniversalParserErrors, SignificanceLevelAboveOne) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA PERMUTATION(SIGNIFICANCELEVEL=1.5).")),
              "CRITERIA PERMUTATION SIGNIFICANCELEVEL: value 1.5 is above the maximum of 1 "
              "(command line, line 2, column 43). Allowed: numbers from 0 to 1.");
}

TEST(UniversalParserErrors, NegativeSignificanceLevel) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA PERMUTATION(SIGNIFICANCELEVEL=-0.1).")),
              "CRITERIA PERMUTATION SIGNIFICANCELEVEL: value -0.1 is below the minimum of 0 "
              "(command line, line 2, column 43). Allowed: numbers from 0 to 1.");
}

TEST(UniversalParserErrors, NegativeSeed) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA PERMUTATION(SEED=-1).")),
              "CRITERIA PERMUTATION SEED: value -1 is below the minimum of 0 (command line, line 2, column 30). "
              "Allowed: numbers at least 0.");
}

TEST(UniversalParserErrors, NegativeMaxIterations) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA PERMUTATION(MAXITERATIONS=-5).")),
              "CRITERIA PERMUTATION MAXITERATIONS: value -5 is below the minimum of 0 "
              "(command line, line 2, column 39). Allowed: numbers at least 0.");
}

TEST(UniversalParserErrors, WordNotInTheAllowedList) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA NORMALIZATION=SQRT.")),
              "CRITERIA NORMALIZATION: \"SQRT\" is not an allowed value (command line, line 2, column 27). "
              "Allowed: NONE, MINMAX, ZSCORE, ROBUST, LOG.");
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(SAVE=yes).")),
              "PRINT DISTMATRIX SAVE: \"yes\" is not an allowed value (command line, line 2, column 26). "
              "Allowed: TRUE, FALSE.");
}

TEST(UniversalParserErrors, UnclosedBracket) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=[x1 x2\n  /PRINT DETAILS."),
              "VARIABLE: the \"[\" is not closed (command line, line 1, column 31).");
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(CONFIGURE=[x1 x2 SAVE=TRUE).")),
              "PRINT DISTMATRIX CONFIGURE: the \"[\" is not closed (command line, line 2, column 31).");
}

TEST(UniversalParserErrors, ClosingBracketWithoutOpening) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x1 x2]."),
              "VARIABLE: \"]\" has no matching \"[\" (command line, line 1, column 36).");
}

TEST(UniversalParserErrors, UnclosedParenthesis) {
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(SAVE=TRUE.")),
              "PRINT DISTMATRIX: the \"(\" is not closed (command line, line 2, column 20).");
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(SAVE=TRUE /PLOT SCATTERPLOT.")),
              "PRINT DISTMATRIX: the \"(\" is not closed (command line, line 2, column 20).");
}

TEST(UniversalParserErrors, ClosingParenthesisWithoutOpening) {
    EXPECT_EQ(errorFor(withVariables("  /PLOT SCATTERPLOT(XAXIS=x1)).")),
              "PLOT: \")\" has no matching \"(\" (command line, line 2, column 30).");
}

TEST(UniversalParserErrors, BracketsWhereTheyAreNotAllowed) {
    EXPECT_EQ(errorFor(withVariables("  /ID VARIABLE=[id].")),
              "ID VARIABLE: brackets are not allowed here, found \"[\" (command line, line 2, column 16).");
}

TEST(UniversalParserErrors, KeywordRepeatedInOneSubcommand) {
    EXPECT_EQ(errorFor(withVariables("  /CRITERIA CILEVEL=90 CILEVEL=95.")),
              "CRITERIA: keyword \"CILEVEL\" is given more than once (command line, line 2, column 24).");
    EXPECT_EQ(errorFor(withVariables("  /PRINT DETAILS details.")),
              "PRINT: keyword \"DETAILS\" is given more than once (command line, line 2, column 18).");
}

TEST(UniversalParserErrors, QualifierRepeated) {
    EXPECT_EQ(errorFor(withVariables("  /PLOT SCATTERPLOT(XAXIS=x1 XAXIS=x2).")),
              "PLOT SCATTERPLOT: qualifier \"XAXIS\" is given more than once (command line, line 2, column 30).");
}

TEST(UniversalParserErrors, UnknownVariable) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x1 nothere."),
              "VARIABLE: variable \"nothere\" is not in the active data set (command line, line 1, column 34).");
    EXPECT_EQ(errorFor(withVariables("  /PLOT SCATTERPLOT(XAXIS=zz).")),
              "PLOT SCATTERPLOT XAXIS: variable \"zz\" is not in the active data set "
              "(command line, line 2, column 27).");
}

TEST(UniversalParserErrors, NoActiveDataSet) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x1 x2.", nullptr),
              "VARIABLE: there is no active data set in which to find variable \"x1\" "
              "(command line, line 1, column 31).");
}

TEST(UniversalParserErrors, SubcommandGivenTwice) {
    EXPECT_EQ(errorFor(withVariables("  /PRINT DETAILS /print DISTVAR.")),
              "Subcommand \"PRINT\" is given more than once (command line, line 2, column 19).");
}

TEST(UniversalParserErrors, TextAfterTheTerminator) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x1 x2.\nFOO."),
              "Text \"FOO.\" follows the period that ends the command (command line, line 2, column 1).");
}

TEST(UniversalParserErrors, UnterminatedQuote) {
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(OUTFILE='x.sav).")),
              "Quoted string is not closed before the end of the line (command line, line 2, column 29).");
}

TEST(UniversalParserErrors, WrongCommandName) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATIONS VARIABLE=x1."),
              "The command must start with \"DISTANCE CORRELATION\", found \"CORRELATIONS\" "
              "(command line, line 1, column 10).");
}

TEST(UniversalParserErrors, BackwardRange) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x4 TO x2."),
              "VARIABLE: the range \"x4 TO x2\" runs backwards: \"x4\" comes after \"x2\" in the data set "
              "(command line, line 1, column 31).");
}

TEST(UniversalParserErrors, MisplacedTo) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x1 TO."),
              "VARIABLE: \"TO\" must stand between two variable names, as in \"a TO c\" "
              "(command line, line 1, column 34).");
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=TO x2."),
              "VARIABLE: \"TO\" must stand between two variable names, as in \"a TO c\" "
              "(command line, line 1, column 31).");
}

TEST(UniversalParserErrors, RangeToAnUnknownVariable) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=x1 TO zz."),
              "VARIABLE: variable \"zz\" is not in the active data set (command line, line 1, column 37).");
}

TEST(UniversalParserErrors, EmptyVariableList) {
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=\n  /PRINT DETAILS."),
              "VARIABLE: at least one variable name is expected, found \"/\" (command line, line 2, column 3).");
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(CONFIGURE=[]).")),
              "PRINT DISTMATRIX CONFIGURE: at least one variable name is expected, found \"]\" "
              "(command line, line 2, column 32).");
}

TEST(UniversalParserErrors, MessageNamesTheSyntaxFileAndItsLine) {
    auto run = parse(withVariables("  /PRINT FOO."), syntaxtest::standardData(), "analysis.sps", 10);
    EXPECT_NE(run.status, 0u);
    EXPECT_EQ(
        run.error(),
        std::string("PRINT: keyword \"FOO\" is not recognized (analysis.sps, line 11, column 10). ") + kPrintKeywords);
}

TEST(UniversalParserErrors, ShownOnStandardErrorWithTheCommandName) {
    std::ostringstream err;
    host::HostSession& session = host::HostSession::instance();
    syntaxtest::beginCommand(withVariables("  /PRINT FOO."));
    session.setQuiet(false);
    session.setErrorStream(&err);
    CommandDescriptor descriptor("DISTANCE CORRELATION");
    DistanceCorrCommandDescriber(descriptor).start();
    CommandSpec spec;
    VELA_TokenSequence tokens(true);
    UniversalParser parser(tokens, spec, descriptor);
    EXPECT_NE(parser.getCommandSpecifications(), 0u);
    session.setErrorStream(nullptr);
    session.setQuiet(true);
    EXPECT_EQ(err.str(), std::string("Error: DISTANCE CORRELATION: PRINT: keyword \"FOO\" is not recognized "
                                     "(command line, line 2, column 10). ") +
                             kPrintKeywords + "\n");
}

TEST(UniversalParserErrors, FailedParseLeavesNoSubcommands) {
    auto run = parse(withVariables("  /PRINT DETAILS /PLOT FOO."));
    EXPECT_NE(run.status, 0u);
    EXPECT_EQ(run.sub(""), nullptr);
    EXPECT_EQ(run.sub("PRINT"), nullptr);
}

TEST(UniversalParserErrors, ProblemsAreReportedInTheOrderOfTheText) {
    // The unknown subcommand comes before the character that is not allowed ...
    EXPECT_EQ(errorFor(withVariables("  /FOO & BAR.")),
              "Subcommand \"FOO\" is not recognized (command line, line 2, column 4). "
              "Allowed: ID, CRITERIA, PRINT, PLOT.");
    // ... and the character comes before the unknown subcommand.
    EXPECT_EQ(errorFor(withVariables("  /PRINT DETAILS & /FOO.")),
              "Character \"&\" is not allowed here (command line, line 2, column 18).");
}

namespace {

// "x1 x1 x1 ..." with the given number of names.
std::string repeatedNames(std::size_t count) {
    std::string names;
    names.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i) names += "x1 ";
    return names;
}

}  // namespace

TEST(UniversalParserErrors, AListOfMoreNamesThanTheBoundIsRefusedAtTheFirstNameBeyondIt) {
    // The names start at column 31, three columns apart: name 100,001 at 31 + 3 * 100,000.
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=" + repeatedNames(100001) + "."),
              "VARIABLE: a variable list may hold at most 100,000 names; this one holds more "
              "(command line, line 1, column 300031).");
    // Here they start at column 32.
    EXPECT_EQ(errorFor(withVariables("  /PRINT DISTMATRIX(CONFIGURE=[" + repeatedNames(100001) + "]).")),
              "PRINT DISTMATRIX CONFIGURE: a variable list may hold at most 100,000 names; this one holds more "
              "(command line, line 2, column 300032).");
}

TEST(UniversalParserErrors, ARangeThatPassesTheBoundIsRefusedAtTheRange) {
    // 99,995 names and x1 TO id, the eleven variables of the data set: 100,006 names.
    EXPECT_EQ(errorFor("DISTANCE CORRELATION VARIABLE=" + repeatedNames(99995) + "x1 TO id."),
              "VARIABLE: a variable list may hold at most 100,000 names; this one holds more "
              "(command line, line 1, column 300016).");
}
