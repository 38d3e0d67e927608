#include "Descendants.h"

#include "output/CellImpl.h"

Descendants::Descendants(Table* table) : Cell(table, CellTypeStandard) { impl_->isTree = true; }

Descendants::~Descendants() = default;

void Descendants::addCell(Cell* cell) {
    if (cell != nullptr) impl_->children.push_back(cell);
}

void Descendants::set_label(const std::string& label) { impl_->label = label; }

void Descendants::setShowLabel(bool show) { impl_->showLabel = show; }
