#include "syntax/CommandTokenizer.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using host::syntax::CommandTokenizer;
using host::syntax::Token;
using host::syntax::TokenKind;

namespace {

// Every token up to and including the End; the texts stay alive for the views.
std::vector<Token> tokensOf(const std::string& text, int firstLine = 1) {
    static std::vector<std::unique_ptr<std::string>> texts;
    texts.push_back(std::make_unique<std::string>(text));
    CommandTokenizer tokenizer(*texts.back(), firstLine);
    std::vector<Token> tokens;
    Token token;
    while (tokens.empty() || !tokens.back().is(TokenKind::End)) {
        if (!tokenizer.next(token)) {
            ADD_FAILURE() << tokenizer.error().text;
            break;
        }
        tokens.push_back(token);
    }
    return tokens;
}

// The first problem found when splitting the whole text.
std::string errorOf(const std::string& text, int& line, int& column) {
    CommandTokenizer tokenizer(text, 1);
    Token token;
    while (tokenizer.next(token) && !token.is(TokenKind::End)) {
    }
    EXPECT_FALSE(tokenizer.next(token)) << text;
    line = tokenizer.error().line;
    column = tokenizer.error().column;
    return tokenizer.error().text;
}

}  // namespace

TEST(CommandTokenizer, EveryTokenKindWithItsPlace) {
    //                       1234567890123456789012345678901234
    auto t = tokensOf("ab = 'q' \"r\" 1.5 / ( ) [ ] my_var.");
    ASSERT_EQ(t.size(), 12u);
    EXPECT_EQ(t[11].kind, TokenKind::End);
    EXPECT_EQ(t[11].column, 34);
    const TokenKind kinds[] = {TokenKind::Word,         TokenKind::Equals,     TokenKind::String,
                               TokenKind::String,       TokenKind::Number,     TokenKind::Slash,
                               TokenKind::LeftParen,    TokenKind::RightParen, TokenKind::LeftBracket,
                               TokenKind::RightBracket, TokenKind::Word};
    const int columns[] = {1, 4, 6, 10, 14, 18, 20, 22, 24, 26, 28};
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(t[i].kind, kinds[i]) << "token " << i;
        EXPECT_EQ(t[i].column, columns[i]) << "token " << i;
        EXPECT_EQ(t[i].line, 1);
    }
    EXPECT_EQ(t[10].value(), "my_var");
}

TEST(CommandTokenizer, PeriodAtLineEndIsTheTerminator) {
    auto t = tokensOf("VARIABLE=a b.   \n");
    ASSERT_EQ(t.size(), 5u);
    EXPECT_EQ(t[3].value(), "b");
    EXPECT_EQ(t[4].kind, TokenKind::End);
    EXPECT_EQ(t[4].text, ".");
    EXPECT_EQ(t[4].column, 13);
}

TEST(CommandTokenizer, EndOfTextEndsTheCommandWithoutAPeriod) {
    auto t = tokensOf("VARIABLE=a b");
    ASSERT_EQ(t.size(), 5u);
    EXPECT_EQ(t[4].kind, TokenKind::End);
    EXPECT_EQ(t[4].text, "");
}

TEST(CommandTokenizer, DotsInsideNamesAreKept) {
    auto t = tokensOf("Solar.R x.y.z my.");
    ASSERT_EQ(t.size(), 4u);
    EXPECT_EQ(t[0].value(), "Solar.R");
    EXPECT_EQ(t[1].value(), "x.y.z");
    EXPECT_EQ(t[2].value(), "my");  // the final period ends the command
    EXPECT_EQ(t[3].kind, TokenKind::End);
}

TEST(CommandTokenizer, PeriodFollowedByTextOnTheSameLineIsPartOfTheWord) {
    auto t = tokensOf("a. b");
    ASSERT_EQ(t.size(), 3u);
    EXPECT_EQ(t[0].value(), "a.");
    EXPECT_EQ(t[1].value(), "b");
}

