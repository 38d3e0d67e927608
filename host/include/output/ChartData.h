#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host {

// The data columns of one chart. They are kept beside the output document,
// not inside it: a scatter plot can carry millions of points, and a JSON DOM
// would hold each of them at twice the size.
struct ChartData {
    std::vector<double> x;  // column "xdata"
    std::vector<double> y;  // column "ydata"
};

// Chart data by chart data id (the "id" of the chart item's "data" member).
using ChartDataMap = std::map<std::string, std::shared_ptr<const ChartData>>;

}  // namespace host
