// No file is ever lost: --output and --html are written to a temporary file
// and renamed into place, never onto an input, and a full disk, a closed
// pipe, a signal or a concurrent run leaves every existing file intact.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "DistcorrRunner.h"
#include "GoldenCheck.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kTwelve = golden::dataFile("twelve.csv");
const std::string kFullCommand = "DISTANCE CORRELATION VARIABLE=a b c /PRINT DISTCORRCOEFF DETAILS DISTVAR CORREST.";
const std::string kOldReport = "{\"runs\": [\"the report of an earlier run\"]}\n";

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

bool hasTemporaryFile(const std::string& dir) {
    for (const std::string& name : folderEntries(dir))
        if (contains(name, ".tmp-")) return true;
    return false;
}

void writeText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// A copy of the small data set and its dictionary in a fresh folder.
struct DataCopy {
    std::string dir = makeTempDir();
    std::string data = dir + "/study.csv";
    std::string schema = dir + "/study.schema.json";
    std::string dataText = readWholeFile(fixture("e2e/small.csv"));
    std::string schemaText = readWholeFile(fixture("e2e/small.schema.json"));
    DataCopy() {
        writeText(data, dataText);
        writeText(schema, schemaText);
    }
    void expectUntouched() const {
        EXPECT_EQ(readWholeFile(data), dataText);
        EXPECT_EQ(readWholeFile(schema), schemaText);
    }
};

const std::string kCoefficients = "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF.";

