#pragma once
#include <ostream>
#include <string>

#include "output/PivotLayout.h"

namespace host {

// Writes a pivot table as an HTML table: caption with footnote markers,
// spanning column headers, stub header cells, and the footnotes below.
class HtmlTableRenderer {
public:
    static void render(std::ostream& out, const PivotLayout& table, const std::string& id);
};

}  // namespace host
