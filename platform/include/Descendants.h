#pragma once
#include <string>

#include "Cell.h"

// A header tree (row or column dimension, or a nested group inside one).
// A nested group is added to its parent as a cell.
class Descendants : public Cell {
public:
    explicit Descendants(Table* table);
    ~Descendants() override;

    void addCell(Cell* cell);
    void set_label(const std::string& label);
    void setShowLabel(bool show);
};
