// The scatter plot of the pairwise distances of the XAXIS and YAXIS variables.
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "DistanceCorrOutputChart.h"
#include "DistanceCorrOutputGen.h"

namespace {

// The upper triangle of the matrix, row by row: point k of the chart is the
// k-th case pair (0,1), (0,2), ..., (1,2), ...
void appendPairDistances(const std::vector<std::vector<double>>& matrix, std::vector<double>& out) {
    const std::size_t n = matrix.size();
    out.reserve(out.size() + n * (n > 0 ? n - 1 : 0) / 2);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 1; j < n && j < matrix[i].size(); ++j) out.push_back(matrix[i][j]);
}

}  // namespace

unsigned DistanceCorrOutputGen::generateOutputChart() {
    if (descriptives_.empty()) return 1;
    const SubCommands::PlotSettings& plot = settings_.plotSettings();
    const std::string xName = plot.get_xAxisName();
    const std::string yName = plot.get_yAxisName();
    if (xName.empty() || yName.empty()) return 1;

    const std::string title = lookUp("Scatter Plot of pairwise distances");
    std::unique_ptr<DistanceCorrOutputChart> chart(
        new (std::nothrow) DistanceCorrOutputChart(generator_.get(), title));
    if (!chart) return 0;
    chart->setLabel(true, xName);
    chart->setLabel(false, yName);

    std::vector<double> xData;
    std::vector<double> yData;
    for (const DistanceCorrDescriptiveResult& d : descriptives_) {
        if (d.varName == xName) appendPairDistances(d.distanceMatrix, xData);
        if (d.varName == yName) appendPairDistances(d.distanceMatrix, yData);
    }

    chart->setDataVector(std::move(xData), true);
    chart->setDataVector(std::move(yData), false);
    chart->addGPLGraphToProcedureJSON();
    return 0;
}
