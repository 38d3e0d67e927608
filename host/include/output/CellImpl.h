#pragma once
#include <string>
#include <vector>

#include "Cell.h"

// State of a table cell. A Descendants (header tree) is a Cell whose tree
// part is in use; its children are cells or nested trees.
struct Cell::Impl {
    enum class Kind { Empty, Number, Text };

    Table* table = nullptr;  // the owning table; null once it let go
    CellType type = CellTypeStandard;
    Kind kind = Kind::Empty;
    double number = 0.0;
    std::string text;

    bool isTree = false;
    std::string label;
    bool showLabel = false;
    std::vector<Cell*> children;
};
