#pragma once
#include <memory>
#include <string>

class Cells;
class Dimension;
class StatJSONGenerator;

// A pivot table built on a JSON generator. Every Cell, Descendants, Cells and
// Dimension created on a table is released when the table is deleted.
class Table {
public:
    Table(StatJSONGenerator* generator, const std::string& name);
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;
    virtual ~Table();

    void set_table_title(const std::string& title);
    void hide_title(bool hide);
    void set_min_data_column_width(int width);
    void set_max_data_column_width(int width);
    // type is a VELA_Format::FormatType code.
    void set_default_cell_format(int type, int width, int decimals);
    void addFootnoteRefs(int index);
    void add_footnote(const std::string& text);
    void set_dimensions(Dimension* dimension);
    void set_cells(Cells* cells);
    // Appends the table, as it stands, to the generator's document.
    void addTableToProcedureJSON();

    struct Impl;
    Impl& impl();

private:
    std::unique_ptr<Impl> impl_;
};
