#pragma once
#include <string>
#include <unordered_set>
#include <vector>

#include <rapidjson/document.h>

#include "Cell.h"
#include "Cells.h"
#include "Dimension.h"
#include "Table.h"
#include "VELA_Format.h"

// State of a table and the objects created on it. The table deletes every
// cell, tree, cells container and dimension registered with it; an object
// deleted earlier by its creator unregisters itself first.
struct Table::Impl {
    StatJSONGenerator* generator = nullptr;
    std::string name;
    std::string title;
    bool showTitle = true;
    int minColumnWidth = 0;  // 0: the renderer's default
    int maxColumnWidth = 0;  // 0: no limit
    VELA_Format format{VELA_Format::FormatNumeric, 8, 2};
    std::vector<int> footnoteRefs;
    std::vector<std::string> footnotes;
    Dimension* dimension = nullptr;
    Cells* cells = nullptr;

    std::unordered_set<Cell*> ownedCells;
    std::unordered_set<Cells*> ownedContainers;
    std::unordered_set<Dimension*> ownedDimensions;

    void release(Cell* cell);
    void release(Cells* container);
    void release(Dimension* dimension);
    void deleteOwned();

    // The table as an output document item.
    rapidjson::Value toJson(rapidjson::MemoryPoolAllocator<>& allocator) const;
};
