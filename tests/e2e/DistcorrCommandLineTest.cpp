// The distcorr command line as users of other tools expect it: --version,
// repeatable -e, "-" for standard output, syntax piped in, output paths and
// syntax sources checked before anything runs, --lang and --threads checked.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>

#include "DistcorrRunner.h"
#include "Sanitizers.h"
#include "Version.h"

namespace {

const std::string kSmall = fixture("e2e/small.csv");
const std::string kCoefficients = "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF.";
const std::string kProbes = std::string(DC_BINARY_DIR) + "/tests/probe";

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(DistcorrCommandLine, VersionPrintsTheRelease) {
    const DistcorrResult r = runDistcorr({"--version"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, "distcorr " + std::string(host::version()) + "\n");
}

TEST(DistcorrCommandLine, RepeatedExecuteRunsEveryTextInOrder) {
    const std::string out = makeTempDir() + "/out.json";
    const DistcorrResult r =
        runDistcorr({"--quiet", "--data", kSmall, "--output", out, "-e", "DISTANCE CORRELATION VARIABLE=x y.", "-e",
                     "DISTANCE CORRELATION VARIABLE=x id.", "-e", "DISTANCE CORRELATION VARIABLE=y id."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    const rapidjson::Document doc = parseJsonFile(out);
    ASSERT_TRUE(doc.IsObject());
    ASSERT_EQ(doc["runs"].Size(), 3u);
    EXPECT_EQ(std::string(doc["runs"][0]["command"].GetString()), "DISTANCE CORRELATION VARIABLE=x y.");
    EXPECT_EQ(std::string(doc["runs"][1]["command"].GetString()), "DISTANCE CORRELATION VARIABLE=x id.");
    EXPECT_EQ(std::string(doc["runs"][2]["command"].GetString()), "DISTANCE CORRELATION VARIABLE=y id.");
}

TEST(DistcorrCommandLine, MessagesNameWhichExecuteTextTheyCameFrom) {
    const DistcorrResult r =
        runDistcorr({"--quiet", "--data", kSmall, "-e", "DISTANCE CORRELATION VARIABLE=x y.", "-e", "FREQUENCIES x."});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: Unknown command \"FREQUENCIES\" (command line -e 2, line 1).\n");
}

TEST(DistcorrCommandLine, SyntaxPipedInIsRunWithoutADash) {
    const DistcorrResult r = runDistcorr({"--data", kSmall}, kCoefficients + "\n");
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "Distance Correlation Coefficients")) << r.out;
    EXPECT_TRUE(contains(r.out, "0.5817")) << r.out;
}

TEST(DistcorrCommandLine, NoSyntaxOnATerminalIsAUsageErrorWithAHint) {
    const DistcorrResult r = runDistcorrOnTerminal({"--data", kSmall});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(contains(r.out, "Error: no commands were given.")) << r.out;
    EXPECT_TRUE(contains(r.out, "distcorr --data FILE < job.sps")) << r.out;
}

TEST(DistcorrCommandLine, EmptyExecuteTextListsTheDictionary) {
    const DistcorrResult r = runDistcorr({"--data", kSmall, "-e", ""});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "5 cases, 6 variables")) << r.out;
}

TEST(DistcorrCommandLine, OutputDashWritesTheDocumentToStandardOutputWithoutTables) {
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--output", "-", "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    rapidjson::Document doc;
    doc.Parse(r.out.c_str());
    ASSERT_FALSE(doc.HasParseError()) << r.out.substr(0, 200);
    ASSERT_EQ(doc["runs"].Size(), 1u);
    EXPECT_TRUE(doc["runs"][0].HasMember("output"));
    EXPECT_FALSE(contains(r.out, "=====")) << "the text tables are not printed";
    EXPECT_FALSE(std::ifstream("-").good()) << "no file named -";
}