TEST(CommandTokenizer, NumbersWithSignDecimalsAndExponent) {
    auto t = tokensOf("-1 +2.5 .05 -.5 1e3 2.5E-2 7 95.");
    const double values[] = {-1.0, 2.5, 0.05, -0.5, 1000.0, 0.025, 7.0, 95.0};
    ASSERT_EQ(t.size(), 9u);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(t[i].kind, TokenKind::Number) << i;
        EXPECT_DOUBLE_EQ(t[i].number(), values[i]) << i;
    }
    EXPECT_EQ(t[7].text, "95");  // "95." at the line end is 95 and the terminator
    EXPECT_EQ(t[8].kind, TokenKind::End);
}

TEST(CommandTokenizer, DoubledQuoteInsideAStringIsOneQuote) {
    auto t = tokensOf("'it''s' \"say \"\"hi\"\"\" 'a\"b'");
    ASSERT_EQ(t.size(), 4u);
    EXPECT_EQ(t[0].value(), "it's");
    EXPECT_EQ(t[0].text, "'it''s'");
    EXPECT_EQ(t[1].value(), "say \"hi\"");
    EXPECT_EQ(t[2].value(), "a\"b");
}

TEST(CommandTokenizer, PeriodInsideAStringDoesNotEndTheCommand) {
    auto t = tokensOf("OUTFILE='out.'\n/PRINT.");
    ASSERT_EQ(t.size(), 6u);
    EXPECT_EQ(t[2].kind, TokenKind::String);
    EXPECT_EQ(t[2].value(), "out.");
    EXPECT_EQ(t[3].kind, TokenKind::Slash);
    EXPECT_EQ(t[3].line, 2);
    EXPECT_EQ(t[5].kind, TokenKind::End);
}

TEST(CommandTokenizer, LinesAndColumnsCountFromTheCommandsFirstLine) {
    auto t = tokensOf("DISTANCE CORRELATION\n  /PRINT\n\tDETAILS.", 7);
    ASSERT_EQ(t.size(), 6u);
    EXPECT_EQ(t[0].line, 7);
    EXPECT_EQ(t[1].line, 7);
    EXPECT_EQ(t[1].column, 10);
    EXPECT_EQ(t[2].line, 8);
    EXPECT_EQ(t[2].column, 3);
    EXPECT_EQ(t[3].line, 8);
    EXPECT_EQ(t[3].column, 4);
    EXPECT_EQ(t[4].line, 9);
    EXPECT_EQ(t[4].column, 2);  // a tab counts as one column
    EXPECT_EQ(t[5].line, 9);
    EXPECT_EQ(t[5].column, 9);
}

TEST(CommandTokenizer, UnterminatedQuoteIsAnErrorAtTheOpeningQuote) {
    int line = 0, column = 0;
    EXPECT_EQ(errorOf("a\n  OUTFILE='abc\n'.", line, column), "quoted string is not closed before the end of the line");
    EXPECT_EQ(line, 2);
    EXPECT_EQ(column, 11);
    EXPECT_EQ(errorOf("x \"abc", line, column), "quoted string is not closed before the end of the line");
    EXPECT_EQ(column, 3);
}

TEST(CommandTokenizer, TextAfterTheTerminatorIsAnError) {
    int line = 0, column = 0;
    EXPECT_EQ(errorOf("VARIABLE=a b.\n  /PRINT DETAILS.", line, column),
              "text \"/PRINT\" follows the period that ends the command");
    EXPECT_EQ(line, 2);
    EXPECT_EQ(column, 3);
}

TEST(CommandTokenizer, BlankLinesAfterTheTerminatorAreFine) {
    auto t = tokensOf("a.\n\n   \n");
    ASSERT_EQ(t.size(), 2u);
    EXPECT_EQ(t[1].kind, TokenKind::End);
}

TEST(CommandTokenizer, CharacterOutsideTheLanguageIsAnError) {
    int line = 0, column = 0;
    EXPECT_EQ(errorOf("a & b", line, column), "character \"&\" is not allowed here");
    EXPECT_EQ(column, 3);
    EXPECT_EQ(errorOf("a - b", line, column), "character \"-\" is not allowed here");
}

