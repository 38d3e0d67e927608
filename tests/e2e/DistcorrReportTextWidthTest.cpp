// Text tables end to end with labels of East Asian wide characters (two
// terminal cells each) and a combining accent (no cell of its own): every
// column still lines up on screen.
#include <gtest/gtest.h>

#include <sstream>

#include "DistcorrRunner.h"

namespace {

const std::string kData = fixture("e2e/wide_labels.csv");  // labels "身長 (cm)", "体重 (kg)", "Cafe\u0301 visits"

// Terminal cells of a UTF-8 line, for the characters of the fixture: CJK
// ideographs and full-width forms take two, combining diacritical marks none.
std::size_t cells(const std::string& line) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < line.size();) {
        const auto lead = static_cast<unsigned char>(line[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t c = length == 1 ? lead : lead & (0xFF >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) c = (c << 6) | (static_cast<unsigned char>(line[i + k]) & 0x3F);
        i += length;
        if (c >= 0x0300 && c <= 0x036F) continue;
        width += (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xFF00 && c <= 0xFF60) ? 2 : 1;
    }
    return width;
}

std::vector<std::string> tableLines(const std::string& out, const std::string& title) {
    std::istringstream in(out.substr(out.find(title + "\n")));
    std::vector<std::string> lines;
    std::getline(in, lines.emplace_back());  // the title
    for (std::string line; std::getline(in, line) && !line.empty();) lines.push_back(line);
    return lines;
}

TEST(DistcorrReportTextWidthTest, DescriptiveStatisticsLineUpWithWideAndCombiningLabels) {
    DistcorrResult r =
        runDistcorr({"--data", kData, "-e", "DISTANCE CORRELATION VARIABLE=height weight cafe /PRINT DETAILS."});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto lines = tableLines(r.out, "Descriptive Statistics");
    ASSERT_EQ(lines.size(), 8u) << r.out;  // title, rule, header, rule, 3 rows, rule
    const std::size_t width = cells(lines[1]);
    EXPECT_EQ(lines[1], std::string(width, '='));
    // The numbers are right-aligned in the last column, so a row that lines
    // up ends exactly under the end of the rules.
    for (std::size_t i : {2u, 4u, 5u, 6u}) EXPECT_EQ(cells(lines[i]), width) << lines[i];
    // Each label is padded to the width of the widest, "Café visits" (11
    // cells): "身長 (cm)" takes 9 cells, so 2 blanks follow it, then the gap of 2.
    EXPECT_NE(lines[4].find("身長 (cm)    8.000"), std::string::npos) << lines[4];
    EXPECT_NE(lines[5].find("体重 (kg)    8.000"), std::string::npos) << lines[5];
    EXPECT_NE(lines[6].find("Cafe\u0301 visits  8.000"), std::string::npos) << lines[6];
    // The "N" column's values end in the same cell as its header.
    const std::size_t headerEnd = cells(lines[2].substr(0, lines[2].find(" N ") + 2));
    for (std::size_t i : {4u, 5u, 6u}) EXPECT_EQ(cells(lines[i].substr(0, lines[i].find("8.000") + 5)), headerEnd);
}

}  // namespace