// A document larger than the 64 KiB write block of standard output (a scatter
// plot of 150 cases) comes out there byte for byte as in a file.
TEST(DistcorrCommandLine, LargeDocumentOnStandardOutputEqualsTheFile) {
    const std::string data = std::string(DC_SOURCE_DIR) + "/tests/e2e/golden/data/ids150.csv";
    const std::string command = "DISTANCE CORRELATION VARIABLE=a b /PLOT SCATTERPLOT(XAXIS=a YAXIS=b).";
    const std::string file = makeTempDir() + "/out.json";
    const DistcorrResult toFile = runDistcorr({"--quiet", "--data", data, "--output", file, "-e", command});
    ASSERT_EQ(toFile.exitCode, 0) << toFile.err;
    const DistcorrResult toStdout = runDistcorr({"--data", data, "--output", "-", "-e", command});
    ASSERT_EQ(toStdout.exitCode, 0) << toStdout.err;
    const std::string expected = readWholeFile(file);
    EXPECT_GT(expected.size(), std::size_t{1} << 16);
    EXPECT_TRUE(toStdout.out == expected) << toStdout.out.size() << " bytes against " << expected.size();
}

TEST(DistcorrCommandLine, HtmlDashWritesTheReportToStandardOutput) {
    const std::string out = makeTempDir() + "/out.json";
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--html", "-", "--output", out, "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out.rfind("<!DOCTYPE html>", 0), 0u) << r.out.substr(0, 100);
    EXPECT_TRUE(contains(r.out, "Distance Correlation Coefficients"));
    EXPECT_TRUE(parseJsonFile(out).IsObject());
}

TEST(DistcorrCommandLine, TwoReportsOnStandardOutputIsAUsageError) {
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--output", "-", "--html", "-", "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: --output and --html cannot both write to standard output (-)\n");
    EXPECT_EQ(r.out, "");
}

// A command that would write a file, to show that nothing ran.
std::string savingCommand(const std::string& dir) {
    return "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[x] SAVE=TRUE OUTFILE='" + dir +
           "/saved.csv').";
}

TEST(DistcorrCommandLine, OutputInAMissingFolderIsAUsageErrorBeforeAnythingRuns) {
    const std::string dir = makeTempDir();
    const DistcorrResult r =
        runDistcorr({"--data", kSmall, "--output", dir + "/none/x.json", "-e", savingCommand(dir)});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: --output \"" + dir + "/none/x.json\": cannot create a file in the folder \"" + dir +
                         "/none\": No such file or directory\n");
    EXPECT_EQ(r.out, "");
    EXPECT_FALSE(std::ifstream(dir + "/saved.csv").good()) << "the command must not have run";
}

