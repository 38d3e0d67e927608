#include "data/ColumnLayout.h"

#include <cstring>

#include "DataSet.h"
#include "data/NumberText.h"

namespace host {

ColumnLayout::ColumnLayout(const DataSet& data) {
    const int count = data.variableCount();
    firstColumns_.reserve(static_cast<std::size_t>(count));
    for (int v = 0; v < count; ++v) {
        const int type = data.variable(v).type;
        firstColumns_.push_back(static_cast<int>(variableAt_.size()));
        types_.push_back(type);
        variableAt_.push_back(v);
        for (int extra = 1; extra < columnsOfType(type); ++extra) variableAt_.push_back(-1);
    }
    blank_.resize(variableAt_.size());
    for (int v = 0; v < count; ++v) {
        double* cell = &blank_[static_cast<std::size_t>(firstColumns_[static_cast<std::size_t>(v)])];
        if (types_[static_cast<std::size_t>(v)] == 0)
            *cell = kSystemMissing;
        else
            std::memset(cell, ' ',
                        sizeof(double) * static_cast<std::size_t>(columnsOfType(types_[static_cast<std::size_t>(v)])));
    }
}

int ColumnLayout::variableStartingAt(int column) const {
    if (column < 0 || column >= columnCount()) return -1;
    return variableAt_[static_cast<std::size_t>(column)];
}

}  // namespace host
