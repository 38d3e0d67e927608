#pragma once
#include <cstddef>
#include <ostream>

#include "output/ChartView.h"

namespace host {

// Draws a scatter plot as inline SVG: title, axes with ticks and labels,
// and one circle per point; beyond pointLimit points, a density image
// (binned counts as an embedded PNG) instead of the circles.
class SvgChartRenderer {
public:
    static void render(std::ostream& out, const ChartView& chart, std::size_t pointLimit);
};

}  // namespace host
