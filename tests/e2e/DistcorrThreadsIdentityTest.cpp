// DISTANCE CORRELATION gives the same bytes whatever the number of worker
// threads: 200 random analyses (2 to 6 variables with ties, missing values,
// constant and negative columns, every normalization, with and without the
// permutation test, some saving distance matrices) run through distcorr at
// --threads 1, 2, 3 and 8, and the output documents and saved files of 2, 3
// and 8 threads must equal those of one thread byte for byte. One distcorr
// process per data set and thread count runs forty commands.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "DistcorrRunner.h"

namespace {

constexpr int kColumns = 30;
constexpr int kCommandsPerFile = 40;

// Column kinds: smooth, tied, small integers, binary, far from zero,
// negative (LOG gives NaN), constant, heavy-tailed.
double value(int kind, std::mt19937_64& rng, double base) {
    std::normal_distribution<double> normal(0.0, 1.0);
    switch (kind) {
        case 0:
            return normal(rng) + 0.3 * base * base;
        case 1:
            return std::round(normal(rng) * 2.0) / 2.0;
        case 2:
            return static_cast<double>(rng() % 4);
        case 3:
            return static_cast<double>(rng() % 2);
        case 4:
            return 1e4 + normal(rng);
        case 5:
            return -3.0 + normal(rng);
        case 6:
            return 2.5;
        default:
            return std::tan(1.5 * (static_cast<double>(rng() % 1000) / 1000.0 - 0.5));
    }
}

// n cases of kColumns numeric columns x1 .. x30; about one cell in twenty
// of the columns with missing values is empty.
std::string writeData(const std::string& folder, int file, std::size_t n) {
    std::mt19937_64 rng(9000 + static_cast<std::uint64_t>(file));
    std::vector<int> kinds(kColumns);
    std::vector<bool> gaps(kColumns);
    for (int c = 0; c < kColumns; ++c) {
        kinds[c] = static_cast<int>(rng() % 8);
        gaps[c] = rng() % 3 == 0;
    }
    const std::string path = folder + "/data" + std::to_string(file) + ".csv";
    std::ofstream out(path);
    for (int c = 0; c < kColumns; ++c) out << (c ? "," : "") << "x" << c + 1;
    out << "\n";
    out.precision(17);
    std::normal_distribution<double> normal(0.0, 1.0);
    for (std::size_t i = 0; i < n; ++i) {
        const double base = normal(rng);
        for (int c = 0; c < kColumns; ++c) {
            if (c) out << ",";
            const double v = value(kinds[c], rng, base);
            if (!(gaps[c] && rng() % 20 == 0)) out << v;
        }
        out << "\n";
    }
    return path;
}

std::string makeCommands(int file, std::vector<std::string>& saved) {
    std::mt19937_64 rng(777 + static_cast<std::uint64_t>(file));
    static const char* normalizations[] = {"NONE", "MINMAX", "ZSCORE", "ROBUST", "LOG"};
    std::ostringstream text;
    for (int command = 0; command < kCommandsPerFile; ++command) {
        const std::size_t count = 2 + rng() % 5;
        std::vector<int> chosen;
        while (chosen.size() < count) {
            const int c = 1 + static_cast<int>(rng() % kColumns);
            if (std::find(chosen.begin(), chosen.end(), c) == chosen.end()) chosen.push_back(c);
        }
        text << "DISTANCE CORRELATION VARIABLE=";
        for (int c : chosen) text << " x" << c;
        text << " /CRITERIA NORMALIZATION=" << normalizations[rng() % 5];
        if (rng() % 4 != 0) {
            text << " PERMUTATION(SEED=" << rng() % 100000 << " MAXITERATIONS=" << rng() % 301
                 << " SIGNIFICANCELEVEL=" << 0.01 * static_cast<double>(1 + rng() % 30) << ")";
        }
        text << " /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR";
        if (rng() % 10 == 0) {
            const std::string name = "saved" + std::to_string(file) + "_" + std::to_string(command) + ".csv";
            saved.push_back(name);
            text << " DISTMATRIX(CONFIGURE=[x" << chosen[0] << "] SAVE=TRUE OUTFILE='" << name << "')";
        }
        text << ".\n";
    }
    return text.str();
}

struct Outputs {
    int status = -1;
    std::string document;
    std::vector<std::string> saved;
};

// Runs the commands in a folder of its own, so that the saved files' names
// (part of the document) are the same at every thread count.
Outputs runIn(const std::string& folder, const std::string& data, const std::string& syntax,
              const std::vector<std::string>& savedNames, int threads) {
    const std::string here = folder + "/t" + std::to_string(threads);
    ::mkdir(here.c_str(), 0755);
    const std::string line = "cd " + shellQuote(here) + " && " + shellQuote(distcorrBinary()) + " --threads " +
                             std::to_string(threads) + " --quiet --data " + shellQuote(data) + " --output out.json " +
                             shellQuote(syntax) + " > /dev/null 2>&1";
    const int status = std::system(line.c_str());
    Outputs run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.document = readWholeFile(here + "/out.json");
    for (const std::string& name : savedNames) run.saved.push_back(readWholeFile(here + "/" + name));
    return run;
}

TEST(DistcorrThreadsIdentity, TwoHundredAnalysesGiveTheSameBytesAtAnyThreadCount) {
    const std::string folder = makeTempDir();
    static const std::size_t sizes[] = {9, 30, 70, 110, 160};
    int savedFiles = 0;
    for (int file = 0; file < 5; ++file) {
        const std::string data = writeData(folder, file, sizes[file]);
        std::vector<std::string> savedNames;
        const std::string syntax = folder + "/commands" + std::to_string(file) + ".sps";
        std::ofstream(syntax) << makeCommands(file, savedNames);
        const std::string subfolder = folder + "/f" + std::to_string(file);
        ::mkdir(subfolder.c_str(), 0755);
        const Outputs one = runIn(subfolder, data, syntax, savedNames, 1);
        ASSERT_EQ(one.status, 0) << "data set " << file;
        // Not vacuous: tables and, with the test on, permutation results.
        EXPECT_NE(one.document.find("Distance Correlation Coefficients"), std::string::npos);
        EXPECT_NE(one.document.find("Permutation"), std::string::npos);
        for (const std::string& s : one.saved) {
            EXPECT_FALSE(s.empty());
            ++savedFiles;
        }
        for (int threads : {2, 3, 8}) {
            const Outputs many = runIn(subfolder, data, syntax, savedNames, threads);
            EXPECT_EQ(many.status, one.status) << "data set " << file << " at " << threads << " threads";
            EXPECT_TRUE(many.document == one.document)
                << "the output documents of data set " << file << " differ at " << threads << " threads";
            for (std::size_t s = 0; s < savedNames.size(); ++s) {
                EXPECT_TRUE(many.saved[s] == one.saved[s]) << savedNames[s] << " differs at " << threads << " threads";
            }
        }
    }
    EXPECT_GE(savedFiles, 8);
}

}  // namespace
