#pragma once
#include <memory>
#include <vector>

class Cell;
class Table;

// The data cells of a table, row by row. Create it with new; the table
// releases it.
class Cells {
public:
    explicit Cells(Table* table);
    Cells(const Cells&) = delete;
    Cells& operator=(const Cells&) = delete;
    virtual ~Cells();

    // Appends one row; the cells are in leaf-column order.
    void addCells(std::vector<Cell*>& row);

    struct Impl;
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
