#pragma once
#include <ostream>

#include "output/PivotLayout.h"

namespace host {

// Writes a pivot table as plain text: the title with its footnote markers,
// the column headers (groups centred over their columns and underlined),
// the row labels in the stub, the data, and the footnotes below.
class TextTableRenderer {
public:
    static void render(std::ostream& out, const PivotLayout& table);
};

}  // namespace host
