// The output document and the saved file are formatted on the host's worker
// threads (--threads, by default the processors available); their bytes must
// not depend on that number.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <fstream>

#include "DistcorrRunner.h"

namespace {

struct Outputs {
    std::string document;
    std::string saved;
};

// 300 cases: 44,850 chart points (three blocks of numbers) and a saved file
// of 600 rows of 301 cells (several batches of cases).
std::string makeData(const std::string& folder) {
    const std::string data = folder + "/data.csv";
    std::ofstream out(data);
    out << "x,y\n";
    for (int i = 1; i <= 300; ++i) out << std::sin(i * 1.3) * 40 << ',' << std::cos(i * 0.7) * i / 9.0 << '\n';
    return data;
}

// Runs distcorr after `prefix` with `options` in a folder of its own named
// `tag`, so that the command (part of the document) names the same saved file
// in every run.
Outputs runIn(const std::string& folder, const std::string& tag, const std::string& prefix, const std::string& options,
              const std::string& data) {
    const std::string here = folder + "/" + tag;
    ::mkdir(here.c_str(), 0755);
    const std::string command =
        "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF DISTMATRIX(CONFIGURE=[x y] SAVE=TRUE "
        "OUTFILE='dist.csv') /PLOT SCATTERPLOT(XAXIS=x YAXIS=y).";
    const std::string line = "cd " + shellQuote(here) + " && " + prefix +
                             shellQuote(std::string(DC_BINARY_DIR) + "/bin/distcorr") + " " + options +
                             " --quiet --data " + shellQuote(data) + " --output out.json -e " + shellQuote(command) +
                             " > /dev/null 2>&1";
    const int status = std::system(line.c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << line;
    return {readWholeFile(here + "/out.json"), readWholeFile(here + "/dist.csv")};
}

TEST(DistcorrReportThreadsTest, AnyThreadCountGivesTheSameBytes) {
    const std::string folder = makeTempDir();
    const std::string data = makeData(folder);
    const Outputs one = runIn(folder, "t1", "", "--threads 1", data);
    EXPECT_GT(one.document.size(), 1000000u);
    EXPECT_GT(one.saved.size(), 1000000u);
    for (int threads : {2, 3, 8}) {
        const Outputs many =
            runIn(folder, "t" + std::to_string(threads), "", "--threads " + std::to_string(threads), data);
        EXPECT_TRUE(many.document == one.document) << "the output documents differ at " << threads << " threads";
        EXPECT_TRUE(many.saved == one.saved) << "the saved files differ at " << threads << " threads";
    }
}

TEST(DistcorrReportThreadsTest, OneProcessorAndTwoGiveTheSameBytes) {
    cpu_set_t set;
    CPU_ZERO(&set);
    ASSERT_EQ(::sched_getaffinity(0, sizeof set, &set), 0);
    if (!CPU_ISSET(0, &set) || !CPU_ISSET(1, &set) || std::system("taskset -c 0 true > /dev/null 2>&1") != 0)
        GTEST_SKIP() << "needs processors 0 and 1 and taskset (util-linux)";
    const std::string folder = makeTempDir();
    const std::string data = makeData(folder);
    const Outputs one = runIn(folder, "one", "taskset -c 0 ", "", data);
    const Outputs two = runIn(folder, "two", "taskset -c 0,1 ", "", data);
    EXPECT_TRUE(one.document == two.document) << "the output documents differ";
    EXPECT_TRUE(one.saved == two.saved) << "the saved files differ";
}

}  // namespace
