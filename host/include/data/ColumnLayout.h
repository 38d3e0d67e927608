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
    // The variable's type: 0 numeric, else the text width.
    int typeOf(int variable) const { return types_[static_cast<std::size_t>(variable)]; }
    // A case of missing numbers and blank texts, copied to start a case
    // without a look at each variable.
    const std::vector<double>& blankCase() const { return blank_; }

private:
    std::vector<int> firstColumns_;
    std::vector<int> variableAt_;  // per column; -1 for a continuation column
    std::vector<int> types_;       // per variable
    std::vector<double> blank_;    // per column
};

}  // namespace host
