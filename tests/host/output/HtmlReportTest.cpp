// The HTML report: one self-contained, valid page with a header of the
// session's facts and the runs' commands, messages, tables and charts; a
// chart is drawn point by point up to the point limit and as a density image
// with a colour scale beyond it.
#include <zlib.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "HtmlValidator.h"
#include "OutputTestSupport.h"
#include "Version.h"
#include "output/HtmlText.h"
#include "output/PngImage.h"

namespace {

std::size_t count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++n;
    return n;
}

// 2026-03-04 05:06:07 UTC.
constexpr std::time_t kCreated = 1772600767;

host::ReportContext context(const std::string& language = "") {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    return {"data/study.csv", 1234, 5, language, kCreated};
}

std::string page(std::vector<host::RunRecord>& runs, const host::ReportContext& facts = context()) {
    std::ostringstream out;
    host::writeHtmlReport(out, runs, facts);
    return out.str();
}

std::string chartPage(std::size_t points) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    std::vector<double> x(points), y(points);
    for (std::size_t i = 0; i < points; ++i) {
        x[i] = static_cast<double>(i % 97);
        y[i] = static_cast<double>(i % 89) * 0.5;
    }
    outtest::addScatterChart(generator, std::move(x), std::move(y));
    std::vector<host::RunRecord> runs;
    runs.push_back(outtest::handOver(generator, "X."));
    return page(runs);
}

TEST(HtmlReportTest, SmallChartIsDrawnAsSvgPointsWithTitleAndAxisLabels) {
    const std::string html = chartPage(3);
    EXPECT_EQ(count(html, "<circle class=\"pt\""), 3u);
    EXPECT_EQ(count(html, "data:image/png"), 0u);
    EXPECT_NE(html.find("<text class=\"title\" x=\"320\" y=\"28\" text-anchor=\"middle\">"
                        "Scatter Plot of pairwise distances</text>"),
              std::string::npos);
    // GUIDE axis dim(1) names the horizontal axis "a", dim(2) the vertical "b".
    EXPECT_NE(html.find("text-anchor=\"middle\">a</text>"), std::string::npos);
    EXPECT_NE(html.find("rotate(-90)\" text-anchor=\"middle\">b</text>"), std::string::npos);
    EXPECT_NE(html.find("<figcaption>3 points.</figcaption>"), std::string::npos);
}

TEST(HtmlReportTest, PointLimitIsTheLastCountDrawnAsPoints) {
    const std::string html = chartPage(host::kHtmlPointLimit);
    EXPECT_EQ(count(html, "<circle class=\"pt\""), host::kHtmlPointLimit);
    EXPECT_EQ(count(html, "data:image/png"), 0u);
}

TEST(HtmlReportTest, BeyondThePointLimitADensityImageReplacesThePoints) {
    const std::string html = chartPage(host::kHtmlPointLimit + 1);
    EXPECT_EQ(count(html, "<circle"), 0u);
    EXPECT_EQ(count(html, "<image class=\"density\""), 1u);
    EXPECT_EQ(count(html, "href=\"data:image/png;base64,iVBORw0KGgo"), 1u);
    EXPECT_NE(html.find("20,001 points. Drawn as a density image"), std::string::npos);
}

TEST(HtmlReportTest, PageIsSelfContained) {
    const std::string html = chartPage(10);
    EXPECT_EQ(html.rfind("<!DOCTYPE html>\n<html lang=\"en\">", 0), 0u);
    EXPECT_EQ(count(html, "<script"), 0u);
    EXPECT_EQ(count(html, "<link"), 0u);
    EXPECT_EQ(count(html, "src="), 0u);
    EXPECT_EQ(count(html, "url("), 0u);
    // The only address is the SVG namespace name, which is never fetched.
    EXPECT_EQ(count(html, "http"), count(html, "xmlns=\"http://www.w3.org/2000/svg\""));
    EXPECT_TRUE(html.size() > 7 && html.compare(html.size() - 8, 8, "</html>\n") == 0);
}

