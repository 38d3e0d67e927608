#include "output/SvgChartRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "output/ChartAxis.h"
#include "output/HtmlText.h"
#include "output/NumberText.h"
#include "output/PngImage.h"

namespace host {

namespace {

constexpr double kWidth = 640;
constexpr double kHeight = 440;
constexpr double kLeft = 84;
constexpr double kRight = 24;
constexpr double kTop = 48;
constexpr double kBottom = 64;
constexpr double kPlotWidth = kWidth - kLeft - kRight;
constexpr double kPlotHeight = kHeight - kTop - kBottom;
constexpr int kBinPixels = 4;  // density cells are 4 x 4 pixels
constexpr double kLegendWidth = 110;  // room right of the plot for the density legend
constexpr double kSwatch = 14;
constexpr std::size_t kMostLegendPowers = 5;

std::string px(double v) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.1f", v);
    return buffer;
}

PngImage::Colour blend(const PngImage::Colour& a, const PngImage::Colour& b, double t) {
    PngImage::Colour c{};
    for (int i = 0; i < 3; ++i) c[i] = static_cast<std::uint8_t>(std::lround(a[i] + (b[i] - a[i]) * t));
    return c;
}

// Index 0 is the empty cell (white); 1 to 255 run from light to dark blue.
std::vector<PngImage::Colour> densityPalette() {
    const PngImage::Colour light{198, 219, 239}, middle{66, 146, 198}, dark{8, 48, 107};
    std::vector<PngImage::Colour> palette{{255, 255, 255}};
    for (int i = 1; i < 256; ++i) {
        const double t = (i - 1) / 254.0;
        palette.push_back(t < 0.5 ? blend(light, middle, t * 2) : blend(middle, dark, (t - 0.5) * 2));
    }
    return palette;
}

// Palette index of a cell of `count` points when the fullest cell holds
// `largest`: logarithmic, so that sparse cells stay visible.
std::uint8_t densityIndex(std::size_t count, std::size_t largest) {
    if (count == 0) return 0;
    const double scale = std::log1p(static_cast<double>(std::max<std::size_t>(largest, 1)));
    return static_cast<std::uint8_t>(1 + std::lround(254 * std::log1p(static_cast<double>(count)) / scale));
}

std::string colourText(const PngImage::Colour& c) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", c[0], c[1], c[2]);
    return text;
}

// Counts the legend shows, largest first: the largest, powers of ten below
// it (every other one when there are many), 1 and 0.
std::vector<std::size_t> legendCounts(std::size_t largest) {
    std::vector<std::size_t> powers;
    for (std::size_t p = 10; p<largest; p = p> largest / 10 ? largest : p * 10) powers.push_back(p);
    while (powers.size() > kMostLegendPowers) {
        std::vector<std::size_t> half;
        for (std::size_t i = powers.size() % 2; i < powers.size(); i += 2) half.push_back(powers[i]);
        powers.swap(half);
    }
    std::vector<std::size_t> counts;
    if (largest > 1) counts.push_back(largest);
    counts.insert(counts.end(), powers.rbegin(), powers.rend());
    counts.push_back(1);
    counts.push_back(0);
    return counts;
}

// The colour scale of the density image, right of the plot: one swatch per
// count, coloured as a cell holding that many points.
void drawDensityLegend(std::ostream& out, std::size_t largest) {
    const std::vector<PngImage::Colour> palette = densityPalette();
    const double x = kWidth + 4;
    out << "<g class=\"legend\">\n<text class=\"legend-title\" x=\"" << x << "\" y=\"" << kTop + 4
        << "\">Points per cell</text>\n";
    double y = kTop + 16;
    for (std::size_t count : legendCounts(largest)) {
        out << "<rect class=\"swatch\" x=\"" << x << "\" y=\"" << y << "\" width=\"" << kSwatch << "\" height=\""
            << kSwatch << "\" fill=\"" << colourText(palette[densityIndex(count, largest)])
            << "\"/><text class=\"tick\" x=\"" << x + kSwatch + 6 << "\" y=\"" << y + kSwatch - 3 << "\">"
            << groupedCount(count) << "</text>\n";
        y += kSwatch + 6;
    }
    out << "</g>\n";
}

void drawDensity(std::ostream& out, const ChartView& chart, const ChartAxis& ax, const ChartAxis& ay,
                 std::size_t& largest) {
    const int nx = static_cast<int>(kPlotWidth) / kBinPixels;
    const int ny = static_cast<int>(kPlotHeight) / kBinPixels;
    std::vector<std::size_t> counts(static_cast<std::size_t>(nx * ny), 0);
    const std::size_t n = chart.pairCount();
    for (std::size_t i = 0; i < n; ++i) {
        const double x = chart.x()[i];
        const double y = chart.y()[i];
        if (!std::isfinite(x) || !std::isfinite(y)) continue;
        const int bx = std::clamp(static_cast<int>(ax.share(x) * nx), 0, nx - 1);
        const int by = ny - 1 - std::clamp(static_cast<int>(ay.share(y) * ny), 0, ny - 1);
        ++counts[static_cast<std::size_t>(by * nx + bx)];
    }
    largest = *std::max_element(counts.begin(), counts.end());
    PngImage image(nx, ny);
    image.setPalette(densityPalette());
    for (int y = 0; y < ny; ++y)
        for (int x = 0; x < nx; ++x)
            image.at(x, y) = densityIndex(counts[static_cast<std::size_t>(y * nx + x)], largest);
    out << "<image class=\"density\" x=\"" << kLeft << "\" y=\"" << kTop << "\" width=\"" << nx * kBinPixels
        << "\" height=\"" << ny * kBinPixels << "\" preserveAspectRatio=\"none\" href=\"data:image/png;base64,"
        << base64(image.encode()) << "\"/>\n";
}

