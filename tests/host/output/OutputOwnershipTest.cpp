// Every Cell, Descendants, Cells and Dimension created on a table is released
// with the table, handed to it or not; objects their creator deletes first
// leave the table. Counting subclasses check each release; the sanitizer
// build checks that nothing leaks or is freed twice.
#include <gtest/gtest.h>

#include "OutputTestSupport.h"

namespace {

struct Counts {
    int cells = 0;
    int trees = 0;
    int containers = 0;
    int dimensions = 0;
};

Counts released;

class CountedCell : public Cell {
public:
    explicit CountedCell(Table* t) : Cell(t, CellTypeStandard) {}
    ~CountedCell() override { ++released.cells; }
};

class CountedTree : public Descendants {
public:
    explicit CountedTree(Table* t) : Descendants(t) {}
    ~CountedTree() override { ++released.trees; }
};

class CountedCells : public Cells {
public:
    explicit CountedCells(Table* t) : Cells(t) {}
    ~CountedCells() override { ++released.containers; }
};

class CountedDimension : public Dimension {
public:
    CountedDimension(Table* t, Descendants* r, Descendants* c) : Dimension(t, r, c) {}
    ~CountedDimension() override { ++released.dimensions; }
};

class OutputOwnershipTest : public ::testing::Test {
protected:
    void SetUp() override { released = Counts{}; }
};

TEST_F(OutputOwnershipTest, ObjectsNeverHandedToTheTableAreReleasedWithIt) {
    StatJSONGenerator generator("P", "");
    auto* table = new Table(&generator, "T");
    new CountedCells(table);
    auto* rows = new CountedTree(table);
    auto* columns = new CountedTree(table);
    for (int i = 0; i < 5; ++i) new CountedCell(table);
    new CountedDimension(table, rows, columns);  // no set_dimensions, no set_cells
    delete table;
    EXPECT_EQ(released.cells, 5);
    EXPECT_EQ(released.trees, 2);
    EXPECT_EQ(released.containers, 1);
    EXPECT_EQ(released.dimensions, 1);
}

TEST_F(OutputOwnershipTest, ObjectsOfAnAddedTableAreReleasedOnceWithIt) {
    StatJSONGenerator generator("P", "");
    auto* table = new Table(&generator, "T");
    auto* cells = new CountedCells(table);
    auto* rows = new CountedTree(table);
    auto* columns = new CountedTree(table);
    auto* group = new CountedTree(table);
    group->addCell(new CountedCell(table));
    columns->addCell(group);
    rows->addCell(new CountedCell(table));
    std::vector<Cell*> row{new CountedCell(table)};
    cells->addCells(row);
    table->set_dimensions(new CountedDimension(table, rows, columns));
    table->set_cells(cells);
    table->addTableToProcedureJSON();
    delete table;
    EXPECT_EQ(released.cells, 3);
    EXPECT_EQ(released.trees, 3);
    EXPECT_EQ(released.containers, 1);
    EXPECT_EQ(released.dimensions, 1);
    // The generator keeps what was added.
    EXPECT_EQ(generator.getProcedureStatJSON()["items"].Size(), 1u);
}

TEST_F(OutputOwnershipTest, ObjectsDeletedByTheirCreatorLeaveTheTable) {
    StatJSONGenerator generator("P", "");
    auto* table = new Table(&generator, "T");
    auto* cell = new CountedCell(table);
    auto* tree = new CountedTree(table);
    auto* cells = new CountedCells(table);
    auto* dimension = new CountedDimension(table, tree, tree);
    table->set_cells(cells);
    table->set_dimensions(dimension);
    delete cell;
    delete dimension;
    delete cells;
    delete tree;
    // The table no longer refers to the deleted dimension and cells.
    table->addTableToProcedureJSON();
    new CountedCell(table);
    delete table;
    EXPECT_EQ(released.cells, 2);
    EXPECT_EQ(released.trees, 1);
    EXPECT_EQ(released.containers, 1);
    EXPECT_EQ(released.dimensions, 1);
    const auto& item = generator.getProcedureStatJSON()["items"][0];
    EXPECT_EQ(item["cells"].Size(), 0u);
    EXPECT_EQ(item["rowDimension"]["children"].Size(), 0u);
}

TEST_F(OutputOwnershipTest, ObjectsOnNoTableBelongToTheirCreator) {
    auto* cell = new CountedCell(nullptr);
    auto* tree = new CountedTree(nullptr);
    auto* cells = new CountedCells(nullptr);
    auto* dimension = new CountedDimension(nullptr, tree, tree);
    {
        Table table(nullptr, "T");
    }
    EXPECT_EQ(released.cells, 0);
    delete cell;
    delete tree;
    delete cells;
    delete dimension;
    EXPECT_EQ(released.cells, 1);
    EXPECT_EQ(released.dimensions, 1);
}

TEST_F(OutputOwnershipTest, ManyTablesCreatedAndDeletedWithoutDimensions) {
    StatJSONGenerator generator("P", "");
    for (int t = 0; t < 50; ++t) {
        auto* table = new Table(&generator, "T" + std::to_string(t));
        auto* cells = new Cells(table);
        new Descendants(table);
        for (int i = 0; i < 20; ++i) {
            std::vector<Cell*> row{outtest::numberCell(table, i)};
            cells->addCells(row);
        }
        delete table;
    }
    EXPECT_EQ(generator.getProcedureStatJSON()["items"].Size(), 0u);
}

}  // namespace
