#include <ostream>

#include "output/ChartView.h"
#include "output/HtmlTableRenderer.h"
#include "output/HtmlText.h"
#include "output/PivotLayout.h"
#include "output/Report.h"
#include "output/SvgChartRenderer.h"

namespace host {

namespace {

const char* kStyle = R"(body{font-family:"DejaVu Sans",Arial,Helvetica,sans-serif;font-size:14px;color:#222;margin:24px;background:#fff}
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
.table-wrap{overflow-x:auto;margin:12px 0 20px}
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
)";

std::string stringMember(const rapidjson::Value& object, const char* name) {
    if (!object.IsObject()) return "";
    auto it = object.FindMember(name);
    return it != object.MemberEnd() && it->value.IsString() ? it->value.GetString() : "";
}

const char* levelWord(MessageLevel level) {
    switch (level) {
    case MessageLevel::Error: return "error";
    case MessageLevel::Warning: return "warning";
    case MessageLevel::Note: return "note";
    }
    return "note";
}

const char* levelTitle(MessageLevel level) {
    switch (level) {
    case MessageLevel::Error: return "Error";
    case MessageLevel::Warning: return "Warning";
    case MessageLevel::Note: return "Note";
    }
    return "Note";
}

void writeRun(std::ostream& out, const RunRecord& run, std::size_t runIndex) {
    out << "<section class=\"run\">\n<pre class=\"command\">" << htmlEscape(run.command) << "</pre>\n";
    if (!run.messages.empty()) {
        out << "<ul class=\"messages\">\n";
        for (const HostMessage& m : run.messages)
            out << "<li class=\"" << levelWord(m.level) << "\"><span class=\"level\">" << levelTitle(m.level)
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
                if (type == "table")
                    HtmlTableRenderer::render(out, PivotLayout(item),
                                              "t" + std::to_string(runIndex) + "-" + std::to_string(itemIndex));
                else if (type == "chart")
                    SvgChartRenderer::render(out, ChartView(item, run.charts), kHtmlPointLimit);
            }
        }
    }
    out << "</section>\n";
}

}  // namespace

void writeHtmlReport(std::ostream& out, const std::vector<RunRecord>& runs) {
    const std::string& language = HostSession::instance().language();
    out << "<!DOCTYPE html>\n<html lang=\"" << htmlEscape(language.empty() ? "en" : language)
        << "\">\n<head>\n<meta charset=\"utf-8\">\n<title>Output</title>\n<style>\n"
        << kStyle << "</style>\n</head>\n<body>\n<h1>Output</h1>\n";
    std::size_t index = 0;
    for (const RunRecord& run : runs) writeRun(out, run, ++index);
    out << "</body>\n</html>\n";
}

}  // namespace host