TEST(HtmlReportTest, TablesWithGroupsStubHeaderFootnotesAndMessages) {
    outtest::beginCommand("DISTANCE CORRELATION VARIABLES=x y z.");
    host::HostSession::instance().addMessage(host::MessageLevel::Warning, "DISTANCE CORRELATION",
                                             "Performance <improvement> ...");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"x vs. y", 0.5, 0.25, 0.75}, {"x vs. <z>", -0.125, -1, 1}});
    std::vector<host::RunRecord> runs;
    runs.push_back(outtest::handOver(generator, "DISTANCE CORRELATION VARIABLES=x y z."));
    host::RunRecord failed;
    failed.command = "DISTANCE CORRELATION VARIABLES=q.";
    failed.messages.push_back({host::MessageLevel::Error, "Unknown variable q."});
    runs.push_back(std::move(failed));
    const std::string html = page(runs);

    EXPECT_NE(html.find("<pre class=\"command\">DISTANCE CORRELATION VARIABLES=x y z.</pre>"), std::string::npos);
    EXPECT_NE(
        html.find("<li class=\"warning\"><span class=\"level\">Warning</span>Performance &lt;improvement&gt; ...</li>"),
        std::string::npos);
    EXPECT_NE(html.find("<li class=\"error\"><span class=\"level\">Error</span>Unknown variable q.</li>"),
              std::string::npos);
    EXPECT_NE(html.find("<h2>Distance Correlation</h2>"), std::string::npos);
    EXPECT_NE(html.find("<caption>Distance Correlation Coefficients<sup>a</sup></caption>"), std::string::npos);
    EXPECT_NE(
        html.find("<tr><th class=\"stubhead\" scope=\"col\" colspan=\"1\" rowspan=\"2\">Variable</th>"
                  "<th class=\"leaf\" scope=\"col\" rowspan=\"2\">dCor Value</th>"
                  "<th class=\"group\" scope=\"col\" colspan=\"2\">Confidence Interval 95.00</th></tr>\n"
                  "<tr><th class=\"leaf\" scope=\"col\">Lower</th><th class=\"leaf\" scope=\"col\">Upper</th></tr>"),
        std::string::npos);
    EXPECT_NE(html.find("<tr><th scope=\"row\">x vs. &lt;z&gt;</th><td class=\"num\">-0.1250</td>"
                        "<td class=\"num\">-1.0000</td><td class=\"num\">1.0000</td></tr>"),
              std::string::npos);
    EXPECT_NE(html.find("<p><sup>a</sup> Number of Replicates 999</p>"), std::string::npos);
    EXPECT_NE(html.find("th.leaf{min-width:100px}"), std::string::npos);
    // The failed run has its command and message, and no output heading.
    EXPECT_EQ(count(html, "<h2>"), 1u);
    EXPECT_EQ(count(html, "<section class=\"run\">"), 2u);
}

TEST(HtmlReportTest, PageLanguageFollowsTheContext) {
    std::vector<host::RunRecord> runs;
    EXPECT_NE(page(runs, context("de")).find("<html lang=\"de\">"), std::string::npos);
    EXPECT_NE(page(runs, context("de")).find("<dt>Language</dt><dd>de</dd>"), std::string::npos);
    EXPECT_NE(page(runs, context("")).find("<html lang=\"en\">"), std::string::npos);
}

TEST(HtmlReportTest, HeaderNamesTheDataCasesVariablesTimeVersionAndLanguage) {
    std::vector<host::RunRecord> runs;
    const std::string html = page(runs);
    EXPECT_NE(html.find("<title>distcorr report: data/study.csv</title>"), std::string::npos);
    const std::string header =
        "<header class=\"report\">\n<h1>distcorr report: study.csv</h1>\n"
        "<dl class=\"facts\">\n"
        "<dt>Data file</dt><dd>data/study.csv</dd>\n"
        "<dt>Loaded</dt><dd>1,234 cases, 5 variables</dd>\n"
        "<dt>Created</dt><dd><time datetime=\"2026-03-04T05:06:07+00:00\">"
        "2026-03-04 05:06:07 UTC</time></dd>\n"
        "<dt>Version</dt><dd>distcorr " +
        std::string(host::version()) +
        "</dd>\n"
        "<dt>Language</dt><dd>en</dd>\n</dl>\n</header>\n";
    EXPECT_NE(html.find("<body>\n" + header), std::string::npos) << html.substr(0, 4000);
}

TEST(HtmlReportTest, DataFromStandardInputIsNamedSo) {
    std::vector<host::RunRecord> runs;
    const std::string html = page(runs, {"-", 3, 2, "", kCreated});
    EXPECT_NE(html.find("<title>distcorr report: standard input</title>"), std::string::npos);
    EXPECT_NE(html.find("<h1>distcorr report: standard input</h1>"), std::string::npos);
    EXPECT_NE(html.find("<dt>Data file</dt><dd>standard input</dd>"), std::string::npos);
}

TEST(HtmlReportTest, HeaderCountsOneCaseAndOneVariableInTheSingular) {
    std::vector<host::RunRecord> runs;
    const std::string html = page(runs, {"x.csv", 1, 1, "", kCreated});
    EXPECT_NE(html.find("<dd>1 case, 1 variable</dd>"), std::string::npos);
}

