#pragma once
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <rapidjson/document.h>

#include "output/ChartData.h"

namespace host {

// What the renderers need of a chart item: the title and axis labels from
// its GPL statements (GUIDE text.title, GUIDE axis dim(1) and dim(2)), and
// the x and y columns named by its DATA and ELEMENT statements, taken from
// the chart data kept beside the document (or from "data" in the item).
class ChartView {
public:
    ChartView(const rapidjson::Value& item, const ChartDataMap& charts);
    ChartView(const ChartView&) = delete;
    ChartView& operator=(const ChartView&) = delete;

    const std::string& title() const { return title_; }
    const std::string& xLabel() const { return xLabel_; }
    const std::string& yLabel() const { return yLabel_; }
    const std::vector<double>& x() const { return *x_; }
    const std::vector<double>& y() const { return *y_; }
    // Pairs with both coordinates present: the shorter column's length.
    std::size_t pairCount() const { return std::min(x_->size(), y_->size()); }
    bool lengthsDiffer() const { return x_->size() != y_->size(); }

    // Smallest and largest finite coordinates of the pairs whose both
    // coordinates are finite; false when there is no such pair.
    bool range(double& xMin, double& xMax, double& yMin, double& yMax, std::size_t& finitePairs) const;

private:
    const std::vector<double>* column(const std::string& name, const rapidjson::Value& item,
                                      const ChartData* data, std::vector<double>& copy) const;

    std::string title_;
    std::string xLabel_;
    std::string yLabel_;
    std::vector<double> copyX_;
    std::vector<double> copyY_;
    const std::vector<double>* x_ = &copyX_;
    const std::vector<double>* y_ = &copyY_;
};

}  // namespace host
