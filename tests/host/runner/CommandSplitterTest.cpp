#include "runner/CommandSplitter.h"

#include <gtest/gtest.h>

using host::splitCommands;

TEST(CommandSplitter, PeriodAtLineEndEndsACommand) {
    auto commands = splitCommands("DISTANCE CORRELATION VARIABLE=a b.\nDISTANCE CORRELATION VARIABLE=c d.\n");
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[0].text, "DISTANCE CORRELATION VARIABLE=a b.");
    EXPECT_EQ(commands[0].firstLine, 1);
    EXPECT_EQ(commands[1].text, "DISTANCE CORRELATION VARIABLE=c d.");
    EXPECT_EQ(commands[1].firstLine, 2);
}

TEST(CommandSplitter, PeriodInsideALineDoesNotEndTheCommand) {
    auto commands = splitCommands("X VARIABLE=Solar.R Wind\n  /CRITERIA PERMUTATION(SIGNIFICANCELEVEL=.05).  \n");
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands[0].text, "X VARIABLE=Solar.R Wind\n  /CRITERIA PERMUTATION(SIGNIFICANCELEVEL=.05).");
}

TEST(CommandSplitter, EndOfInputEndsTheLastCommand) {
    auto commands = splitCommands("X VARIABLE=a b");
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands[0].text, "X VARIABLE=a b");
}

TEST(CommandSplitter, PeriodInsideQuotesDoesNotCount) {
    auto quoted = splitCommands("X OUTFILE=\"a.\" b.\n");
    ASSERT_EQ(quoted.size(), 1u);
    EXPECT_EQ(quoted[0].text, "X OUTFILE=\"a.\" b.");

    // A string never spans lines: an unterminated one ends at the line end
    // (the parser reports it), and the command goes on to the next period.
    auto open = splitCommands("X OUTFILE='a.\nY.\nZ.");
    ASSERT_EQ(open.size(), 2u);
    EXPECT_EQ(open[0].text, "X OUTFILE='a.\nY.");
    EXPECT_EQ(open[1].text, "Z.");
    EXPECT_EQ(open[1].firstLine, 3);
}

TEST(CommandSplitter, BlankLinesAreSkippedAndLinesCounted) {
    auto commands = splitCommands("\n\n   \nX a.\n\n\nY b\n  c.\n");
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[0].firstLine, 4);
    EXPECT_EQ(commands[0].text, "X a.");
    EXPECT_EQ(commands[1].firstLine, 7);
    EXPECT_EQ(commands[1].text, "Y b\n  c.");
}

TEST(CommandSplitter, CrlfLineEndsWork) {
    auto commands = splitCommands("X a.\r\nY b.\r\n");
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[0].text, "X a.");
    EXPECT_EQ(commands[1].text, "Y b.");
    EXPECT_EQ(commands[1].firstLine, 2);
}

TEST(CommandSplitter, EmptyInputHasNoCommands) {
    EXPECT_TRUE(splitCommands("").empty());
    EXPECT_TRUE(splitCommands(" \n\t\n").empty());
}

TEST(CommandSplitter, CommentsAreDropped) {
    auto commands = splitCommands("* A comment line.\nCOMMENT another one.\ncomment lower case.\nX a.\n");
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands[0].text, "X a.");
    EXPECT_EQ(commands[0].firstLine, 4);
}

TEST(CommandSplitter, IndentOfTheFirstLineIsKeptForColumns) {
    auto commands = splitCommands("\n   X a.\n");
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands[0].text, "   X a.");
    EXPECT_EQ(commands[0].firstLine, 2);
}

TEST(CommandSplitter, IndentedCommentIsDropped) {
    auto commands = splitCommands("  * indented comment.\n  comment too.\nX a.\n");
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands[0].text, "X a.");
}

TEST(CommandSplitter, AByteOrderMarkAtTheStartIsNotText) {
    auto commands = splitCommands("\xEF\xBB\xBFX a.\nY b.\n");
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[0].text, "X a.");
    EXPECT_EQ(commands[0].firstLine, 1);
    // Only at the start: elsewhere it is a character like any other.
    auto inside = splitCommands(
        "X \xEF\xBB\xBF"
        "a.");
    ASSERT_EQ(inside.size(), 1u);
    EXPECT_EQ(inside[0].text,
              "X \xEF\xBB\xBF"
              "a.");
}

TEST(CommandSplitter, ALoneCarriageReturnEndsALine) {
    auto commands = splitCommands("X a.\rY b\r  c.\r\rZ 'q.\rW.");
    ASSERT_EQ(commands.size(), 3u);
    EXPECT_EQ(commands[0].text, "X a.");
    EXPECT_EQ(commands[1].text, "Y b\r  c.");
    EXPECT_EQ(commands[1].firstLine, 2);
    // The string is not closed on its line; the period on the next line ends the command.
    EXPECT_EQ(commands[2].text, "Z 'q.\rW.");
    EXPECT_EQ(commands[2].firstLine, 5);
}

TEST(CommandSplitter, CommandsAreSplitOneAtATime) {
    const std::string syntax = "* note.\n  X a.\nY b";
    host::CommandSplitter splitter(syntax);
    host::SyntaxCommand command;
    ASSERT_TRUE(splitter.next(command));
    EXPECT_EQ(command.text, "  X a.");
    EXPECT_EQ(command.firstLine, 2);
    ASSERT_TRUE(splitter.next(command));
    EXPECT_EQ(command.text, "Y b");
    EXPECT_EQ(command.firstLine, 3);
    EXPECT_FALSE(splitter.next(command));
    EXPECT_FALSE(splitter.next(command));
}
