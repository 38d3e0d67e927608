#include "VELA_TokenSequence.h"

#include <gtest/gtest.h>

#include "SyntaxTestSupport.h"
#include "syntax/SyntaxError.h"
#include "syntax/VELA_TokenSequenceImpl.h"

using host::syntax::TokenKind;

TEST(VELA_TokenSequence, ReadsTheSessionsCurrentCommand) {
    syntaxtest::beginCommand("DISTANCE CORRELATION\n  VARIABLE=x1 x2.", syntaxtest::standardData(), "job.sps", 4);
    VELA_TokenSequence tokens(true);
    auto& stream = *tokens.impl().tokens;
    EXPECT_EQ(tokens.impl().sourceName, "job.sps");
    EXPECT_EQ(stream.peek().value(), "DISTANCE");
    EXPECT_EQ(stream.peek().line, 4);
    EXPECT_EQ(stream.peek(2).value(), "VARIABLE");
    EXPECT_EQ(stream.peek(2).line, 5);
    EXPECT_EQ(stream.peek(2).column, 3);
    EXPECT_EQ(stream.peek(6).kind, TokenKind::End);
    for (int i = 0; i < 6; ++i) EXPECT_NE(stream.take().kind, TokenKind::End) << i;
    EXPECT_EQ(stream.take().kind, TokenKind::End);
    EXPECT_EQ(stream.take().kind, TokenKind::End);  // the End stays
}

TEST(VELA_TokenSequence, ATokenizingProblemIsThrownWhenItIsReached) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE='x1.", syntaxtest::standardData(), "job.sps", 2);
    VELA_TokenSequence tokens(true);
    auto& stream = *tokens.impl().tokens;
    EXPECT_EQ(stream.peek(4).kind, TokenKind::Invalid);  // looking ahead does not throw
    for (int i = 0; i < 4; ++i) stream.take();
    try {
        stream.peek();
        FAIL() << "no error";
    } catch (const host::syntax::SyntaxError& error) {
        EXPECT_EQ(error.format("job.sps"),
                  "Quoted string is not closed before the end of the line (job.sps, line 2, column 31).");
    }
}

TEST(VELA_TokenSequence, RewindStartsAgainFromTheFirstToken) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2.");
    VELA_TokenSequence tokens(true);
    auto& stream = *tokens.impl().tokens;
    stream.take();
    stream.take();
    stream.rewind();
    EXPECT_EQ(stream.peek().value(), "DISTANCE");
}

TEST(VELA_TokenSequence, WithoutTheCurrentCommandItIsEmpty) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2.");
    VELA_TokenSequence tokens(false);
    EXPECT_EQ(tokens.impl().tokens->peek().kind, TokenKind::End);
}
