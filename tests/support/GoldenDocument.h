#pragma once
// Helpers for the end-to-end tests that compare distcorr's output document
// with checked-in expected documents: a plain CSV reader for the small
// fixtures, a JSON comparison that names the first difference, and accessors
// for the parts of a table item.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <rapidjson/document.h>

namespace golden {

// A fixture as columns of numbers; an empty cell is NaN. The fixtures hold
// no quotes, so a line is split at its commas.
struct CsvTable {
    std::vector<std::string> names;
    std::vector<std::vector<double>> columns;

    const std::vector<double>& column(const std::string& name) const {
        for (std::size_t i = 0; i < names.size(); ++i)
            if (names[i] == name) return columns[i];
        throw std::runtime_error("no column " + name);
    }
};

inline std::vector<std::string> splitCsvLine(std::string line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::vector<std::string> cells;
    std::string cell;
    std::istringstream in(line);
    while (std::getline(in, cell, ',')) cells.push_back(cell);
    if (!line.empty() && line.back() == ',') cells.emplace_back();
    return cells;
}

inline double parseCell(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return std::numeric_limits<double>::quiet_NaN();
    std::size_t used = 0;
    const std::string trimmed = text.substr(first, text.find_last_not_of(" \t") + 1 - first);
    const double value = std::stod(trimmed, &used);
    if (used != trimmed.size()) throw std::runtime_error("not a number: " + text);
    return value;
}

inline CsvTable readCsv(const std::string& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("cannot read " + path);
    CsvTable table;
    std::string line;
    std::getline(in, line);
    table.names = splitCsvLine(line);
    table.columns.resize(table.names.size());
    while (std::getline(in, line)) {
        if (line.empty()) continue;
        const std::vector<std::string> cells = splitCsvLine(line);
        if (cells.size() != table.names.size()) throw std::runtime_error("ragged line in " + path + ": " + line);
        for (std::size_t i = 0; i < cells.size(); ++i) table.columns[i].push_back(parseCell(cells[i]));
    }
    return table;
}

// Parses a JSON file reading every number exactly (RapidJSON's default
// parse may be off by one unit in the last place).
inline rapidjson::Document parseJsonExactly(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    rapidjson::Document doc;
    doc.Parse<rapidjson::kParseFullPrecisionFlag>(text.c_str());
    return doc;
}

// The shortest text that reads back as the same double.
inline std::string shortest(double x) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, x).ptr;
    return std::string(buffer, end);
}

inline std::string describe(const rapidjson::Value& v) {
    if (v.IsString()) return std::string("\"") + v.GetString() + "\"";
    if (v.IsNumber()) return shortest(v.GetDouble());
    if (v.IsBool()) return v.GetBool() ? "true" : "false";
    if (v.IsNull()) return "null";
    if (v.IsArray()) return "array of " + std::to_string(v.Size());
    return "object";
}

// Empty when equal; otherwise the path of the first difference and both values.
// Numbers are compared as doubles, exactly.
inline std::string firstDifference(const rapidjson::Value& actual, const rapidjson::Value& expected,
                                   const std::string& path = "$") {
    const auto mismatch = [&] { return path + ": actual " + describe(actual) + ", expected " + describe(expected); };
    if (actual.IsNumber() && expected.IsNumber()) return actual.GetDouble() == expected.GetDouble() ? "" : mismatch();
    if (actual.GetType() != expected.GetType()) return mismatch();
    if (actual.IsString()) return std::string(actual.GetString()) == expected.GetString() ? "" : mismatch();
    if (actual.IsArray()) {
        const rapidjson::SizeType common = std::min(actual.Size(), expected.Size());
        for (rapidjson::SizeType i = 0; i < common; ++i) {
            std::string d = firstDifference(actual[i], expected[i], path + "[" + std::to_string(i) + "]");
            if (!d.empty()) return d;
        }
        return actual.Size() == expected.Size() ? "" : mismatch();
    }
    if (actual.IsObject()) {
        for (auto m = expected.MemberBegin(); m != expected.MemberEnd(); ++m) {
            const std::string key = m->name.GetString();
            if (!actual.HasMember(key.c_str())) return path + "." + key + ": missing in the actual document";
            std::string d = firstDifference(actual[key.c_str()], m->value, path + "." + key);
            if (!d.empty()) return d;
        }
        for (auto m = actual.MemberBegin(); m != actual.MemberEnd(); ++m)
            if (!expected.HasMember(m->name)) return path + "." + m->name.GetString() + ": not in the expected document";
        return "";
    }
    return actual == expected ? "" : mismatch();
}

// Labels of the children of a dimension tree, in order.
inline std::vector<std::string> childLabels(const rapidjson::Value& tree) {
    std::vector<std::string> labels;
    for (const auto& child : tree["children"].GetArray()) labels.push_back(child["label"].GetString());
    return labels;
}

// Labels of the leaf columns, a group's leaves written "Group/Leaf".
inline std::vector<std::string> leafColumnLabels(const rapidjson::Value& tree) {
    std::vector<std::string> labels;
    for (const auto& child : tree["children"].GetArray()) {
        if (child.HasMember("children")) {
            for (const std::string& leaf : leafColumnLabels(child))
                labels.push_back(std::string(child["label"].GetString()) + "/" + leaf);
        } else {
            labels.push_back(child["label"].GetString());
        }
    }
    return labels;
}

inline std::vector<std::string> stringArray(const rapidjson::Value& array) {
    std::vector<std::string> out;
    for (const auto& v : array.GetArray()) out.push_back(v.GetString());
    return out;
}

inline std::vector<double> numberArray(const rapidjson::Value& array) {
    std::vector<double> out;
    for (const auto& v : array.GetArray()) out.push_back(v.GetDouble());
    return out;
}

}  // namespace golden
