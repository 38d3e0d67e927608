#include "Dimension.h"

#include "Table.h"
#include "output/DimensionOwners.h"
#include "output/TableImpl.h"

Dimension::Dimension(Table* table, Descendants* rows, Descendants* columns)
    : rows_(rows), columns_(columns) {
    if (table == nullptr) return;
    table->impl().ownedDimensions.insert(this);
    DimensionOwners::set(this, table);
}

Dimension::~Dimension() {
    if (Table* table = DimensionOwners::tableOf(this)) table->impl().release(this);
}
