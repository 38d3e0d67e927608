// The memory limit as the command reference states it: every entry of its
// table follows from the stated rule, and distcorr keeps to the table at
// its largest entries (the last case count accepted, one more refused).
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>

#include "DocsExamples.h"

namespace {

constexpr std::uint64_t kLimitBytes = 1073741824;  // 1 GiB
const char* const kWarning = "Insufficient memory for Distance Correlation.";

// Bytes the analysis reserves: two n x n tables of doubles per variable,
// two more with the permutation test.
std::uint64_t bytesNeeded(std::uint64_t variables, std::uint64_t cases, bool permutation) {
    const std::uint64_t tables = 2 * variables + (permutation ? 2 : 0);
    return tables * cases * cases * 8;
}

std::uint64_t largestAccepted(std::uint64_t variables, bool permutation) {
    std::uint64_t cases = 1;
    while (bytesNeeded(variables, cases + 1, permutation) <= kLimitBytes) ++cases;
    return cases;
}

std::uint64_t number(std::string text) {
    std::string digits;
    for (char c : text)
        if (c != ',' && c != ' ') digits += c;
    return std::stoull(digits);
}

// The table that follows the marker comment: variables -> (without, with).
std::map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> documentedTable() {
    const std::string doc = readWholeFile(std::string(DC_SOURCE_DIR) + "/docs/commands.md");
    std::map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> table;
    const auto marker = doc.find("<!-- memory-limit-table -->");
    if (marker == std::string::npos) return table;
    std::istringstream in(doc.substr(marker));
    std::string line;
    std::getline(in, line);  // the marker
    std::getline(in, line);  // header
    std::getline(in, line);  // alignment row
    while (std::getline(in, line) && !line.empty() && line[0] == '|') {
        std::vector<std::string> cells;
        std::istringstream row(line.substr(1));
        for (std::string cell; std::getline(row, cell, '|');) cells.push_back(cell);
        if (cells.size() < 3) break;
        table[number(cells[0])] = {number(cells[1]), number(cells[2])};
    }
    return table;
}

TEST(DocsCommandsLimits, MemoryTableFollowsTheRule) {
    const auto table = documentedTable();
    ASSERT_EQ(table.size(), 29u) << "one row for each of 2 to 30 variables";
    for (const auto& [variables, limits] : table) {
        EXPECT_EQ(limits.first, largestAccepted(variables, false)) << variables << " variables";
        EXPECT_EQ(limits.second, largestAccepted(variables, true)) << variables << " variables, PERMUTATION";
    }
    // The worked numbers of the text.
    EXPECT_EQ(bytesNeeded(2, 5792, false), 1073512448u);
    EXPECT_EQ(bytesNeeded(2, 5793, false), 1073883168u);
}

// A data set of two unrelated variables with the given number of cases.
std::string dataFile(std::uint64_t cases) {
    static const std::string folder = makeTempDir();
    const std::string path = folder + "/cases" + std::to_string(cases) + ".csv";
    std::ofstream out(path);
    out << "a,b\n";
    for (std::uint64_t k = 1; k <= cases; ++k) out << (k * 37) % 101 << "," << (k * k) % 89 << "\n";
    return path;
}

void expectAccepted(std::uint64_t cases, const std::string& criteria) {
    const DistcorrResult r = runDistcorr(
        {"--data", dataFile(cases), "-e", "DISTANCE CORRELATION VARIABLE=a b " + criteria + " /PRINT DISTCORRCOEFF."});
    EXPECT_EQ(r.err, "") << cases << " cases";
    EXPECT_NE(r.out.find("a vs. b"), std::string::npos) << cases << " cases:\n" << r.out;
}

void expectRefused(std::uint64_t cases, const std::string& criteria) {
    const DistcorrResult r = runDistcorr(
        {"--data", dataFile(cases), "-e", "DISTANCE CORRELATION VARIABLE=a b " + criteria + " /PRINT DISTCORRCOEFF."});
    EXPECT_NE(r.err.find(kWarning), std::string::npos) << cases << " cases:\n" << r.err;
    EXPECT_EQ(r.out.find("a vs. b"), std::string::npos) << cases << " cases:\n" << r.out;
}

TEST(DocsCommandsLimits, TwoVariablesWithoutPermutationTest) {
    const std::uint64_t limit = documentedTable()[2].first;
    ASSERT_EQ(limit, 5792u);
    expectAccepted(limit, "");
    expectRefused(limit + 1, "");
}

TEST(DocsCommandsLimits, TwoVariablesWithPermutationTest) {
    // No permutations are made, but the test's tables are counted all the same.
    const std::uint64_t limit = documentedTable()[2].second;
    ASSERT_EQ(limit, 4729u);
    expectAccepted(limit, "/CRITERIA PERMUTATION(MAXITERATIONS=0)");
    expectRefused(limit + 1, "/CRITERIA PERMUTATION(MAXITERATIONS=0)");
}

}  // namespace
