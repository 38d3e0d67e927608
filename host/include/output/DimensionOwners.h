#pragma once

class Dimension;
class Table;

// Which table a dimension was created on. Dimension has no state of its own
// for this, and a dimension deleted by its creator must leave its table.
class DimensionOwners {
public:
    static void set(const Dimension* dimension, Table* table);
    static Table* tableOf(const Dimension* dimension);
    static void forget(const Dimension* dimension);
};
