#include "output/HtmlReport.h"

#include <time.h>

#include <ctime>
#include <ostream>
#include <set>
#include <sstream>

#include "Version.h"
#include "output/ChartView.h"
#include "output/HtmlTableRenderer.h"
#include "output/HtmlText.h"
#include "output/NumberText.h"
#include "output/PivotLayout.h"
#include "output/SvgChartRenderer.h"

namespace host {

namespace {

const char* kStyle =
    R"(body{font-family:"DejaVu Sans",Arial,Helvetica,sans-serif;font-size:14px;color:#222;margin:24px;background:#fff}
h1{font-size:22px;margin:0 0 16px}
h2{font-size:18px;margin:20px 0 8px}
section.run{border-top:2px solid #4a6d8c;padding-top:8px;margin-bottom:32px}
pre.command{background:#f3f5f7;border:1px solid #d5dbe1;padding:8px 10px;white-space:pre-wrap;margin:0 0 8px}
ul.messages{list-style:none;padding:0;margin:0 0 8px}
ul.messages li{padding:4px 8px;margin:2px 0;border-left:4px solid}
li.error{background:#fdecea;border-color:#c62828}
li.warning{background:#fff8e1;border-color:#f9a825}
li.note{background:#eef3f8;border-color:#4a6d8c}
.level{font-weight:bold;margin-right:6px}
header.report{margin:0 0 24px}
header.report h1{margin-bottom:8px}
dl.facts{display:grid;grid-template-columns:max-content auto;gap:2px 16px;margin:0;font-size:13px}
dl.facts dt{color:#555}
dl.facts dd{margin:0}
.table-wrap{overflow-x:auto;max-width:100%;margin:12px 0 20px}
table.pivot{border-collapse:collapse;font-size:13px}
table.pivot caption{text-align:left;font-weight:bold;font-size:15px;padding:4px 0}
table.pivot th,table.pivot td{border:1px solid #c4ccd4;padding:3px 8px}
table.pivot thead th{background:#e8eef4;text-align:center;font-weight:normal}
table.pivot thead th.stubhead{text-align:left;vertical-align:bottom}
table.pivot tbody th{background:#f3f6f9;text-align:left;font-weight:normal;white-space:nowrap}
table.pivot td.num{text-align:right;font-variant-numeric:tabular-nums;white-space:nowrap}
.footnotes p{margin:2px 0;font-size:12px}
figure.chart{margin:12px 0 20px}
figure.chart figcaption{font-size:12px;color:#444;max-width:640px}
svg .plot{fill:#fff;stroke:none}
svg .grid{stroke:#e3e7eb;stroke-width:1}
svg .axis{stroke:#333;stroke-width:1}
svg .tick{font-size:11px;fill:#333}
svg .title{font-size:15px;font-weight:bold;fill:#222}
svg .axis-label{font-size:13px;fill:#222}
svg .pt{fill:#1f5fa8;fill-opacity:0.55}
svg .density{image-rendering:pixelated}
svg .legend-title{font-size:11px;fill:#222}
svg .swatch{stroke:#8a96a3;stroke-width:0.5}
)";

std::string stringMember(const rapidjson::Value& object, const char* name) {
    if (!object.IsObject()) return "";
    auto it = object.FindMember(name);
    return it != object.MemberEnd() && it->value.IsString() ? it->value.GetString() : "";
}

const char* levelTitle(MessageLevel level) {
    switch (level) {
    case MessageLevel::Error: return "Error";
    case MessageLevel::Warning: return "Warning";
    case MessageLevel::Note: return "Note";
    }
    return "Note";
}

// The data file as the user named it; "-" is standard input.
std::string dataName(const ReportContext& context) {
    return context.dataFile == "-" ? "standard input" : context.dataFile;
}

std::string pageLanguage(const ReportContext& context) { return context.language.empty() ? "en" : context.language; }

void writeRun(std::ostream& out, const RunRecord& run, std::size_t runIndex, std::set<int>& minWidths) {
    out << "<section class=\"run\">\n<pre class=\"command\">" << htmlEscape(run.command) << "</pre>\n";
    if (!run.messages.empty()) {
        out << "<ul class=\"messages\">\n";
        for (const HostMessage& m : run.messages)
            out << "<li class=\"" << messageLevelName(m.level) << "\"><span class=\"level\">" << levelTitle(m.level)
                << "</span>" << htmlEscape(m.text) << "</li>\n";
        out << "</ul>\n";
    }
    if (run.output && run.output->IsObject()) {
        const rapidjson::Value& output = *run.output;
        out << "<h2>" << htmlEscape(stringMember(output, "procedure")) << "</h2>\n";
        const std::string subtitle = stringMember(output, "subtitle");
        if (!subtitle.empty()) out << "<p class=\"subtitle\">" << htmlEscape(subtitle) << "</p>\n";
        auto items = output.FindMember("items");
        if (items != output.MemberEnd() && items->value.IsArray()) {
            std::size_t itemIndex = 0;
            for (const auto& item : items->value.GetArray()) {
                ++itemIndex;
                const std::string type = stringMember(item, "type");
                if (type == "table") {
                    const PivotLayout table(item);
                    if (table.minColumnWidth > 0) minWidths.insert(table.minColumnWidth);
                    HtmlTableRenderer::render(out, table,
                                              "t" + std::to_string(runIndex) + "-" + std::to_string(itemIndex));
                } else if (type == "chart")
                    SvgChartRenderer::render(out, ChartView(item, run.charts), kHtmlPointLimit);
            }
        }
    }
    out << "</section>\n";
}

// "2026-11-22 21:40:05 CET" and, for the datetime attribute, the same
// moment as "2026-11-22T21:40:05+01:00".
void writeTime(std::ostream& out, std::time_t time) {
    std::tm local{};
    ::localtime_r(&time, &local);
    char shown[64], zone[8], stamp[32];
    std::strftime(shown, sizeof shown, "%Y-%m-%d %H:%M:%S %Z", &local);
    std::strftime(zone, sizeof zone, "%z", &local);
    std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S", &local);
    const std::string offset = std::string(zone).size() == 5 ? std::string(zone, 3) + ":" + (zone + 3) : "Z";
    out << "<time datetime=\"" << stamp << offset << "\">" << htmlEscape(shown) << "</time>";
}

void writeHeader(std::ostream& out, const ReportContext& context) {
    const std::string data = dataName(context);
    const std::size_t slash = data.find_last_of('/');
    const std::string fileName = slash == std::string::npos ? data : data.substr(slash + 1);
    out << "<header class=\"report\">\n<h1>distcorr report: " << htmlEscape(fileName) << "</h1>\n<dl class=\"facts\">\n"
        << "<dt>Data file</dt><dd>" << htmlEscape(data) << "</dd>\n"
        << "<dt>Loaded</dt><dd>" << groupedCount(context.cases) << (context.cases == 1 ? " case, " : " cases, ")
        << context.variables << (context.variables == 1 ? " variable" : " variables") << "</dd>\n"
        << "<dt>Created</dt><dd>";
    writeTime(out, context.created);
    out << "</dd>\n<dt>Version</dt><dd>distcorr " << htmlEscape(version()) << "</dd>\n"
        << "<dt>Language</dt><dd>" << htmlEscape(pageLanguage(context)) << "</dd>\n</dl>\n</header>\n";
}

}  // namespace

void HtmlReport::add(const RunRecord& run) { writeRun(body_, run, ++runs_, minWidths_); }

void HtmlReport::finish(std::ostream& out, const ReportContext& context, const BodyCopier& copyBody) const {
    const std::string title = "distcorr report: " + dataName(context);
    out << "<!DOCTYPE html>\n<html lang=\"" << htmlEscape(pageLanguage(context))
        << "\">\n<head>\n<meta charset=\"utf-8\">\n<title>" << htmlEscape(title) << "</title>\n<style>\n"
        << kStyle;
    for (int width : minWidths_) out << HtmlTableRenderer::minWidthStyle(width) << '\n';
    out << "</style>\n</head>\n<body>\n";
    writeHeader(out, context);
    copyBody(out);
    out << "</body>\n</html>\n";
}

void writeHtmlReport(std::ostream& out, const std::vector<RunRecord>& runs, const ReportContext& context) {
    std::ostringstream body;
    HtmlReport report(body);
    for (const RunRecord& run : runs) report.add(run);
    report.finish(out, context, [&body](std::ostream& page) {
        const std::string text = body.str();
        page.write(text.data(), static_cast<std::streamsize>(text.size()));
    });
}

}  // namespace host
