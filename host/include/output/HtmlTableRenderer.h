#pragma once
#include <ostream>
#include <string>

#include "output/PivotLayout.h"

namespace host {

// Writes a pivot table as an HTML table: caption with footnote markers,
// spanning column headers (scope="col"), stub header cells (scope="row"),
// and the footnotes below, in a box that scrolls sideways when the table is
// wider than the page. The table's minimum data column width is a class
// whose rule, minWidthStyle, belongs in the page's style sheet.
class HtmlTableRenderer {
public:
    static void render(std::ostream& out, const PivotLayout& table, const std::string& id);

    static std::string minWidthClass(int width);
    static std::string minWidthStyle(int width);
};

}  // namespace host
