#pragma once
#include <ostream>

#include "output/ChartView.h"

namespace host {

// Writes a chart as text: its title, a note with the point count and the
// axes, and a small density sketch of the points.
class TextChartRenderer {
public:
    static constexpr int kSketchWidth = 60;
    static constexpr int kSketchHeight = 15;

    static void render(std::ostream& out, const ChartView& chart);
};

}  // namespace host
