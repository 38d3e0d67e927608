#include "VELA_TokenSequence.h"

#include <gtest/gtest.h>

#include "SyntaxTestSupport.h"
#include "syntax/VELA_TokenSequenceImpl.h"

using host::syntax::TokenKind;

TEST(VELA_TokenSequence, ReadsTheSessionsCurrentCommand) {
    syntaxtest::beginCommand("DISTANCE CORRELATION\n  VARIABLE=x1 x2.", syntaxtest::standardData(), "job.sps", 4);
    VELA_TokenSequence tokens(true);
    const auto& impl = tokens.impl();
    ASSERT_FALSE(impl.error.has_value());
    EXPECT_EQ(impl.sourceName, "job.sps");
    ASSERT_EQ(impl.tokens.size(), 7u);
    EXPECT_EQ(impl.tokens[0].value, "DISTANCE");
    EXPECT_EQ(impl.tokens[0].line, 4);
    EXPECT_EQ(impl.tokens[2].value, "VARIABLE");
    EXPECT_EQ(impl.tokens[2].line, 5);
    EXPECT_EQ(impl.tokens[2].column, 3);
    EXPECT_EQ(impl.tokens[6].kind, TokenKind::End);
}

TEST(VELA_TokenSequence, KeepsATokenizingProblemForTheParser) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE='x1.", syntaxtest::standardData(), "job.sps", 2);
    VELA_TokenSequence tokens(true);
    ASSERT_TRUE(tokens.impl().error.has_value());
    EXPECT_EQ(tokens.impl().error->format("job.sps"),
              "Quoted string is not closed before the end of the line (job.sps, line 2, column 31).");
}

TEST(VELA_TokenSequence, WithoutTheCurrentCommandItIsEmpty) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1 x2.");
    VELA_TokenSequence tokens(false);
    ASSERT_EQ(tokens.impl().tokens.size(), 1u);
    EXPECT_EQ(tokens.impl().tokens[0].kind, TokenKind::End);
}
