// The output document and the saved file are formatted on as many threads as
// the process may use; their bytes must not depend on that number. The run is
// pinned to one processor and then to two with taskset.
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

// Runs in a folder of its own, so that the command (part of the document)
// names the same saved file in both runs.
Outputs runPinnedTo(const std::string& cpus, const std::string& data, const std::string& folder) {
    const std::string here = folder + "/" + (cpus == "0" ? "one" : "two");
    ::mkdir(here.c_str(), 0755);
    const std::string command =
        "DISTANCE CORRELATION VARIABLE=x y /PRINT DISTCORRCOEFF DISTMATRIX(CONFIGURE=[x y] SAVE=TRUE "
        "OUTFILE='dist.csv') /PLOT SCATTERPLOT(XAXIS=x YAXIS=y).";
    const std::string line = "cd " + shellQuote(here) + " && taskset -c " + cpus + " " +
                             shellQuote(std::string(DC_BINARY_DIR) + "/bin/distcorr") + " --quiet --data " +
                             shellQuote(data) + " --output out.json -e " + shellQuote(command) + " > /dev/null 2>&1";
    const int status = std::system(line.c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << line;
    return {readWholeFile(here + "/out.json"), readWholeFile(here + "/dist.csv")};
}

TEST(DistcorrReportThreadsTest, OneProcessorAndTwoGiveTheSameBytes) {
    cpu_set_t set;
    CPU_ZERO(&set);
    ASSERT_EQ(::sched_getaffinity(0, sizeof set, &set), 0);
    if (!CPU_ISSET(0, &set) || !CPU_ISSET(1, &set) || std::system("taskset -c 0 true > /dev/null 2>&1") != 0)
        GTEST_SKIP() << "needs processors 0 and 1 and taskset (util-linux)";
    // 300 cases: 44,850 chart points (three blocks of numbers) and a saved
    // file of 600 rows of 301 cells (several batches of cases).
    const std::string folder = makeTempDir();
    const std::string data = folder + "/data.csv";
    {
        std::ofstream out(data);
        out << "x,y\n";
        for (int i = 1; i <= 300; ++i) out << std::sin(i * 1.3) * 40 << ',' << std::cos(i * 0.7) * i / 9.0 << '\n';
    }
    const Outputs one = runPinnedTo("0", data, folder);
    const Outputs two = runPinnedTo("0,1", data, folder);
    EXPECT_GT(one.document.size(), 1000000u);
    EXPECT_GT(one.saved.size(), 1000000u);
    EXPECT_TRUE(one.document == two.document) << "the output documents differ";
    EXPECT_TRUE(one.saved == two.saved) << "the saved files differ";
}

}  // namespace