TEST(DistcorrOutputSafety, OutputOntoTheDataFileIsRefusedBeforeAnythingRuns) {
    const DataCopy copy;
    const DistcorrResult r = runDistcorr({"--data", copy.data, "--output", copy.data, "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "Error: --output \"" + copy.data +
                         "\": it is the same file as the active data set's data file \"" + copy.data +
                         "\"; an output never replaces an input\n");
    EXPECT_EQ(r.out, "");
    copy.expectUntouched();
}

TEST(DistcorrOutputSafety, HtmlOntoTheDictionaryIsRefused) {
    const DataCopy copy;
    const DistcorrResult r = runDistcorr({"--data", copy.data, "--html", copy.schema, "-e", kCoefficients});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(contains(r.err, "it is the same file as the active data set's dictionary")) << r.err;
    copy.expectUntouched();
}

TEST(DistcorrOutputSafety, AnotherNameForTheDataFileIsRecognised) {
    const DataCopy copy;
    const std::string link = copy.dir + "/link.json";
    const std::string hard = copy.dir + "/hard.json";
    ASSERT_EQ(::symlink(copy.data.c_str(), link.c_str()), 0);
    ASSERT_EQ(::link(copy.data.c_str(), hard.c_str()), 0);
    for (const std::string& target : {link, hard, copy.dir + "/../" + copy.dir.substr(5) + "/study.csv"}) {
        const DistcorrResult r = runDistcorr({"--data", copy.data, "--output", target, "-e", kCoefficients});
        EXPECT_EQ(r.exitCode, 2) << target;
        EXPECT_TRUE(contains(r.err, "an output never replaces an input")) << r.err;
    }
    copy.expectUntouched();
}

TEST(DistcorrOutputSafety, OutputOntoTheSyntaxFileIsRefused) {
    const DataCopy copy;
    const std::string syntax = copy.dir + "/job.sps";
    writeText(syntax, kCoefficients + "\n");
    const DistcorrResult r = runDistcorr({"--data", copy.data, syntax, "--output", syntax});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(contains(r.err, "it is the same file as the syntax file")) << r.err;
    EXPECT_EQ(readWholeFile(syntax), kCoefficients + "\n");
}

TEST(DistcorrOutputSafety, ReportThroughALinkReplacesTheFileNotTheLink) {
    const std::string dir = makeTempDir();
    writeText(dir + "/real.json", kOldReport);
    ASSERT_EQ(::symlink("real.json", (dir + "/link.json").c_str()), 0);
    const DistcorrResult r =
        runDistcorr({"--quiet", "--data", kTwelve, "--output", dir + "/link.json", "-e", kFullCommand});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    struct stat info {};
    ASSERT_EQ(::lstat((dir + "/link.json").c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    EXPECT_TRUE(parseJsonFile(dir + "/real.json").IsObject());
}

TEST(DistcorrOutputSafety, ReportIntoADeviceIsWrittenInPlace) {
    const DistcorrResult r = runDistcorr({"--quiet", "--data", kTwelve, "--output", "/dev/null", "-e", kFullCommand});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    struct stat info {};
    ASSERT_EQ(::stat("/dev/null", &info), 0);
    EXPECT_TRUE(S_ISCHR(info.st_mode)) << "/dev/null is still the device";
}

TEST(DistcorrOutputSafety, DevStdoutReachesTheRedirectedFile) {
    const std::string dir = makeTempDir();
    DistcorrChild child;
    child.stdoutFd = ::open((dir + "/captured.json").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    ASSERT_GE(child.stdoutFd, 0);
    const DistcorrResult r =
        runDistcorrChild({"--quiet", "--data", kTwelve, "--output", "/dev/stdout", "-e", kFullCommand}, child);
    ::close(child.stdoutFd);
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(parseJsonFile(dir + "/captured.json").IsObject());
    struct stat info {};
    ASSERT_EQ(::lstat("/dev/stdout", &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode)) << "/dev/stdout is still the link";
}

// Runs with files limited to `bytes` (the limit a full disk sets in effect).
DistcorrResult runWithFileSizeLimit(const std::vector<std::string>& args, rlim_t bytes) {
    DistcorrChild child;
    child.beforeExec = [bytes] {
        struct rlimit limit {};
        limit.rlim_cur = limit.rlim_max = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    };
    return runDistcorrChild(args, child);
}

TEST(DistcorrOutputSafety, FullDiskKeepsTheExistingReportsAndGivesTheReason) {
    const std::string dir = makeTempDir();
    const std::string json = dir + "/report.json";
    const std::string html = dir + "/report.html";
    writeText(json, kOldReport);
    writeText(html, "<p>old</p>\n");
    const DistcorrResult r = runWithFileSizeLimit(
        {"--quiet", "--data", kTwelve, "--output", json, "--html", html, "-e", kFullCommand}, 2048);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: the output document was not written: cannot write \"" + json +
                         "\": File too large.\nError: the HTML report was not written: cannot write \"" + html +
                         "\": File too large.\n");
    EXPECT_EQ(readWholeFile(json), kOldReport);
    EXPECT_EQ(readWholeFile(html), "<p>old</p>\n");
    EXPECT_EQ(folderEntries(dir), (Strings{"report.html", "report.json"}));
}

TEST(DistcorrOutputSafety, ClosedStandardOutputIsReportedOnceAndTheFilesAreStillWritten) {
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    ::close(fds[0]);  // nobody reads: every write fails with EPIPE (and SIGPIPE)
    const std::string dir = makeTempDir();
    DistcorrChild child;
    child.stdoutFd = fds[1];
    const DistcorrResult r = runDistcorrChild({"--data", kTwelve, "--output", dir + "/out.json", "--html",
                                               dir + "/out.html", "-e", kFullCommand, "-e", kFullCommand},
                                              child);
    ::close(fds[1]);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "Error: cannot write to standard output: Broken pipe\n");
    const rapidjson::Document doc = parseJsonFile(dir + "/out.json");
    ASSERT_TRUE(doc.IsObject());
    EXPECT_EQ(doc["runs"].Size(), 2u);
    EXPECT_TRUE(contains(readWholeFile(dir + "/out.html"), "</html>"));
}

TEST(DistcorrOutputSafety, StandardOutputOnAFullDeviceIsAnError) {
    DistcorrChild child;
    child.stdoutFd = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(child.stdoutFd, 0);
    const DistcorrResult tables = runDistcorrChild({"--data", kTwelve, "-e", kFullCommand}, child);
    EXPECT_EQ(tables.exitCode, 1);
    EXPECT_EQ(tables.err, "Error: cannot write to standard output: No space left on device\n");
    const DistcorrResult document = runDistcorrChild({"--data", kTwelve, "--output", "-", "-e", kFullCommand}, child);
    EXPECT_EQ(document.exitCode, 1);
    EXPECT_EQ(document.err, "Error: cannot write to standard output: No space left on device\n");
    ::close(child.stdoutFd);
}

// ---- Signals ----

// A data set whose distance file takes a moment to write: `cases` integers.
std::string integerData(const std::string& dir, int cases) {
    std::string csv = "a,b\n";
    for (int i = 0; i < cases; ++i) csv += std::to_string(i * 37 % 1009) + "," + std::to_string(i % 17) + "\n";
    const std::string path = dir + "/cases.csv";
    writeText(path, csv);
    return path;
}

// Starts distcorr writing into `dir`, stops it while a temporary file of
// that folder exists, sends `signalNumber` and lets it go on. Returns false
// when the run ended before a temporary file was seen.
bool interruptWhileWriting(const std::vector<std::string>& args, const std::string& dir, int signalNumber,
                           DistcorrResult& result) {
    const DistcorrProcess p = startDistcorr(args);
    bool caught = false;
    for (int i = 0; i < 20000 && !caught; ++i) {
        if (hasTemporaryFile(dir)) {
            ::kill(p.pid, SIGSTOP);
            caught = hasTemporaryFile(dir);  // still writing once stopped
            if (caught) ::kill(p.pid, signalNumber);
            ::kill(p.pid, SIGCONT);
        } else {
            int status = 0;
            if (::waitpid(p.pid, &status, WNOHANG) == p.pid) {
                result.exitCode = exitCodeOf(status);
                return false;
            }
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
    }
    result = waitDistcorr(p);
    return caught;
}

TEST(DistcorrOutputSafety, ConcurrentRunsOnOneOutputLeaveACompleteDocument) {
    // Two different documents of about 2.5 MB each (charts of 319,600 points),
    // written by eight runs at once.
    const std::string dir = makeTempDir();
    const std::string data = integerData(dir, 800);
    const std::vector<std::string> commands = {
        "DISTANCE CORRELATION VARIABLE=a b /PLOT SCATTERPLOT(XAXIS=a YAXIS=b).",
        "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTVAR /PLOT SCATTERPLOT(XAXIS=b YAXIS=a)."};
    const std::string out = dir + "/out.json";
    for (int round = 0; round < 3; ++round) {
        std::vector<DistcorrProcess> runs;
        for (std::size_t i = 0; i < 8; ++i)
            runs.push_back(startDistcorr({"--quiet", "--data", data, "--output", out, "-e", commands[i % 2]}));
        for (const DistcorrProcess& p : runs) EXPECT_EQ(waitDistcorr(p).exitCode, 0);
        const rapidjson::Document doc = parseJsonFile(out);
        ASSERT_TRUE(doc.IsObject()) << "round " << round;
        ASSERT_EQ(doc["runs"].Size(), 1u);
        const std::string command = doc["runs"][0]["command"].GetString();
        EXPECT_TRUE(command == commands[0] || command == commands[1]) << command;
    }
    EXPECT_EQ(folderEntries(dir), (Strings{"cases.csv", "out.json"}));
}

void expectSignalRemovesTemporaryFiles(int signalNumber) {
    const std::string dir = makeTempDir();
    const std::string data = integerData(dir, 1500);
    writeText(dir + "/dist.csv", "VarName_,P1\r\nkept,1\r\n");
    const std::vector<std::string> args = {
        "--quiet", "--data", data, "-e",
        "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTMATRIX(CONFIGURE=[a] SAVE=TRUE OUTFILE='" + dir + "/dist.csv')."};
    DistcorrResult r;
    bool caught = false;
    for (int attempt = 0; attempt < 5 && !caught; ++attempt) caught = interruptWhileWriting(args, dir, signalNumber, r);
    ASSERT_TRUE(caught) << "the distance file was never seen being written";
    EXPECT_EQ(r.exitCode, 128 + signalNumber);
    EXPECT_EQ(folderEntries(dir), (Strings{"cases.csv", "dist.csv"}));
    EXPECT_EQ(readWholeFile(dir + "/dist.csv"), "VarName_,P1\r\nkept,1\r\n");
}

TEST(DistcorrOutputSafety, InterruptDuringASaveRemovesTheTemporaryFiles) { expectSignalRemovesTemporaryFiles(SIGINT); }

TEST(DistcorrOutputSafety, TerminationDuringASaveRemovesTheTemporaryFiles) {
    expectSignalRemovesTemporaryFiles(SIGTERM);
}

// ---- The saved distance file ----

std::string saveCommand(const std::string& outfile) {
    return "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF DISTMATRIX(CONFIGURE=[x] SAVE=TRUE OUTFILE='" +
           outfile + "').";
}

TEST(DistcorrOutputSafety, SavedFileNeverReplacesTheActiveDataSet) {
    const DataCopy copy;
    for (const std::string& outfile : {copy.data, copy.dir + "/study"}) {
        const DistcorrResult r = runDistcorr({"--data", copy.data, "-e", saveCommand(outfile)});
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_TRUE(contains(r.out, "Distance Correlation Coefficients")) << "the tables still print";
        EXPECT_EQ(r.err, "Error: DISTANCE CORRELATION: Cannot write the data file \"" + copy.data +
                             "\": it is the same file as the active data set's data file \"" + copy.data +
                             "\"; an output never replaces an input.\n"
                             "distancecorr_entry: Step6 Unknown error occurred.\n");
    }
    copy.expectUntouched();
    EXPECT_EQ(folderEntries(copy.dir), (Strings{"study.csv", "study.schema.json"}));
}

TEST(DistcorrOutputSafety, SavedFileNeverReplacesTheActiveDictionary) {
    const DataCopy copy;
    const DistcorrResult r = runDistcorr({"--data", copy.data, "-e", saveCommand(copy.schema)});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(contains(r.err, "it is the same file as the active data set's dictionary \"")) << r.err;
    copy.expectUntouched();
    // The data set still loads with its dictionary.
    const DistcorrResult again = runDistcorr({"--data", copy.data, "-e", kCoefficients});
    EXPECT_EQ(again.exitCode, 0) << again.err;
}

TEST(DistcorrOutputSafety, SavedFileThroughALinkToTheDataIsRefused) {
    const DataCopy copy;
    ASSERT_EQ(::symlink(copy.data.c_str(), (copy.dir + "/other.csv").c_str()), 0);
    const DistcorrResult r = runDistcorr({"--data", copy.data, "-e", saveCommand(copy.dir + "/other.csv")});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(contains(r.err, "an output never replaces an input")) << r.err;
    copy.expectUntouched();
}

// The number of fields in a Table Schema file, or -1.
int schemaFieldCount(const std::string& path) {
    const rapidjson::Document doc = parseJsonFile(path);
    if (!doc.IsObject() || !doc.HasMember("fields")) return -1;
    return static_cast<int>(doc["fields"].Size());
}

int csvColumnCount(const std::string& path) {
    std::ifstream in(path);
    std::string header;
    std::getline(in, header);
    return header.empty() ? -1 : static_cast<int>(std::count(header.begin(), header.end(), ',')) + 1;
}

TEST(DistcorrOutputSafety, ConcurrentSavesKeepEachDataFileWithItsOwnDictionary) {
    // Each run saves the distances of a data set of its own size, so the
    // CSV's columns tell which run wrote it: n cases give n + 1 columns.
    const std::string dir = makeTempDir();
    std::vector<std::string> data;
    for (int n = 3; n <= 12; ++n) {
        std::string csv = "x,y\n";
        for (int i = 0; i < n; ++i) csv += std::to_string(i) + "," + std::to_string(i * i % 7) + "\n";
        data.push_back(dir + "/n" + std::to_string(n) + ".csv");
        writeText(data.back(), csv);
    }
    const std::string outfile = dir + "/dist.csv";
    for (int round = 0; round < 20; ++round) {
        std::vector<DistcorrProcess> runs;
        for (int i = 0; i < 16; ++i)
            runs.push_back(startDistcorr({"--quiet", "--data", data[static_cast<std::size_t>((i + round) % 10)], "-e",
                                          "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTMATRIX(CONFIGURE=[x] SAVE=TRUE "
                                          "OUTFILE='" +
                                              outfile + "')."}));
        for (const DistcorrProcess& p : runs) EXPECT_EQ(waitDistcorr(p).exitCode, 0);
        ASSERT_EQ(csvColumnCount(outfile), schemaFieldCount(dir + "/dist.schema.json")) << "round " << round;
    }
    EXPECT_FALSE(hasTemporaryFile(dir));
}

TEST(DistcorrOutputSafety, SavesPutTheirFilesInPlaceUnderTheFolderLock) {
    // Another program holding the folder's lock (flock) holds the save back
    // until it lets go, so cooperating programs never see half of a pair.
    const std::string dir = makeTempDir();
    const int folder = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_GE(folder, 0);
    ASSERT_EQ(::flock(folder, LOCK_EX), 0);
    const DistcorrProcess p = startDistcorr({"--quiet", "--data", kTwelve, "-e",
                                             "DISTANCE CORRELATION VARIABLE=a b /PRINT DISTMATRIX(CONFIGURE=[a] "
                                             "SAVE=TRUE OUTFILE='" +
                                                 dir + "/dist.csv')."});
    // Both temporary files complete, neither in place while the lock is held.
    for (int i = 0; i < 300 && folderEntries(dir).size() < 2; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    int status = 0;
    EXPECT_EQ(::waitpid(p.pid, &status, WNOHANG), 0) << "the save did not wait for the lock";
    EXPECT_FALSE(std::ifstream(dir + "/dist.csv").good());
    ::close(folder);
    EXPECT_EQ(waitDistcorr(p).exitCode, 0);
    EXPECT_EQ(csvColumnCount(dir + "/dist.csv"), 13);
    EXPECT_EQ(schemaFieldCount(dir + "/dist.schema.json"), 13);
}

}  // namespace
