#include "output/PivotLayout.h"

#include <algorithm>
#include <set>

#include "output/NumberText.h"

namespace host {

namespace {

using rapidjson::Value;

std::string textOf(const Value& v) {
    return v.IsString() ? std::string(v.GetString(), v.GetStringLength()) : std::string();
}

const Value* member(const Value& object, const char* name) {
    if (!object.IsObject()) return nullptr;
    auto it = object.FindMember(name);
    return it == object.MemberEnd() ? nullptr : &it->value;
}

std::string stringMember(const Value& object, const char* name) {
    const Value* v = member(object, name);
    return v != nullptr ? textOf(*v) : std::string();
}

int intMember(const Value& object, const char* name, int fallback) {
    const Value* v = member(object, name);
    return v != nullptr && v->IsInt() ? v->GetInt() : fallback;
}

bool shownLabel(const Value& tree) {
    const Value* show = member(tree, "showLabel");
    return show != nullptr && show->IsBool() && show->GetBool();
}

bool isTree(const Value& node) { return member(node, "children") != nullptr; }

const Value* childrenOf(const Value& tree) {
    const Value* c = member(tree, "children");
    return c != nullptr && c->IsArray() ? c : nullptr;
}

struct Leaf {
    std::size_t level;
};

struct Group {
    std::string text;
    std::size_t level;
    std::size_t first;
    std::size_t count;
};

// Leaves of a column tree in order, and the groups over them.
void walkColumns(const Value& tree, std::size_t level, std::vector<Leaf>& leaves, std::vector<Group>& groups,
                 std::vector<std::string>& leafTexts) {
    const Value* children = childrenOf(tree);
    if (children == nullptr) return;
    for (const Value& child : children->GetArray()) {
        if (isTree(child)) {
            const std::size_t first = leaves.size();
            walkColumns(child, level + 1, leaves, groups, leafTexts);
            if (leaves.size() > first)
                groups.push_back({shownLabel(child) ? stringMember(child, "label") : std::string(), level, first,
                                  leaves.size() - first});
        } else {
            leaves.push_back({level});
            leafTexts.push_back(stringMember(child, "label"));
        }
    }
}

// One stub row per row leaf: the labels of its groups (on a group's first
// row only) and its own label at its level.
void walkRows(const Value& tree, std::vector<std::string>& path, std::vector<std::vector<std::string>>& rows) {
    const Value* children = childrenOf(tree);
    if (children == nullptr) return;
    for (const Value& child : children->GetArray()) {
        if (isTree(child)) {
            path.push_back(shownLabel(child) ? stringMember(child, "label") : std::string());
            walkRows(child, path, rows);
            path.pop_back();
        } else {
            std::vector<std::string> row = path;
            row.push_back(stringMember(child, "label"));
            rows.push_back(row);
            // Group labels stand on the first row of their group only.
            for (std::string& p : path) p.clear();
        }
    }
}

PivotLayout::Datum datumOf(const Value& v, int decimals) {
    if (v.IsNumber()) return {fixedNumber(v.GetDouble(), decimals), true};
    if (v.IsNull()) return {".", true};
    if (v.IsString()) return {textOf(v), false};
    if (v.IsBool()) return {v.GetBool() ? "true" : "false", false};
    return {"", false};
}

}  // namespace

std::string PivotLayout::footnoteMarker(std::size_t index) {
    std::string marker;
    std::size_t n = index + 1;
    while (n > 0) {
        --n;
        marker.insert(marker.begin(), static_cast<char>('a' + n % 26));
        n /= 26;
    }
    return marker;
}

PivotLayout::PivotLayout(const Value& table) {
    title = stringMember(table, "title");
    if (title.empty()) title = stringMember(table, "name");
    if (const Value* show = member(table, "showTitle"); show != nullptr && show->IsBool()) showTitle = show->GetBool();
    minColumnWidth = intMember(table, "minColumnWidth", 0);
    maxColumnWidth = intMember(table, "maxColumnWidth", 0);
    int decimals = 2;
    if (const Value* format = member(table, "format")) decimals = intMember(*format, "decimals", 2);

    if (const Value* notes = member(table, "footnotes"); notes != nullptr && notes->IsArray()) {
        for (const Value& note : notes->GetArray())
            footnotes.emplace_back(footnoteMarker(footnotes.size()), textOf(note));
    }
    std::set<int> refs;
    if (const Value* r = member(table, "footnoteRefs"); r != nullptr && r->IsArray()) {
        for (const Value& ref : r->GetArray())
            if (ref.IsInt() && ref.GetInt() >= 0 && static_cast<std::size_t>(ref.GetInt()) < footnotes.size())
                refs.insert(ref.GetInt());
    }
    for (int ref : refs) {
        if (!titleMarkers.empty()) titleMarkers += ',';
        titleMarkers += footnoteMarker(static_cast<std::size_t>(ref));
    }

    // Column headers.
    std::vector<Leaf> leaves;
    std::vector<Group> groups;
    std::vector<std::string> leafTexts;
    std::size_t offset = 0;
    static const Value kNoTree(rapidjson::kObjectType);
    const Value* columnTree = member(table, "columnDimension");
    if (columnTree == nullptr) columnTree = &kNoTree;
    walkColumns(*columnTree, 0, leaves, groups, leafTexts);
    std::size_t height = 0;
    for (const Leaf& leaf : leaves) height = std::max(height, leaf.level + 1);
    const std::string rootLabel = shownLabel(*columnTree) ? stringMember(*columnTree, "label") : std::string();
    if (!rootLabel.empty() && !leaves.empty()) {
        headers.push_back({rootLabel, 0, 1, 0, leaves.size(), true});
        offset = 1;
    }
    for (const Group& g : groups) headers.push_back({g.text, g.level + offset, 1, g.first, g.count, true});
    for (std::size_t i = 0; i < leaves.size(); ++i)
        headers.push_back({leafTexts[i], leaves[i].level + offset, height - leaves[i].level, i, 1, false});
    std::sort(headers.begin(), headers.end(), [](const HeaderCell& a, const HeaderCell& b) {
        return a.row != b.row ? a.row < b.row : a.column < b.column;
    });
    headerRows = height + offset;

    // Row headers.
    const Value* rowTree = member(table, "rowDimension");
    if (rowTree == nullptr) rowTree = &kNoTree;
    if (shownLabel(*rowTree)) stubHeader = stringMember(*rowTree, "label");
    std::vector<std::string> path;
    walkRows(*rowTree, path, stub);
    for (const auto& row : stub) stubColumns = std::max(stubColumns, row.size());

    // Data.
    if (const Value* cells = member(table, "cells"); cells != nullptr && cells->IsArray()) {
        for (const Value& row : cells->GetArray()) {
            std::vector<Datum> values;
            if (row.IsArray())
                for (const Value& v : row.GetArray()) values.push_back(datumOf(v, decimals));
            data.push_back(std::move(values));
        }
    }
    columns = leaves.size();
    for (const auto& row : data) columns = std::max(columns, row.size());
    const std::size_t rows = std::max(stub.size(), data.size());
    stub.resize(rows);
    data.resize(rows);
    for (auto& row : stub) row.resize(stubColumns);
    for (auto& row : data) row.resize(columns, Datum{"", false});
    numericColumn.assign(columns, false);
    for (const auto& row : data)
        for (std::size_t c = 0; c < columns; ++c)
            if (row[c].numeric) numericColumn[c] = true;
    if (headerRows == 0 && !stubHeader.empty()) headerRows = 1;
}

}  // namespace host