void drawPoints(std::ostream& out, const ChartView& chart, const ChartAxis& ax, const ChartAxis& ay) {
    out << "<g class=\"points\">\n";
    const std::size_t n = chart.pairCount();
    for (std::size_t i = 0; i < n; ++i) {
        const double x = chart.x()[i];
        const double y = chart.y()[i];
        if (!std::isfinite(x) || !std::isfinite(y)) continue;
        out << "<circle class=\"pt\" cx=\"" << px(kLeft + ax.share(x) * kPlotWidth) << "\" cy=\""
            << px(kTop + kPlotHeight - ay.share(y) * kPlotHeight) << "\" r=\"2.5\"/>\n";
    }
    out << "</g>\n";
}

}  // namespace

void SvgChartRenderer::render(std::ostream& out, const ChartView& chart, std::size_t pointLimit) {
    double xMin = 0, xMax = 1, yMin = 0, yMax = 1;
    std::size_t finite = 0;
    chart.range(xMin, xMax, yMin, yMax, finite);
    const ChartAxis ax(xMin, xMax);
    const ChartAxis ay(yMin, yMax);
    const bool density = finite > pointLimit;

    const double width = kWidth + (density ? kLegendWidth : 0);
    out << "<figure class=\"chart\">\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\""
        << kHeight << "\" viewBox=\"0 0 " << width << ' ' << kHeight << "\" role=\"img\" aria-label=\""
        << htmlEscape(chart.title()) << "\">\n";
    out << "<rect class=\"plot\" x=\"" << kLeft << "\" y=\"" << kTop << "\" width=\"" << kPlotWidth << "\" height=\""
        << kPlotHeight << "\"/>\n";
    for (const ChartAxis::Tick& t : ax.ticks()) {
        const std::string x = px(kLeft + t.share * kPlotWidth);
        out << "<line class=\"grid\" x1=\"" << x << "\" y1=\"" << kTop << "\" x2=\"" << x << "\" y2=\""
            << kTop + kPlotHeight << "\"/><text class=\"tick\" x=\"" << x << "\" y=\"" << kTop + kPlotHeight + 18
            << "\" text-anchor=\"middle\">" << t.label << "</text>\n";
    }
    for (const ChartAxis::Tick& t : ay.ticks()) {
        const std::string y = px(kTop + kPlotHeight - t.share * kPlotHeight);
        out << "<line class=\"grid\" x1=\"" << kLeft << "\" y1=\"" << y << "\" x2=\"" << kLeft + kPlotWidth
            << "\" y2=\"" << y << "\"/><text class=\"tick\" x=\"" << kLeft - 8 << "\" y=\"" << y
            << "\" dy=\"4\" text-anchor=\"end\">" << t.label << "</text>\n";
    }
    std::size_t largest = 0;
    if (density) {
        drawDensity(out, chart, ax, ay, largest);
        drawDensityLegend(out, largest);
    } else {
        drawPoints(out, chart, ax, ay);
    }
    out << "<line class=\"axis\" x1=\"" << kLeft << "\" y1=\"" << kTop + kPlotHeight << "\" x2=\""
        << kLeft + kPlotWidth << "\" y2=\"" << kTop + kPlotHeight << "\"/>\n";
    out << "<line class=\"axis\" x1=\"" << kLeft << "\" y1=\"" << kTop << "\" x2=\"" << kLeft << "\" y2=\""
        << kTop + kPlotHeight << "\"/>\n";
    out << "<text class=\"title\" x=\"" << kWidth / 2 << "\" y=\"28\" text-anchor=\"middle\">"
        << htmlEscape(chart.title()) << "</text>\n";
    out << "<text class=\"axis-label\" x=\"" << kLeft + kPlotWidth / 2 << "\" y=\"" << kHeight - 18
        << "\" text-anchor=\"middle\">" << htmlEscape(chart.xLabel()) << "</text>\n";
    out << "<text class=\"axis-label\" transform=\"translate(22 " << kTop + kPlotHeight / 2
        << ") rotate(-90)\" text-anchor=\"middle\">" << htmlEscape(chart.yLabel()) << "</text>\n";
    out << "</svg>\n<figcaption>";
    const std::size_t pairs = chart.pairCount();
    out << groupedCount(pairs) << (pairs == 1 ? " point" : " points") << '.';
    if (density)
        out << " Drawn as a density image: the plane is divided into " << kBinPixels << " &times; " << kBinPixels
            << " pixel cells, and darker cells hold more points (at most " << groupedCount(largest)
            << " in one cell); the scale beside the chart gives the colour of each count.";
    if (chart.lengthsDiffer())
        out << " The x data has " << groupedCount(chart.x().size()) << " values and the y data "
            << groupedCount(chart.y().size()) << "; only the first " << groupedCount(pairs) << " pairs are drawn.";
    if (finite < pairs) out << ' ' << groupedCount(pairs - finite) << " points with a missing coordinate are not drawn.";
    out << "</figcaption>\n</figure>\n";
}

}  // namespace host
