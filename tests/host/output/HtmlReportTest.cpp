// The HTML report: one self-contained page with the runs' commands, messages,
// tables and charts; a chart is drawn point by point up to the point limit
// and as a density image beyond it.
#include <cstdint>
#include <sstream>

#include <gtest/gtest.h>

#include "OutputTestSupport.h"
#include "output/HtmlText.h"
#include "output/PngImage.h"

namespace {

std::size_t count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++n;
    return n;
}

std::string page(std::vector<host::RunRecord>& runs) {
    std::ostringstream out;
    host::writeHtmlReport(out, runs);
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
    EXPECT_NE(html.find("<li class=\"warning\"><span class=\"level\">Warning</span>Performance &lt;improvement&gt; ...</li>"),
              std::string::npos);
    EXPECT_NE(html.find("<li class=\"error\"><span class=\"level\">Error</span>Unknown variable q.</li>"),
              std::string::npos);
    EXPECT_NE(html.find("<h2>Distance Correlation</h2>"), std::string::npos);
    EXPECT_NE(html.find("<caption>Distance Correlation Coefficients<sup>a</sup></caption>"), std::string::npos);
    EXPECT_NE(html.find("<tr><th class=\"stubhead\" colspan=\"1\" rowspan=\"2\">Variable</th>"
                        "<th class=\"leaf\" rowspan=\"2\">dCor Value</th>"
                        "<th class=\"group\" colspan=\"2\">Confidence Interval 95.00</th></tr>\n"
                        "<tr><th class=\"leaf\">Lower</th><th class=\"leaf\">Upper</th></tr>"),
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

TEST(HtmlReportTest, PageLanguageFollowsTheSession) {
    host::HostSession::instance().setLanguage("de");
    std::vector<host::RunRecord> runs;
    const std::string html = page(runs);
    host::HostSession::instance().setLanguage("");
    EXPECT_NE(html.find("<html lang=\"de\">"), std::string::npos);
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

TEST(HtmlReportTest, PngHasItsChunksAndStoredPixels) {
    host::PngImage image(2, 1);
    image.setPalette({{255, 255, 255}, {0, 0, 255}, {255, 0, 0}});
    image.at(0, 0) = 1;
    image.at(1, 0) = 2;
    const std::string png = image.encode();
    ASSERT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
    // IHDR: 13 bytes, width 2, height 1, 8 bits, palette.
    EXPECT_EQ(be32(png, 8), 13u);
    EXPECT_EQ(png.substr(12, 4), "IHDR");
    EXPECT_EQ(be32(png, 16), 2u);
    EXPECT_EQ(be32(png, 20), 1u);
    EXPECT_EQ(png[24], 8);
    EXPECT_EQ(png[25], 3);
    // PLTE: three colours.
    const std::size_t plte = 8 + 12 + 13;
    EXPECT_EQ(be32(png, plte), 9u);
    EXPECT_EQ(png.substr(plte + 4, 4), "PLTE");
    // IDAT: zlib header, one final stored block of the 3 bytes (filter 0,
    // then the indices 1 and 2), and the Adler-32 of those bytes:
    // a = 1 + 0 + 1 + 2 = 4, b = 1 + 2 + 4 = 7, so 0x00070004.
    const std::size_t idat = plte + 12 + 9;
    EXPECT_EQ(png.substr(idat + 4, 4), "IDAT");
    EXPECT_EQ(be32(png, idat), 2u + 5u + 3u + 4u);
    EXPECT_EQ(png.substr(idat + 8, 2), std::string("\x78\x01", 2));
    EXPECT_EQ(png.substr(idat + 10, 5), std::string("\x01\x03\x00\xfc\xff", 5));
    EXPECT_EQ(png.substr(idat + 15, 3), std::string("\x00\x01\x02", 3));
    EXPECT_EQ(be32(png, idat + 18), 0x00070004u);
    // IEND has no data and the well-known CRC AE 42 60 82.
    const std::size_t iend = png.size() - 12;
    EXPECT_EQ(be32(png, iend), 0u);
    EXPECT_EQ(png.substr(iend + 4, 4), "IEND");
    EXPECT_EQ(be32(png, iend + 8), 0xAE426082u);
}

}  // namespace
