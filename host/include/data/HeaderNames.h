#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace host {

// Longest variable name made from a header cell, in bytes.
constexpr std::size_t kMaxHeaderNameBytes = 64;

// The variable name made from one header cell.
struct HeaderName {
    std::string name;      // a valid variable name, unique in the file
    std::string original;  // the cell's text, blanks at the ends removed
    std::string reason;    // why it was renamed; empty when name == original
};

// Makes valid, unique variable names from the cells of a header row. A cell
// that already is a valid name keeps it (the first of names equal but for
// letter case). Any other cell is made into one: each run of characters that
// a name cannot hold becomes '_' (none at the ends), dots at the end go, a
// name that does not start with a letter gets "V" in front, a reserved word
// gets '_' after it, a name is cut to kMaxHeaderNameBytes, an empty one is
// "V" and the column number; then "_2", "_3", ... is added until it is unique.
std::vector<HeaderName> variableNamesFromHeader(const std::vector<std::string>& cells);

}  // namespace host
