#include "Cells.h"

#include "Table.h"
#include "output/CellsImpl.h"
#include "output/TableImpl.h"

Cells::Cells(Table* table) : impl_(std::make_unique<Impl>()) {
    impl_->table = table;
    if (table != nullptr) table->impl().ownedContainers.insert(this);
}

Cells::~Cells() {
    if (impl_->table != nullptr) impl_->table->impl().release(this);
}

void Cells::addCells(std::vector<Cell*>& row) { impl_->rows.push_back(row); }

const Cells::Impl& Cells::impl() const { return *impl_; }
