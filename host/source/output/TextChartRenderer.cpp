#include "output/TextChartRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "output/NumberText.h"
#include "output/Utf8Text.h"

namespace host {

namespace {

std::string axisNumber(double v) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.4g", v == 0.0 ? 0.0 : v);
    return buffer;
}

// Cell of a coordinate on a grid of n cells over [low, high]. A span too
// large for a double (values near +-1.8e308) is taken in long double.
int cellOf(double v, double low, double high, int n) {
    if (high <= low) return n / 2;
    double share = (v - low) / (high - low);
    if (!std::isfinite(high - low))
        share = static_cast<double>((static_cast<long double>(v) - low) / (static_cast<long double>(high) - low));
    return std::clamp(static_cast<int>(share * n), 0, n - 1);
}

}  // namespace

void TextChartRenderer::render(std::ostream& out, const ChartView& chart) {
    out << chart.title() << '\n';
    const std::size_t pairs = chart.pairCount();
    out << "Scatter plot of " << groupedCount(pairs) << (pairs == 1 ? " point" : " points")
        << "; horizontal axis: " << chart.xLabel() << ", vertical axis: " << chart.yLabel() << ".\n";
    if (chart.lengthsDiffer())
        out << "The x data has " << groupedCount(chart.x().size()) << " values and the y data "
            << groupedCount(chart.y().size()) << "; only the first " << groupedCount(pairs) << " pairs are shown.\n";
    double xMin = 0, xMax = 0, yMin = 0, yMax = 0;
    std::size_t finite = 0;
    if (!chart.range(xMin, xMax, yMin, yMax, finite)) return;
    if (finite < pairs)
        out << groupedCount(pairs - finite) << " points with a missing coordinate are not drawn.\n";

    const int w = kSketchWidth;
    const int h = kSketchHeight;
    std::vector<std::size_t> counts(static_cast<std::size_t>(w * h), 0);
    for (std::size_t i = 0; i < pairs; ++i) {
        const double px = chart.x()[i];
        const double py = chart.y()[i];
        if (!std::isfinite(px) || !std::isfinite(py)) continue;
        const int col = cellOf(px, xMin, xMax, w);
        const int row = h - 1 - cellOf(py, yMin, yMax, h);
        ++counts[static_cast<std::size_t>(row * w + col)];
    }
    const std::size_t most = *std::max_element(counts.begin(), counts.end());
    static const std::string shades = ".:-=+*#%@";
    const std::string top = axisNumber(yMax);
    const std::string bottom = axisNumber(yMin);
    const std::size_t margin = std::max(top.size(), bottom.size());
    out << std::string(margin + 1, ' ') << chart.yLabel() << '\n';
    for (int row = 0; row < h; ++row) {
        std::string label = row == 0 ? top : row == h - 1 ? bottom : "";
        std::string line = std::string(margin - label.size(), ' ') + label + " |";
        for (int col = 0; col < w; ++col) {
            const std::size_t c = counts[static_cast<std::size_t>(row * w + col)];
            if (c == 0) {
                line += ' ';
                continue;
            }
            const double share = most > 1 ? std::log1p(static_cast<double>(c)) / std::log1p(static_cast<double>(most)) : 0.0;
            const auto shade = std::min<std::size_t>(shades.size() - 1, static_cast<std::size_t>(share * shades.size()));
            line += shades[shade];
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
    out << std::string(margin + 1, ' ') << '+' << std::string(static_cast<std::size_t>(w), '-') << '\n';
    const std::string left = axisNumber(xMin);
    const std::string right = axisNumber(xMax);
    std::string axis = std::string(margin + 2, ' ') + left;
    const std::size_t end = margin + 2 + static_cast<std::size_t>(w);
    if (axis.size() + 1 + right.size() <= end) axis += std::string(end - axis.size() - right.size(), ' ');
    else axis += ' ';
    out << axis << right << "  " << chart.xLabel() << '\n';
}

}  // namespace host
