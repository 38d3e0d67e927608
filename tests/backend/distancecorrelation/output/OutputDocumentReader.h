#pragma once
// Reads the output document the procedure handed to the host session.
#include <string>
#include <vector>

#include <rapidjson/document.h>

#include "HostSession.h"
#include "output/SessionChartData.h"

inline const rapidjson::Document* outputDocument() {
    return host::HostSession::instance().outputDocument();
}

// The document's items (tables and charts) in output order.
inline std::vector<const rapidjson::Value*> outputItems() {
    std::vector<const rapidjson::Value*> items;
    const rapidjson::Document* doc = outputDocument();
    if (doc == nullptr || !doc->IsObject() || !doc->HasMember("items")) return items;
    for (const rapidjson::Value& item : (*doc)["items"].GetArray()) items.push_back(&item);
    return items;
}

inline std::string stringMember(const rapidjson::Value& v, const char* name) {
    if (!v.IsObject() || !v.HasMember(name) || !v[name].IsString()) return "<missing " + std::string(name) + ">";
    return v[name].GetString();
}

inline std::vector<std::string> itemNames() {
    std::vector<std::string> names;
    for (const rapidjson::Value* item : outputItems()) names.push_back(stringMember(*item, "name"));
    return names;
}

inline std::vector<std::string> itemTypes() {
    std::vector<std::string> types;
    for (const rapidjson::Value* item : outputItems()) types.push_back(stringMember(*item, "type"));
    return types;
}

// The item with this name, or null.
inline const rapidjson::Value* findItem(const std::string& name) {
    for (const rapidjson::Value* item : outputItems())
        if (stringMember(*item, "name") == name) return item;
    return nullptr;
}

inline std::size_t countItems(const std::string& name) {
    std::size_t count = 0;
    for (const rapidjson::Value* item : outputItems())
        if (stringMember(*item, "name") == name) ++count;
    return count;
}

// The leaf labels of a header tree, left to right (top to bottom for rows).
inline void collectLeaves(const rapidjson::Value& tree, std::vector<std::string>& out) {
    for (const rapidjson::Value& child : tree["children"].GetArray()) {
        if (child.HasMember("children"))
            collectLeaves(child, out);
        else
            out.push_back(stringMember(child, "label"));
    }
}

inline std::vector<std::string> leafLabels(const rapidjson::Value& table, const char* dimension) {
    std::vector<std::string> out;
    collectLeaves(table[dimension], out);
    return out;
}

inline std::vector<std::string> columnLabels(const rapidjson::Value& table) {
    return leafLabels(table, "columnDimension");
}
inline std::vector<std::string> rowLabels(const rapidjson::Value& table) {
    return leafLabels(table, "rowDimension");
}

// The nested groups directly below a tree's root: their labels and whether
// they are shown.
struct HeaderGroup {
    std::string label;
    bool shown = false;
    std::vector<std::string> leaves;
};

inline std::vector<HeaderGroup> headerGroups(const rapidjson::Value& tree) {
    std::vector<HeaderGroup> groups;
    for (const rapidjson::Value& child : tree["children"].GetArray()) {
        if (!child.HasMember("children")) continue;
        HeaderGroup g;
        g.label = stringMember(child, "label");
        g.shown = child.HasMember("showLabel") && child["showLabel"].IsBool() && child["showLabel"].GetBool();
        collectLeaves(child, g.leaves);
        groups.push_back(g);
    }
    return groups;
}

inline bool treeLabelShown(const rapidjson::Value& tree) {
    return tree.HasMember("showLabel") && tree["showLabel"].IsBool() && tree["showLabel"].GetBool();
}

inline std::size_t rowCount(const rapidjson::Value& table) { return table["cells"].Size(); }

inline const rapidjson::Value& cellAt(const rapidjson::Value& table, std::size_t row, std::size_t column) {
    return table["cells"][static_cast<rapidjson::SizeType>(row)][static_cast<rapidjson::SizeType>(column)];
}

inline double numberAt(const rapidjson::Value& table, std::size_t row, std::size_t column) {
    const rapidjson::Value& cell = cellAt(table, row, column);
    return cell.IsNumber() ? cell.GetDouble() : -12345.678;
}

inline std::string textAt(const rapidjson::Value& table, std::size_t row, std::size_t column) {
    const rapidjson::Value& cell = cellAt(table, row, column);
    return cell.IsString() ? cell.GetString() : "<not a text>";
}

inline std::vector<std::string> stringArray(const rapidjson::Value& v, const char* name) {
    std::vector<std::string> out;
    if (!v.HasMember(name)) return out;
    for (const rapidjson::Value& s : v[name].GetArray()) out.push_back(s.IsString() ? s.GetString() : "<not a text>");
    return out;
}

inline std::vector<int> intArray(const rapidjson::Value& v, const char* name) {
    std::vector<int> out;
    if (!v.HasMember(name)) return out;
    for (const rapidjson::Value& s : v[name].GetArray()) out.push_back(s.IsInt() ? s.GetInt() : -999);
    return out;
}

// The data vector ("xdata" or "ydata") of a chart item. The host keeps chart
// data beside the document; the item's "data" member names it by "id".
inline std::vector<double> chartData(const rapidjson::Value& chart, const char* name) {
    const std::string column = name;
    if (!chart.HasMember("data") || !chart["data"].IsObject()) return {};
    const rapidjson::Value& data = chart["data"];
    if (data.HasMember("id") && data["id"].IsString()) {
        const host::ChartData* found = host::findSessionChartData(data["id"].GetString());
        if (found == nullptr) return {};
        return column == "xdata" ? found->x : found->y;
    }
    std::vector<double> out;
    if (data.HasMember(name) && data[name].IsArray())
        for (const rapidjson::Value& v : data[name].GetArray()) out.push_back(v.GetDouble());
    return out;
}
