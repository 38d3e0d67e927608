// Scatter plots of extreme data end to end: denormal numbers and values at
// the largest double give finite axes with readable tick labels in the HTML
// report, a valid page, and a text sketch.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "DistcorrRunner.h"
#include "HtmlValidator.h"

namespace {

struct ChartRun {
    DistcorrResult result;
    std::string html;
    std::string htmlPath;
};

ChartRun plot(const std::string& csv) {
    const std::string folder = makeTempDir();
    const std::string data = folder + "/data.csv";
    std::ofstream(data) << csv;
    ChartRun run;
    run.htmlPath = folder + "/report.html";
    run.result = runDistcorr({"--data", data, "--html", run.htmlPath, "-e",
                              "DISTANCE CORRELATION VARIABLE=a b /PLOT SCATTERPLOT(XAXIS=a YAXIS=b)."});
    run.html = readWholeFile(run.htmlPath);
    return run;
}

std::vector<std::string> tickLabels(const std::string& html) {
    std::vector<std::string> labels;
    const std::regex tick("<text class=\"tick\"[^>]*>([^<]*)</text>");
    for (auto it = std::sregex_iterator(html.begin(), html.end(), tick); it != std::sregex_iterator(); ++it)
        labels.push_back((*it)[1]);
    return labels;
}

void expectFiniteChart(const ChartRun& run) {
    ASSERT_EQ(run.result.exitCode, 0) << run.result.err;
    EXPECT_NE(run.html.find("<figure class=\"chart\">"), std::string::npos);
    for (const char* bad : {"nan", "inf", "NaN", "Inf"}) EXPECT_EQ(run.html.find(bad), std::string::npos) << bad;
    const auto labels = tickLabels(run.html);
    EXPECT_GE(labels.size(), 4u);  // two or more ticks on each axis
    for (const std::string& label : labels) {
        EXPECT_FALSE(label.empty());
        EXPECT_NE(label, ".");
        EXPECT_EQ(label.find_first_not_of("0123456789.-+e"), std::string::npos) << label;
    }
    const TidyResult tidy = runTidy(run.htmlPath);
    ASSERT_NE(tidy.exitCode, 127) << "the HTML validator tidy is missing (apt-get install tidy)";
    EXPECT_EQ(tidy.exitCode, 0) << tidy.messages;
    // The text sketch is drawn too, with its frame.
    EXPECT_NE(run.result.out.find("+------------------------------------------------------------"), std::string::npos)
        << run.result.out;
}

TEST(DistcorrReportChartAxesTest, DenormalDistancesGiveFiniteAxes) {
    // b's distances are multiples of 5e-324, the smallest denormal.
    const ChartRun run = plot("a,b\n1,0\n2,5e-324\n3,1e-323\n4,1.5e-323\n5,2e-323\n");
    expectFiniteChart(run);
    const auto labels = tickLabels(run.html);
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(),
                            [](const std::string& l) { return l.find("e-32") != std::string::npos; }));
}

TEST(DistcorrReportChartAxesTest, DistancesNearTheLargestDoubleGiveFiniteAxes) {
    // b's distances reach 1.7976931348623157e308 (half of it twice over
    // overflows, and those pairs have no point); the rest lie near 1e308.
    expectFiniteChart(plot("a,b\n1,1.7976931348623157e308\n2,0\n3,8e307\n4,1e308\n"));
}

TEST(DistcorrReportChartAxesTest, EqualValuesGiveAnAxisAroundThem) {
    // b is constant: every distance is 0, and the axis is widened around it.
    const ChartRun run = plot("a,b\n1,1.7976931348623157e308\n2,1.7976931348623157e308\n3,1.7976931348623157e308\n");
    expectFiniteChart(run);
}

}  // namespace
