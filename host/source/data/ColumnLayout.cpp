#include "data/ColumnLayout.h"

#include "DataSet.h"

namespace host {

ColumnLayout::ColumnLayout(const DataSet& data) {
    const int count = data.variableCount();
    firstColumns_.reserve(static_cast<std::size_t>(count));
    for (int v = 0; v < count; ++v) {
        firstColumns_.push_back(static_cast<int>(variableAt_.size()));
        variableAt_.push_back(v);
        for (int extra = 1; extra < columnsOfType(data.variable(v).type); ++extra) variableAt_.push_back(-1);
    }
}

int ColumnLayout::variableStartingAt(int column) const {
    if (column < 0 || column >= columnCount()) return -1;
    return variableAt_[static_cast<std::size_t>(column)];
}

}  // namespace host
