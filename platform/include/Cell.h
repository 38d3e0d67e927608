#pragma once
#include <memory>
#include <string>

class Table;

enum CellType {
    CellTypeStandard = 1
};

// One table cell: a header label or a data value. Create it with new; the
// table it was created on releases it.
class Cell {
public:
    Cell(Table* table, CellType type);
    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;
    virtual ~Cell();

    void setValue(double value);
    void setValue(const std::string& value);

    struct Impl;
    Impl& impl();
    const Impl& impl() const;

protected:
    std::unique_ptr<Impl> impl_;
};
