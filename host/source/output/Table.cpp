#include "Table.h"

#include <cmath>
#include <utility>

#include "Cells.h"
#include "Descendants.h"
#include "Dimension.h"
#include "StatJSONGenerator.h"
#include "output/CellImpl.h"
#include "output/CellsImpl.h"
#include "output/DimensionOwners.h"
#include "output/NumberText.h"
#include "output/StatJSONGeneratorImpl.h"
#include "output/TableImpl.h"

using rapidjson::Value;
using Allocator = rapidjson::MemoryPoolAllocator<>;

namespace {

Value text(const std::string& s, Allocator& a) { return Value(s.c_str(), static_cast<rapidjson::SizeType>(s.size()), a); }

std::string labelOf(const Cell& cell) {
    const Cell::Impl& c = cell.impl();
    if (c.isTree) return c.label;
    switch (c.kind) {
    case Cell::Impl::Kind::Text: return c.text;
    case Cell::Impl::Kind::Number: return host::shortestNumber(c.number);
    case Cell::Impl::Kind::Empty: break;
    }
    return "";
}

// Header trees nest a few levels; the limit only stops a tree that was
// added into itself.
constexpr int kMaxTreeDepth = 32;

Value treeJson(const Cell* tree, Allocator& a, int depth = 0) {
    Value node(rapidjson::kObjectType);
    Value children(rapidjson::kArrayType);
    if (tree != nullptr && depth < kMaxTreeDepth) {
        for (const Cell* child : tree->impl().children) {
            if (child->impl().isTree) {
                children.PushBack(treeJson(child, a, depth + 1), a);
            } else {
                Value leaf(rapidjson::kObjectType);
                leaf.AddMember("label", text(labelOf(*child), a), a);
                children.PushBack(leaf, a);
            }
        }
    }
    node.AddMember("label", text(tree != nullptr ? tree->impl().label : std::string(), a), a);
    node.AddMember("showLabel", tree != nullptr && tree->impl().showLabel, a);
    node.AddMember("children", children, a);
    return node;
}

// A data cell: a number, a text, "" when never set, null for a number that
// JSON cannot hold (NaN, infinities).
Value cellJson(const Cell* cell, Allocator& a) {
    if (cell == nullptr) return text("", a);
    const Cell::Impl& c = cell->impl();
    if (c.isTree) return text(c.label, a);
    switch (c.kind) {
    case Cell::Impl::Kind::Number:
        return std::isfinite(c.number) ? Value(c.number) : Value(rapidjson::kNullType);
    case Cell::Impl::Kind::Text: return text(c.text, a);
    case Cell::Impl::Kind::Empty: break;
    }
    return text("", a);
}

}  // namespace

void Table::Impl::release(Cell* cell) { ownedCells.erase(cell); }

void Table::Impl::release(Cells* container) {
    ownedContainers.erase(container);
    if (cells == container) cells = nullptr;
}

void Table::Impl::release(Dimension* d) {
    ownedDimensions.erase(d);
    DimensionOwners::forget(d);
    if (dimension == d) dimension = nullptr;
}

void Table::Impl::deleteOwned() {
    dimension = nullptr;
    cells = nullptr;
    // Emptied first: each object's destructor unregisters from these sets.
    auto dimensions = std::move(ownedDimensions);
    auto containers = std::move(ownedContainers);
    auto cellSet = std::move(ownedCells);
    ownedDimensions.clear();
    ownedContainers.clear();
    ownedCells.clear();
    for (Dimension* d : dimensions) {
        DimensionOwners::forget(d);
        delete d;
    }
    for (Cells* c : containers) delete c;
    for (Cell* c : cellSet) delete c;
}

Value Table::Impl::toJson(Allocator& a) const {
    Value item(rapidjson::kObjectType);
    item.AddMember("type", "table", a);
    item.AddMember("name", text(name, a), a);
    item.AddMember("title", text(title, a), a);
    item.AddMember("showTitle", showTitle, a);
    Value fmt(rapidjson::kObjectType);
    fmt.AddMember("type", static_cast<int>(format.type), a);
    fmt.AddMember("width", format.width, a);
    fmt.AddMember("decimals", format.decimals, a);
    item.AddMember("format", fmt, a);
    item.AddMember("minColumnWidth", minColumnWidth, a);
    item.AddMember("maxColumnWidth", maxColumnWidth, a);
    Value notes(rapidjson::kArrayType);
    for (const std::string& f : footnotes) notes.PushBack(text(f, a), a);
    item.AddMember("footnotes", notes, a);
    Value refs(rapidjson::kArrayType);
    for (int r : footnoteRefs) refs.PushBack(r, a);
    item.AddMember("footnoteRefs", refs, a);
    item.AddMember("rowDimension", treeJson(dimension != nullptr ? dimension->rows() : nullptr, a), a);
    item.AddMember("columnDimension", treeJson(dimension != nullptr ? dimension->columns() : nullptr, a), a);
    Value rows(rapidjson::kArrayType);
    if (cells != nullptr) {
        for (const auto& row : cells->impl().rows) {
            Value r(rapidjson::kArrayType);
            for (const Cell* c : row) r.PushBack(cellJson(c, a), a);
            rows.PushBack(r, a);
        }
    }
    item.AddMember("cells", rows, a);
    return item;
}

Table::Table(StatJSONGenerator* generator, const std::string& name) : impl_(std::make_unique<Impl>()) {
    impl_->generator = generator;
    impl_->name = name;
}

Table::~Table() { impl_->deleteOwned(); }

void Table::set_table_title(const std::string& title) { impl_->title = title; }
void Table::hide_title(bool hide) { impl_->showTitle = !hide; }
void Table::set_min_data_column_width(int width) { impl_->minColumnWidth = width; }
void Table::set_max_data_column_width(int width) { impl_->maxColumnWidth = width; }

void Table::set_default_cell_format(int type, int width, int decimals) {
    impl_->format = VELA_Format(type, width, decimals);
}

void Table::addFootnoteRefs(int index) { impl_->footnoteRefs.push_back(index); }
void Table::add_footnote(const std::string& text) { impl_->footnotes.push_back(text); }
void Table::set_dimensions(Dimension* dimension) { impl_->dimension = dimension; }
void Table::set_cells(Cells* cells) { impl_->cells = cells; }

void Table::addTableToProcedureJSON() {
    if (impl_->generator == nullptr) return;
    StatJSONGenerator::Impl& generator = impl_->generator->impl();
    Value item = impl_->toJson(generator.allocator());
    generator.addItem(item);
}

Table::Impl& Table::impl() { return *impl_; }
