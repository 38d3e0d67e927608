#include "output/DimensionOwners.h"

#include <unordered_map>

namespace {

std::unordered_map<const Dimension*, Table*>& owners() {
    static std::unordered_map<const Dimension*, Table*> map;
    return map;
}

}  // namespace

void DimensionOwners::set(const Dimension* dimension, Table* table) { owners()[dimension] = table; }

Table* DimensionOwners::tableOf(const Dimension* dimension) {
    auto it = owners().find(dimension);
    return it == owners().end() ? nullptr : it->second;
}

void DimensionOwners::forget(const Dimension* dimension) { owners().erase(dimension); }
