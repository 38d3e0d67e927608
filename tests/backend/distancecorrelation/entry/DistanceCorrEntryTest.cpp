// The run sequence of the entry: stage order, the three step lines on standard
// error, and that nothing escapes discorr_.
#include "DistanceCorrEntry.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include <gtest/gtest.h>

#include "DistcorrRunner.h"
#include "HostSession.h"
#include "data/CsvDataLoader.h"

namespace {

class EntryRun : public ::testing::Test {
protected:
    void SetUp() override {
        host::HostSession::instance().setQuiet(true);
        host::HostSession::instance().setActiveDataSet(host::loadCsvDataSet(fixture("e2e/small.csv"), ""));
    }
    void TearDown() override {
        host::HostSession::instance().setErrorStream(&std::cerr);
        host::HostSession::instance().setQuiet(false);
    }

    // Runs one command through the C entry; returns what it wrote to std::cerr.
    std::string run(const std::string& command) {
        host::HostSession::instance().beginCommand({command, "test", 1});
        std::ostringstream captured;
        std::streambuf* old = std::cerr.rdbuf(captured.rdbuf());
        discorr_(nullptr);
        std::cerr.rdbuf(old);
        return captured.str();
    }

    static std::vector<std::string> messageTexts() {
        std::vector<std::string> texts;
        for (const auto& m : host::HostSession::instance().messages()) texts.push_back(m.text);
        return texts;
    }
    static bool hasOutput() { return host::HostSession::instance().outputDocument() != nullptr; }
};

}  // namespace

TEST_F(EntryRun, SyntaxErrorStopsAfterParsingWithoutStepLines) {
    const std::string err = run("DISTANCE CORRELATION VARIABLE=x y /PRINT NOSUCHKEYWORD.");
    EXPECT_EQ(err, "");
    EXPECT_EQ(messageTexts().size(), 1u);  // the host parser's one error
    EXPECT_FALSE(hasOutput());
}

TEST_F(EntryRun, InputStageFailureWritesNoStepLine) {
    const std::string err = run("DISTANCE CORRELATION VARIABLE=x.");
    EXPECT_EQ(err, "");
    EXPECT_EQ(messageTexts(), std::vector<std::string>{"At least two var names ..."});
    EXPECT_FALSE(hasOutput());
}

TEST_F(EntryRun, ComputationFailureWritesExactlyTheStep4Line) {
    // CILEVEL=100 asks for the normal quantile at probability 1, which overflows.
    const std::string err = run("DISTANCE CORRELATION VARIABLE=x y /CRITERIA CILEVEL=100 /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(err, "distancecorr_entry: Step4 Unknown error occurred.\n");
    EXPECT_FALSE(hasOutput());
}

TEST_F(EntryRun, SuccessfulRunWritesNoStepLineAndHandsOverOutput) {
    const std::string err = run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF.");
    EXPECT_EQ(err, "");
    EXPECT_TRUE(messageTexts().empty());
    EXPECT_TRUE(hasOutput());
}

TEST_F(EntryRun, SaveFailureKeepsTheTablesAndAddsTheStep6Line) {
    // The file name is usable, but its dictionary's name is taken by a folder,
    // so the host cannot write the file.
    const std::string folder = makeTempDir();
    std::filesystem::create_directory(folder + "/dist.schema.json");
    const std::string err = run("DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF DISTMATRIX(CONFIGURE=[x] SAVE=TRUE OUTFILE='" +
                                folder + "/dist.csv').");
    EXPECT_EQ(err, "distancecorr_entry: Step6 Unknown error occurred.\n");
    ASSERT_TRUE(hasOutput());
    const auto& items = (*host::HostSession::instance().outputDocument())["items"];
    ASSERT_TRUE(items.IsArray());
    EXPECT_GE(items.Size(), 1u);
}

TEST_F(EntryRun, NoExceptionEscapesDiscorr) {
    // 120 cases make the matrix table print the "Performance improvement ..."
    // warning; a message stream that throws on write makes that warning raise
    // an exception inside the output stage, which must not leave discorr_.
    const std::string csv = makeTempDir() + "/big.csv";
    {
        std::ofstream out(csv);
        out << "a,b\n";
        for (int i = 0; i < 120; ++i) out << i << ',' << (i * 7) % 13 << '\n';
    }
    host::HostSession::instance().setActiveDataSet(host::loadCsvDataSet(csv, ""));
    host::HostSession::instance().setQuiet(false);
    struct FailingBuffer : std::streambuf {
        int overflow(int) override { return traits_type::eof(); }
    } failing;
    std::ostream throwing(&failing);
    throwing.exceptions(std::ios::badbit);
    host::HostSession::instance().setErrorStream(&throwing);
    EXPECT_NO_THROW(run("DISTANCE CORRELATION VARIABLE=a b /PRINT DISTMATRIX(CONFIGURE=[a])."));
    // The exception stopped the run before the output was handed over.
    EXPECT_FALSE(hasOutput());
}