TEST(DistcorrCommandLine, HtmlInAFolderWhereNothingCanBeCreatedIsAUsageError) {
    const DistcorrResult r =
        runDistcorr({"--data", kSmall, "--html", "/proc/distcorr-report.html", "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 2);
    const std::string prefix =
        "Error: --html \"/proc/distcorr-report.html\": cannot create a file in the folder \"/proc\": ";
    EXPECT_EQ(r.err.substr(0, prefix.size()), prefix) << r.err;
    EXPECT_GT(r.err.size(), prefix.size() + 2) << "the system's reason follows";
}

TEST(DistcorrCommandLine, OutputThatIsAFolderIsAUsageError) {
    const std::string dir = makeTempDir();
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--output", dir, "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: --output \"" + dir + "\": it is a folder\n");
}

TEST(DistcorrCommandLine, SameFileForBothReportsIsAUsageError) {
    const std::string dir = makeTempDir();
    const DistcorrResult r =
        runDistcorr({"--data", kSmall, "--output", dir + "/r", "--html", dir + "/./r", "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(contains(r.err, "--output and --html name the same file")) << r.err;
}

TEST(DistcorrCommandLine, UnknownLanguageIsAUsageErrorThatListsTheLanguages) {
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--lang", "../..", "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: --lang ../..: there is no such language; available: en, de\n");
    EXPECT_EQ(runDistcorr({"--data", kSmall, "--lang", "xx", "-e", kCoefficients}).exitCode, 2);
}

TEST(DistcorrCommandLine, KnownLanguagesAreAccepted) {
    const DistcorrResult english = runDistcorr({"--data", kSmall, "--lang", "en", "-e", kCoefficients});
    EXPECT_EQ(english.exitCode, 0) << english.err;
    EXPECT_TRUE(contains(english.out, "Distance Correlation Coefficients"));
    const DistcorrResult german = runDistcorr({"--data", kSmall, "--lang", "de", "-e", kCoefficients});
    EXPECT_EQ(german.exitCode, 0) << german.err;
    EXPECT_FALSE(contains(german.out, "Distance Correlation Coefficients")) << "labels are translated";
}

TEST(DistcorrCommandLine, SyntaxFileThatIsAFolderIsAUsageError) {
    const DistcorrResult r = runDistcorr({"--data", kSmall, "/tmp"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: cannot read the syntax from \"/tmp\": it is a folder\n");
}

TEST(DistcorrCommandLine, StandardInputThatIsAFolderIsAUsageError) {
    const DistcorrResult r = runDistcorrChild({"--data", kSmall, "-"}, DistcorrChild{"", "/tmp", -1, {}});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: cannot read the syntax from standard input: it is a folder\n");
}

TEST(DistcorrCommandLine, EndlessSyntaxUnderAMemoryLimitIsAUsageError) {
#ifdef DC_ADDRESS_SANITIZER
    GTEST_SKIP() << "AddressSanitizer reserves more address space than the limit leaves";
#endif
    DistcorrChild child;
    child.beforeExec = [] {
        struct rlimit limit {};
        limit.rlim_cur = limit.rlim_max = 200u << 20;  // 200 MiB of address space
        ::setrlimit(RLIMIT_AS, &limit);
    };
    const DistcorrResult r = runDistcorrChild({"--data", kSmall, "/dev/zero"}, child);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: cannot read the syntax from \"/dev/zero\": there is not enough memory to hold it\n");
}

TEST(DistcorrCommandLine, ThreadsSetsTheWorkersOfTheHostPool) {
    const DistcorrResult r =
        runDistcorr({"--data", kSmall, "--procedures", kProbes, "--threads", "3", "-e", "PROBE POOL 500."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "Note: PROBE: worker pool of 3 workers ran 500 of 500 tasks once on 3 threads\n");
}

TEST(DistcorrCommandLine, OneThreadOffersNoPool) {
    const DistcorrResult r =
        runDistcorr({"--data", kSmall, "--procedures", kProbes, "--threads", "1", "-e", "PROBE POOL 5."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "Note: PROBE: no worker pool\n");
}

TEST(DistcorrCommandLine, ThreadsDefaultToTheProcessorsThisProcessMayUse) {
    cpu_set_t set;
    CPU_ZERO(&set);
    ASSERT_EQ(sched_getaffinity(0, sizeof set, &set), 0);
    const int processors = CPU_COUNT(&set);
    const DistcorrResult r = runDistcorr({"--data", kSmall, "--procedures", kProbes, "-e", "PROBE POOL 200."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    if (processors == 1)
        EXPECT_EQ(r.err, "Note: PROBE: no worker pool\n");
    else
        EXPECT_TRUE(contains(r.err, "worker pool of " + std::to_string(processors) + " workers ran 200 of 200"))
            << r.err;
}

TEST(DistcorrCommandLine, ThreadsOutOfRangeIsAUsageError) {
    for (const char* n : {"0", "-2", "100000", "many"})
        EXPECT_EQ(runDistcorr({"--data", kSmall, "--threads", n, "-e", kCoefficients}).exitCode, 2) << n;
}

TEST(DistcorrCommandLine, DataFromStandardInputNeedsCommandsFromElsewhere) {
    const std::string csv = readWholeFile(kSmall);
    const DistcorrResult both = runDistcorr({"--data", "-", "-"}, csv);
    EXPECT_EQ(both.exitCode, 2);
    EXPECT_EQ(both.err, "Error: standard input cannot hold both the data (--data -) and the commands (-)\n");
    const DistcorrResult none = runDistcorr({"--data", "-"}, csv);
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_TRUE(contains(none.err, "the data comes from standard input (--data -)")) << none.err;
    const DistcorrResult good = runDistcorr({"--data", "-", "-e", kCoefficients}, csv);
    EXPECT_EQ(good.exitCode, 0) << good.err;
    EXPECT_TRUE(contains(good.out, "0.5817")) << good.out;
}

TEST(DistcorrCommandLine, DataFileRedirectedToStandardInputIsStillProtected) {
    const std::string dir = makeTempDir();
    const std::string data = dir + "/v.csv";
    const std::string csv = readWholeFile(kSmall);
    std::ofstream(data, std::ios::binary) << csv;
    const DistcorrResult r = runDistcorrChild(
        {"--data", "-", "-e",
         "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[x] SAVE=TRUE OUTFILE='" + data + "')."},
        DistcorrChild{"", data, -1, {}});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(contains(r.err, "it is the same file as the active data set's data file")) << r.err;
    EXPECT_EQ(readWholeFile(data), csv);
}

}  // namespace