TEST(HtmlReportTest, StylesAreInTheHeadOnly) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"x vs. y", 0.5, 0.25, 0.75}});
    std::vector<host::RunRecord> runs;
    runs.push_back(outtest::handOver(generator, "X."));
    const std::string html = page(runs);
    const std::size_t headEnd = html.find("</head>");
    ASSERT_NE(headEnd, std::string::npos);
    EXPECT_EQ(count(html, "<style"), 1u);
    EXPECT_LT(html.find("<style>"), headEnd);
    EXPECT_EQ(count(html, "style="), 0u);
    // The table's minimum column width is a rule of the style sheet.
    const std::size_t rule = html.find("table.min-100 td.num,table.min-100 th.leaf{min-width:100px}");
    EXPECT_LT(rule, headEnd);
    EXPECT_NE(html.find("<table class=\"pivot min-100\" id=\"t1-1\">"), std::string::npos);
}

TEST(HtmlReportTest, EveryHeaderCellHasAScope) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"x vs. y", 0.5, 0.25, 0.75}, {"x vs. z", 0.1, 0.0, 0.3}});
    std::vector<host::RunRecord> runs;
    runs.push_back(outtest::handOver(generator, "X."));
    const std::string html = page(runs);
    // Four column headers (stub, dCor Value, the group, Lower, Upper) and two row headers.
    EXPECT_EQ(count(html, "<th "), 7u);
    EXPECT_EQ(count(html, "scope=\"col\""), 5u);
    EXPECT_EQ(count(html, "scope=\"row\""), 2u);
    EXPECT_EQ(count(html, "<th>"), 0u);
}

TEST(HtmlReportTest, WideTablesScrollInsideTheirBox) {
    const std::string html = chartPage(1);
    EXPECT_NE(html.find(".table-wrap{overflow-x:auto;max-width:100%;"), std::string::npos);
}

// The legend's rows: swatch colour and count, top to bottom.
std::vector<std::pair<std::string, std::string>> legendRows(const std::string& html) {
    std::vector<std::pair<std::string, std::string>> rows;
    const std::regex row(
        "<rect class=\"swatch\"[^>]* fill=\"(#[0-9a-f]{6})\"/><text class=\"tick\"[^>]*>([0-9,]+)</text>");
    for (auto it = std::sregex_iterator(html.begin(), html.end(), row); it != std::sregex_iterator(); ++it)
        rows.emplace_back((*it)[1], (*it)[2]);
    return rows;
}

TEST(HtmlReportTest, DensityImageHasAColourScaleOfCounts) {
    // 20,001 points over 97 x 89 distinct positions: each of the 8,633
    // positions holds 2 or 3 points, so the fullest 4 x 4 pixel cell holds
    // several positions' points; the scale runs from that count down to 0.
    const std::string html = chartPage(host::kHtmlPointLimit + 1);
    EXPECT_NE(html.find("<text class=\"legend-title\""), std::string::npos);
    EXPECT_NE(html.find(">Points per cell</text>"), std::string::npos);
    const auto rows = legendRows(html);
    ASSERT_GE(rows.size(), 3u);
    // Largest first, then powers of ten, then 1 and 0 (white, an empty cell).
    EXPECT_EQ(rows[rows.size() - 1], std::make_pair(std::string("#ffffff"), std::string("0")));
    EXPECT_EQ(rows[rows.size() - 2].second, "1");
    const std::regex most("at most ([0-9,]+) in one cell");
    std::smatch match;
    ASSERT_TRUE(std::regex_search(html, match, most));
    EXPECT_EQ(rows[0].second, match[1].str());
    // The fullest cell has the darkest colour of the palette.
    EXPECT_EQ(rows[0].first, "#08306b");
    // The legend sits beside the plot, in a wider picture.
    EXPECT_NE(html.find("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"750\" height=\"440\""), std::string::npos);
}

TEST(HtmlReportTest, PointChartsHaveNoColourScale) {
    const std::string html = chartPage(50);
    EXPECT_EQ(count(html, "class=\"legend\""), 0u);
    EXPECT_NE(html.find("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"640\" height=\"440\""), std::string::npos);
}

TEST(HtmlReportTest, PagesAreValidHtml) {
    const TidyResult points = runTidyOnText(chartPage(30));
    ASSERT_NE(points.exitCode, 127) << "the HTML validator tidy is missing (apt-get install tidy)";
    EXPECT_EQ(points.exitCode, 0) << points.messages;
    const TidyResult density = runTidyOnText(chartPage(host::kHtmlPointLimit + 1));
    EXPECT_EQ(density.exitCode, 0) << density.messages;

    outtest::beginCommand("DISTANCE CORRELATION VARIABLES=x y z.");
    host::HostSession::instance().addMessage(host::MessageLevel::Warning, "DISTANCE CORRELATION", "A <warning> & more");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"x vs. \"y\"", 0.5, 0.25, 0.75}, {"x vs. z", 0.1, 0, 0.3}});
    std::vector<host::RunRecord> runs;
    runs.push_back(outtest::handOver(generator, "DISTANCE CORRELATION VARIABLES=x y z."));
    const TidyResult tables = runTidyOnText(page(runs, context("de")));
    EXPECT_EQ(tables.exitCode, 0) << tables.messages;
}

