// Every example of the command reference runs and prints exactly what the
// document shows, so the document cannot drift from the program.
#include <gtest/gtest.h>

#include "DocsExamples.h"

namespace {

const char* const kReference = "docs/commands.md";

const docs::Document& reference() {
    static const docs::Document doc = docs::loadDocument(kReference);
    return doc;
}

std::string describe(const docs::Example& example) {
    std::string text = std::string(kReference) + ", example at line " + std::to_string(example.line) + ": distcorr";
    for (const std::string& arg : example.args) text += " " + arg;
    return text + " -e '" + docs::normalized(example.syntax) + "'";
}

class DocsCommandsExample : public ::testing::TestWithParam<docs::Example> {};

TEST_P(DocsCommandsExample, PrintsWhatTheDocumentShows) {
    const docs::Example& example = GetParam();
    const docs::Run run = docs::runExample(example);
    SCOPED_TRACE(describe(example));

    const std::string outDiff = docs::lineDiff(docs::normalized(example.expectedOut), docs::normalized(run.result.out));
    EXPECT_TRUE(outDiff.empty()) << "standard output differs (- document, + distcorr):\n" << outDiff;

    const std::string expectedErr = example.hasErr ? example.expectedErr : "";
    const std::string errDiff = docs::lineDiff(docs::normalized(expectedErr), docs::normalized(run.result.err));
    EXPECT_TRUE(errDiff.empty()) << "standard error differs (- document, + distcorr):\n" << errDiff;

    for (const docs::ExpectedFile& file : example.files) {
        const std::string path = run.folder + "/" + file.name;
        std::ifstream probe(path);
        ASSERT_TRUE(probe.good()) << "the run wrote no file " << file.name << " (document line " << file.line << ")";
        const std::string fileDiff =
            docs::lineDiff(docs::normalized(file.content), docs::normalized(readWholeFile(path)));
        EXPECT_TRUE(fileDiff.empty()) << file.name << " differs (- document line " << file.line << ", + written):\n"
                                      << fileDiff;
    }
}

std::string exampleName(const ::testing::TestParamInfo<docs::Example>& info) {
    return "line_" + std::to_string(info.param.line);
}

INSTANTIATE_TEST_SUITE_P(CommandReference, DocsCommandsExample, ::testing::ValuesIn(reference().examples), exampleName);

TEST(DocsCommands, HasWellFormedExamples) {
    EXPECT_FALSE(reference().examples.empty()) << kReference << " has no runnable examples";
    for (const std::string& problem : reference().problems) ADD_FAILURE() << kReference << ", " << problem;
}

// The reader itself: what it takes from a document.
TEST(DocsCommands, ReaderTakesRunSyntaxOutputErrorAndFiles) {
    const std::string text =
        "Prose.\n"
        "<!-- run: --data 'my data.csv' --lang de -->\n"
        "```sps\nA B.\n```\n"
        "Some words.\n"
        "```text\nout 1\nout 2\n```\n"
        "```text stderr\nerr\n```\n"
        "<!-- file: d.csv -->\n"
        "```csv\na,b\n```\n"
        "```text\nnot part of the example\n```\n"
        "<!-- run: -x -->\n"
        "```sps\nC.\n```\n";
    const docs::Document doc = docs::parseDocument(text);
    ASSERT_EQ(doc.examples.size(), 2u);
    const docs::Example& first = doc.examples[0];
    EXPECT_EQ(first.line, 2);
    EXPECT_EQ(first.args, (std::vector<std::string>{"--data", "my data.csv", "--lang", "de"}));
    EXPECT_EQ(first.syntax, "A B.\n");
    EXPECT_EQ(first.expectedOut, "out 1\nout 2\n");
    EXPECT_TRUE(first.hasErr);
    EXPECT_EQ(first.expectedErr, "err\n");
    ASSERT_EQ(first.files.size(), 1u);
    EXPECT_EQ(first.files[0].name, "d.csv");
    EXPECT_EQ(first.files[0].content, "a,b\n");
    // The second example has no output block: reported.
    ASSERT_EQ(doc.problems.size(), 1u);
    EXPECT_NE(doc.problems[0].find("line 21"), std::string::npos) << doc.problems[0];
}

TEST(DocsCommands, StderrBlockMustFollowTheOutputDirectly) {
    const docs::Document doc = docs::parseDocument(
        "<!-- run: -->\n```sps\nA.\n```\n```text\no\n```\n```csv\nx\n```\n```text stderr\ne\n```\n");
    ASSERT_EQ(doc.examples.size(), 1u);
    EXPECT_FALSE(doc.examples[0].hasErr);
}

TEST(DocsCommands, ComparisonIgnoresOnlyInvisibleLineEnds) {
    EXPECT_EQ(docs::normalized("a  \r\nb\n\n"), "a\nb");
    EXPECT_NE(docs::normalized(" a"), docs::normalized("a"));
    EXPECT_EQ(docs::lineDiff("a\nb\nc", "a\nB\nc"), "  a\n- b\n+ B\n  c\n");
    EXPECT_EQ(docs::lineDiff("a", "a"), "");
}

}  // namespace
