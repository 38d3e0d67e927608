#pragma once
#include <vector>

namespace host {

class DataSet;

// Where each variable's values sit in a case buffer of OBS (doubles): a
// numeric variable takes one OBS, a text variable one OBS per 8 bytes of its
// width (at least one).
class ColumnLayout {
public:
    explicit ColumnLayout(const DataSet& data);

    static int columnsOfType(int type) { return type <= 0 ? 1 : (type + 7) / 8; }

    int variableCount() const { return static_cast<int>(firstColumns_.size()); }
    int columnCount() const { return static_cast<int>(variableAt_.size()); }
    int firstColumn(int variable) const { return firstColumns_[static_cast<std::size_t>(variable)]; }
    // The variable whose values start at this column; -1 when none does.
    int variableStartingAt(int column) const;

private:
    std::vector<int> firstColumns_;
    std::vector<int> variableAt_;  // per column; -1 for a continuation column
};

}  // namespace host
