// The HTML report end to end: a valid page (checked by the validator tidy)
// whose header names the data file, the cases and variables loaded, the time
// it was made, the distcorr version and the language.
#include <gtest/gtest.h>

#include <ctime>
#include <regex>

#include "DistcorrRunner.h"
#include "HtmlValidator.h"
#include "Version.h"

namespace {

const std::string kData = fixture("e2e/wide_labels.csv");  // 8 cases; id, height, weight, cafe
const std::string kCommand =
    "DISTANCE CORRELATION VARIABLE=height weight cafe /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR "
    "DISTMATRIX(CONFIGURE=[height]) /PLOT SCATTERPLOT(XAXIS=height YAXIS=weight).";

std::string reportOf(const std::vector<std::string>& extra, const std::string& command = kCommand) {
    const std::string html = makeTempDir() + "/report.html";
    std::vector<std::string> args{"--quiet", "--data", kData, "-e", command, "--html", html};
    args.insert(args.end(), extra.begin(), extra.end());
    const DistcorrResult r = runDistcorr(args);
    EXPECT_EQ(r.exitCode, 0) << r.err;
    return readWholeFile(html);
}

TEST(DistcorrReportHtmlTest, HeaderNamesDataCasesVariablesTimeVersionAndLanguage) {
    const std::time_t before = std::time(nullptr);
    const std::string page = reportOf({});
    const std::time_t after = std::time(nullptr);
    EXPECT_NE(page.find("<title>distcorr report: " + kData + "</title>"), std::string::npos);
    EXPECT_NE(page.find("<h1>distcorr report: wide_labels.csv</h1>"), std::string::npos);
    EXPECT_NE(page.find("<dt>Data file</dt><dd>" + kData + "</dd>"), std::string::npos);
    EXPECT_NE(page.find("<dt>Loaded</dt><dd>8 cases, 4 variables</dd>"), std::string::npos);
    EXPECT_NE(page.find("<dt>Version</dt><dd>distcorr " + std::string(host::version()) + "</dd>"), std::string::npos);
    EXPECT_NE(page.find("<dt>Language</dt><dd>en</dd>"), std::string::npos);
    EXPECT_NE(page.find("<html lang=\"en\">"), std::string::npos);
    // The time of the run, to the second, with its offset from UTC.
    std::smatch stamp;
    const std::regex datetime(
        "<time datetime=\"(\\d{4})-(\\d\\d)-(\\d\\d)T(\\d\\d):(\\d\\d):(\\d\\d)([+-])(\\d\\d):(\\d\\d)\">");
    ASSERT_TRUE(std::regex_search(page, stamp, datetime)) << page.substr(0, 3000);
    std::tm utc{};
    utc.tm_year = std::stoi(stamp[1]) - 1900;
    utc.tm_mon = std::stoi(stamp[2]) - 1;
    utc.tm_mday = std::stoi(stamp[3]);
    utc.tm_hour = std::stoi(stamp[4]);
    utc.tm_min = std::stoi(stamp[5]);
    utc.tm_sec = std::stoi(stamp[6]);
    const long offset = (stamp[7] == "-" ? -1 : 1) * (std::stol(stamp[8]) * 3600 + std::stol(stamp[9]) * 60);
    const std::time_t shown = ::timegm(&utc) - offset;
    EXPECT_GE(shown, before);
    EXPECT_LE(shown, after);
}

TEST(DistcorrReportHtmlTest, LanguageOfTheLabelsIsThePagesLanguage) {
    const std::string page = reportOf({"--lang", "de"});
    EXPECT_NE(page.find("<html lang=\"de\">"), std::string::npos);
    EXPECT_NE(page.find("<dt>Language</dt><dd>de</dd>"), std::string::npos);
    EXPECT_NE(page.find("<caption>Deskriptive Statistiken</caption>"), std::string::npos);
}

TEST(DistcorrReportHtmlTest, ReportIsValidHtmlForTheValidator) {
    for (const std::vector<std::string>& extra :
         {std::vector<std::string>{}, std::vector<std::string>{"--lang", "de"}}) {
        const std::string path = makeTempDir() + "/page.html";
        { std::ofstream(path, std::ios::binary) << reportOf(extra); }
        const TidyResult tidy = runTidy(path);
        ASSERT_NE(tidy.exitCode, 127) << "the HTML validator tidy is missing (apt-get install tidy)";
        EXPECT_EQ(tidy.exitCode, 0) << tidy.messages;
    }
}

TEST(DistcorrReportHtmlTest, TablesHaveScopedHeadersAndStylesStayInTheHead) {
    const std::string page = reportOf({});
    const std::size_t headEnd = page.find("</head>");
    EXPECT_EQ(page.find("<style"), page.rfind("<style"));
    EXPECT_LT(page.find("<style"), headEnd);
    std::size_t headers = 0;
    for (std::size_t at = page.find("<th"); at != std::string::npos; at = page.find("<th", at + 3)) {
        if (page.compare(at, 6, "<thead") == 0) continue;
        ++headers;
        const std::string tag = page.substr(at, page.find('>', at) - at);
        EXPECT_TRUE(tag.find("scope=\"col\"") != std::string::npos || tag.find("scope=\"row\"") != std::string::npos)
            << tag;
    }
    EXPECT_GT(headers, 20u);
}

}  // namespace