TEST(HtmlReportTest, TheValidatorRejectsABrokenPage) {
    // The check above has teeth: a style sheet in the body and a cell
    // outside a row are reported.
    const TidyResult broken = runTidyOnText(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<title>x</title>\n</head>\n<body>\n"
        "<style>p{color:red}</style>\n<table><td>1</td></table>\n</body>\n</html>\n");
    ASSERT_NE(broken.exitCode, 127) << "the HTML validator tidy is missing (apt-get install tidy)";
    EXPECT_NE(broken.exitCode, 0);
    EXPECT_NE(broken.messages.find("<style>"), std::string::npos) << broken.messages;
}

TEST(HtmlReportTest, Base64MatchesTheStandardVectors) {
    EXPECT_EQ(host::base64(""), "");
    EXPECT_EQ(host::base64("f"), "Zg==");
    EXPECT_EQ(host::base64("fo"), "Zm8=");
    EXPECT_EQ(host::base64("foo"), "Zm9v");
    EXPECT_EQ(host::base64("foobar"), "Zm9vYmFy");
}

std::uint32_t be32(const std::string& s, std::size_t at) {
    std::uint32_t v = 0;
    for (std::size_t i = 0; i < 4; ++i) v = v << 8 | static_cast<std::uint8_t>(s[at + i]);
    return v;
}

TEST(HtmlReportTest, PngHasItsChunksAndCompressedPixels) {
    host::PngImage image(2, 1);
    image.setPalette({{255, 255, 255}, {0, 0, 255}, {255, 0, 0}});
    image.at(0, 0) = 1;
    image.at(1, 0) = 2;
    const std::string png = image.encode();
    ASSERT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
    // IHDR: 13 bytes, width 2, height 1, 8 bits, palette; its CRC over
    // "IHDR" and the 13 bytes is 0xC3FC8FB8 (worked out with Python's
    // zlib.crc32 on b"IHDR\0\0\0\x02\0\0\0\x01\x08\x03\0\0\0").
    EXPECT_EQ(be32(png, 8), 13u);
    EXPECT_EQ(png.substr(12, 4), "IHDR");
    EXPECT_EQ(be32(png, 16), 2u);
    EXPECT_EQ(be32(png, 20), 1u);
    EXPECT_EQ(png[24], 8);
    EXPECT_EQ(png[25], 3);
    EXPECT_EQ(be32(png, 29), 0xC3FC8FB8u);
    // PLTE: three colours.
    const std::size_t plte = 8 + 12 + 13;
    EXPECT_EQ(be32(png, plte), 9u);
    EXPECT_EQ(png.substr(plte + 4, 4), "PLTE");
    // IDAT: a zlib stream that inflates to the row: filter 0, then the
    // indices 1 and 2.
    const std::size_t idat = plte + 12 + 9;
    EXPECT_EQ(png.substr(idat + 4, 4), "IDAT");
    const std::string z = png.substr(idat + 8, be32(png, idat));
    unsigned char raw[16];
    uLongf rawSize = sizeof raw;
    ASSERT_EQ(::uncompress(raw, &rawSize, reinterpret_cast<const Bytef*>(z.data()), static_cast<uLong>(z.size())),
              Z_OK);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(raw), rawSize), std::string("\x00\x01\x02", 3));
    // IEND has no data and the well-known CRC AE 42 60 82.
    const std::size_t iend = png.size() - 12;
    EXPECT_EQ(be32(png, iend), 0u);
    EXPECT_EQ(png.substr(iend + 4, 4), "IEND");
    EXPECT_EQ(be32(png, iend + 8), 0xAE426082u);
}

TEST(HtmlReportTest, DensityPngIsCompressed) {
    // 64 rows of a filter byte and 64 pixels are 4,160 bytes, which stored
    // blocks would keep whole; a pattern of 8 x 8 squares deflates to far
    // less than a quarter of that.
    host::PngImage image(64, 64);
    image.setPalette({{255, 255, 255}, {0, 0, 255}});
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) image.at(x, y) = static_cast<std::uint8_t>((x / 8 + y / 8) % 2);
    const std::string png = image.encode();
    const std::size_t idat = 8 + 12 + 13 + 12 + 6;
    ASSERT_EQ(png.substr(idat + 4, 4), "IDAT");
    EXPECT_LT(be32(png, idat), 64u * 65u / 4);
}

}  // namespace