TEST(CommandTokenizer, LettersGluedToANumberAreAnError) {
    int line = 0, column = 0;
    EXPECT_EQ(errorOf("CILEVEL=95abc", line, column), "\"95abc\" is not a valid number");
    EXPECT_EQ(column, 9);
    EXPECT_EQ(errorOf("x=1.5.3", line, column), "\"1.5.3\" is not a valid number");
}

TEST(CommandTokenizer, HugeNumberIsAnError) {
    int line = 0, column = 0;
    EXPECT_EQ(errorOf("SEED=1e999", line, column), "number \"1e999\" is too large");
}

TEST(CommandTokenizer, WordsKeepTheirLetterCase) {
    auto t = tokensOf("distance Correlation");
    EXPECT_EQ(t[0].value(), "distance");
    EXPECT_EQ(t[1].value(), "Correlation");
}

TEST(CommandTokenizer, ALoneCarriageReturnEndsALine) {
    auto t = tokensOf("a\rb\r\nc\n\rd.\r", 3);
    ASSERT_EQ(t.size(), 5u);
    const int lines[] = {3, 4, 5, 7, 7};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(t[i].line, lines[i]) << i;
    EXPECT_EQ(t[3].column, 1);
    EXPECT_EQ(t[4].kind, TokenKind::End);
    EXPECT_EQ(t[4].text, ".");
}

TEST(CommandTokenizer, PeriodBeforeALoneCarriageReturnEndsTheCommand) {
    auto t = tokensOf("VARIABLE=a b.\r\r");
    ASSERT_EQ(t.size(), 5u);
    EXPECT_EQ(t[3].value(), "b");
    EXPECT_EQ(t[4].kind, TokenKind::End);
    int line = 0, column = 0;
    EXPECT_EQ(errorOf("a.\r/PRINT", line, column), "text \"/PRINT\" follows the period that ends the command");
    EXPECT_EQ(line, 2);
}

TEST(CommandTokenizer, AStringDoesNotRunPastALoneCarriageReturn) {
    int line = 0, column = 0;
    EXPECT_EQ(errorOf("x 'abc\rdef'", line, column), "quoted string is not closed before the end of the line");
    EXPECT_EQ(column, 3);
}

TEST(CommandTokenizer, ColumnsCountCharactersNotBytes) {
    auto t = tokensOf("\xC3\xA9t\xC3\xA9 = x");  // "été = x"
    ASSERT_EQ(t.size(), 4u);
    EXPECT_EQ(t[0].value(), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(t[1].column, 5);
    EXPECT_EQ(t[2].column, 7);
}

TEST(CommandTokenizer, ControlCharactersAreEscapedInMessages) {
    int line = 0, column = 0;
    EXPECT_EQ(errorOf(std::string("a\0b", 3), line, column), "character \"\\u0000\" is not allowed here");
    EXPECT_EQ(column, 2);
    EXPECT_EQ(errorOf("a \x1b[31m", line, column), "character \"\\u001B\" is not allowed here");
}

TEST(CommandTokenizer, LongNumbersAreShortenedInMessages) {
    int line = 0, column = 0;
    const std::string huge = "1" + std::string(100000, '0');
    const std::string message = errorOf("CILEVEL=" + huge, line, column);
    EXPECT_EQ(message, "number \"1" + std::string(76, '0') + "...\" is too large");
    EXPECT_EQ(column, 9);
    EXPECT_EQ(errorOf("x=" + huge + "abc", line, column), "\"1" + std::string(76, '0') + "...\" is not a valid number");
}

TEST(CommandTokenizer, TokensAreSplitOnlyAsFarAsTheyAreRead) {
    // The problem at the end is found only when the reader gets there.
    CommandTokenizer tokenizer("a b &", 1);
    Token token;
    ASSERT_TRUE(tokenizer.next(token));
    EXPECT_EQ(token.value(), "a");
    ASSERT_TRUE(tokenizer.next(token));
    EXPECT_EQ(token.value(), "b");
    EXPECT_FALSE(tokenizer.next(token));
    EXPECT_FALSE(tokenizer.next(token));
    EXPECT_EQ(tokenizer.error().column, 5);
}
