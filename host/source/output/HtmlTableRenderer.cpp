#include "output/HtmlTableRenderer.h"

#include "output/HtmlText.h"

namespace host {

std::string HtmlTableRenderer::minWidthClass(int width) { return "min-" + std::to_string(width); }

std::string HtmlTableRenderer::minWidthStyle(int width) {
    const std::string table = "table." + minWidthClass(width);
    return table + " td.num," + table + " th.leaf{min-width:" + std::to_string(width) + "px}";
}

void HtmlTableRenderer::render(std::ostream& out, const PivotLayout& t, const std::string& id) {
    out << "<div class=\"table-wrap\">\n<table class=\"pivot";
    if (t.minColumnWidth > 0) out << ' ' << minWidthClass(t.minColumnWidth);
    out << "\" id=\"" << id << "\">\n";
    if (t.showTitle) {
        out << "<caption>" << htmlEscape(t.title);
        if (!t.titleMarkers.empty()) out << "<sup>" << htmlEscape(t.titleMarkers) << "</sup>";
        out << "</caption>\n";
    }
    if (t.headerRows > 0) {
        out << "<thead>\n";
        for (std::size_t r = 0; r < t.headerRows; ++r) {
            out << "<tr>";
            if (r == 0) {
                out << "<th class=\"stubhead\" scope=\"col\" colspan=\"" << t.stubColumns << "\" rowspan=\""
                    << t.headerRows << "\">" << htmlEscape(t.stubHeader) << "</th>";
            }
            for (const auto& h : t.headers) {
                if (h.row != r) continue;
                if (h.isGroup) {
                    out << "<th class=\"group\" scope=\"col\" colspan=\"" << h.columnSpan << "\">" << htmlEscape(h.text)
                        << "</th>";
                } else {
                    out << "<th class=\"leaf\" scope=\"col\"";
                    if (h.rowSpan > 1) out << " rowspan=\"" << h.rowSpan << "\"";
                    out << ">" << htmlEscape(h.text) << "</th>";
                }
            }
            out << "</tr>\n";
        }
        out << "</thead>\n";
    }
    out << "<tbody>\n";
    for (std::size_t r = 0; r < t.data.size(); ++r) {
        out << "<tr>";
        for (const std::string& label : t.stub[r]) out << "<th scope=\"row\">" << htmlEscape(label) << "</th>";
        for (const auto& d : t.data[r]) {
            out << (d.numeric ? "<td class=\"num\">" : "<td>") << htmlEscape(d.text) << "</td>";
        }
        out << "</tr>\n";
    }
    out << "</tbody>\n</table>\n";
    if (!t.footnotes.empty()) {
        out << "<div class=\"footnotes\">\n";
        for (const auto& [marker, text] : t.footnotes)
            out << "<p><sup>" << htmlEscape(marker) << "</sup> " << htmlEscape(text) << "</p>\n";
        out << "</div>\n";
    }
    out << "</div>\n";
}

}  // namespace host
