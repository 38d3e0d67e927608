#pragma once
// Reads the reference data sets and the values energy computed for them
// (tests/backend/dependence/reference, made by make_reference.R).
#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace reference {

inline std::string folder() { return std::string(DC_SOURCE_DIR) + "/tests/backend/dependence/reference"; }

inline std::vector<std::string> splitCsv(const std::string& line) {
    std::vector<std::string> fields;
    std::stringstream in(line);
    std::string field;
    while (std::getline(in, field, ',')) fields.push_back(field);
    if (!line.empty() && line.back() == ',') fields.emplace_back();
    return fields;
}

inline std::vector<std::string> words(const std::string& text) {
    std::vector<std::string> out;
    std::stringstream in(text);
    std::string w;
    while (in >> w) out.push_back(w);
    return out;
}

inline double number(const std::string& text) {
    if (text == "NA" || text == "NaN") return std::numeric_limits<double>::quiet_NaN();
    if (text == "Inf") return std::numeric_limits<double>::infinity();
    if (text == "-Inf") return -std::numeric_limits<double>::infinity();
    return std::stod(text);
}

// A table: column name to values (numbers) or texts.
struct Table {
    std::vector<std::string> header;
    std::vector<std::vector<std::string>> rows;

    std::size_t column(const std::string& name) const {
        for (std::size_t k = 0; k < header.size(); ++k)
            if (header[k] == name) return k;
        throw std::runtime_error("no column " + name);
    }
    std::vector<double> numbers(const std::string& name) const {
        const std::size_t c = column(name);
        std::vector<double> out;
        for (const auto& row : rows) out.push_back(number(row.at(c)));
        return out;
    }
};

inline Table readCsv(const std::string& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("cannot read " + path);
    Table t;
    std::string line;
    std::getline(in, line);
    t.header = splitCsv(line);
    while (std::getline(in, line))
        if (!line.empty()) t.rows.push_back(splitCsv(line));
    return t;
}

inline Table dataSet(const std::string& name) { return readCsv(folder() + "/data/" + name + ".csv"); }
inline Table expected() { return readCsv(folder() + "/expected.csv"); }

// Equal to a relative 1e-10 (both NaN, both zero, or both the same infinity
// count as equal).
inline bool agrees(double ours, double theirs, double relative = 1e-10, double absolute = 0.0) {
    if (std::isnan(ours) || std::isnan(theirs)) return std::isnan(ours) && std::isnan(theirs);
    if (std::isinf(ours) || std::isinf(theirs)) return ours == theirs;
    return std::fabs(ours - theirs) <= relative * std::fmax(std::fabs(ours), std::fabs(theirs)) + absolute;
}

}  // namespace reference
