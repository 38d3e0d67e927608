#include "Cell.h"

#include "Table.h"
#include "output/CellImpl.h"
#include "output/TableImpl.h"

Cell::Cell(Table* table, CellType type) : impl_(std::make_unique<Impl>()) {
    impl_->type = type;
    impl_->table = table;
    if (table != nullptr) table->impl().ownedCells.insert(this);
}

Cell::~Cell() {
    if (impl_->table != nullptr) impl_->table->impl().release(this);
}

void Cell::setValue(double value) {
    impl_->kind = Impl::Kind::Number;
    impl_->number = value;
    impl_->text.clear();
}

void Cell::setValue(const std::string& value) {
    impl_->kind = Impl::Kind::Text;
    impl_->text = value;
    impl_->number = 0.0;
}

Cell::Impl& Cell::impl() { return *impl_; }
const Cell::Impl& Cell::impl() const { return *impl_; }
