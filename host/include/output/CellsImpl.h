#pragma once
#include <vector>

#include "Cells.h"

struct Cells::Impl {
    Table* table = nullptr;  // the owning table; null once it let go
    std::vector<std::vector<Cell*>> rows;
};
