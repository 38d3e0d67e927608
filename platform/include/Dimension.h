#pragma once

class Descendants;
class Table;

// The row and column header trees of a table. Create it with new; the table
// releases it.
class Dimension {
public:
    Dimension(Table* table, Descendants* rows, Descendants* columns);
    Dimension(const Dimension&) = delete;
    Dimension& operator=(const Dimension&) = delete;
    virtual ~Dimension();

    Descendants* rows() const { return rows_; }
    Descendants* columns() const { return columns_; }

private:
    Descendants* rows_;
    Descendants* columns_;
};
