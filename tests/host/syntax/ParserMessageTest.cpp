#include "ParserMessage.h"

#include <sstream>

#include <gtest/gtest.h>

#include "SyntaxTestSupport.h"

namespace {

const std::vector<host::HostMessage>& messages() { return host::HostSession::instance().messages(); }

ParserMessage procedureMessage() {
    ParserMessage m;
    m.SetCommandName("DISTANCE CORRELATION");
    m.SetProcedureTitle("Distance Correlation");
    return m;
}

}  // namespace

TEST(ParserMessage, KeepsCommandNameAndTitle) {
    ParserMessage m = procedureMessage();
    ParserMessage copy(m);
    EXPECT_EQ(copy.GetCommandName(), "DISTANCE CORRELATION");
    EXPECT_EQ(copy.GetProcedureTitle(), "Distance Correlation");
}

TEST(ParserMessage, GenericErrorFillsPlaceholdersInOrder) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    procedureMessage().GenericError("Param required for ^1 subcom when ^2 is enabled", "PRINT", "SAVE");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].level, host::MessageLevel::Error);
    EXPECT_EQ(messages()[0].text, "Param required for PRINT subcom when SAVE is enabled");
}

TEST(ParserMessage, AbsentArgumentLeavesNothing) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    procedureMessage().GenericError("^1 invalid file name param ^2 subcom ^3 ...", "123", nullptr, "PRINT");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text, "123 invalid file name param  subcom PRINT ...");
}

TEST(ParserMessage, TextWithoutPlaceholdersIsPassedAsItIs) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    procedureMessage().GenericError("At least two var names ...");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text, "At least two var names ...");
}

TEST(ParserMessage, FivePlaceholdersAndNoSecondExpansion) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    procedureMessage().GenericError("^5^4^3^2^1 ^6 ^ ^0", "a^2", "b", "c", "d", "e");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text, "edcba^2 ^6 ^ ^0");
}

TEST(ParserMessage, GenericWarningIsAWarning) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    procedureMessage().GenericWarning("Memory is low for ^1 cases ...", "5000");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].level, host::MessageLevel::Warning);
    EXPECT_EQ(messages()[0].text, "Memory is low for 5000 cases ...");
    EXPECT_FALSE(host::HostSession::instance().hasErrors());
}

TEST(ParserMessage, ShownWithTheCommandName) {
    std::ostringstream err;
    host::HostSession& session = host::HostSession::instance();
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    session.setQuiet(false);
    session.setErrorStream(&err);
    procedureMessage().GenericError("Only input varlist are allowed in CONFIGURE ...");
    session.setErrorStream(nullptr);
    session.setQuiet(true);
    EXPECT_EQ(err.str(), "Error: DISTANCE CORRELATION: Only input varlist are allowed in CONFIGURE ...\n");
}

TEST(ParserMessage, NeedDepVarContNamesTheVariableItsLevelAndTheKeyword) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1 grp.");
    procedureMessage().NeedDepVarCont(VelaVarName("grp"), "VARIABLE", nullptr);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].level, host::MessageLevel::Error);
    EXPECT_EQ(messages()[0].text,
              "Variable \"grp\" named on VARIABLE is nominal; a scale (continuous) variable is needed there.");
}

TEST(ParserMessage, NeedDepVarContForAnOrdinalVariable) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1 rank.");
    procedureMessage().NeedDepVarCont(VelaVarName("RANK"), "VARIABLE", nullptr);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text,
              "Variable \"RANK\" named on VARIABLE is ordinal; a scale (continuous) variable is needed there.");
}

TEST(ParserMessage, NeedDepVarContWithoutAKnownLevelAndWithExtraText) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1 zz.");
    procedureMessage().NeedDepVarCont(VelaVarName("zz"), "VARIABLE", "See the dictionary.");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text,
              "Variable \"zz\" named on VARIABLE is not a scale (continuous) variable; a scale variable is needed "
              "there. See the dictionary.");
}

TEST(ParserMessage, ArgumentsAreShownLikeEveryQuotedToken) {
    syntaxtest::beginCommand("DISTANCE CORRELATION VARIABLE=x1.");
    const std::string digits = "1." + std::string(1000, '0');
    procedureMessage().GenericError("^1 invalid file name param ^2 subcom ^3 ...", digits.c_str(), "OUT\x1b[2J",
                                    "PRINT");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text,
              "1." + std::string(75, '0') + "... invalid file name param OUT\\u001B[2J subcom PRINT ...");
}
