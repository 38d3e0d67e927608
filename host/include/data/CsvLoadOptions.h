#pragma once
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace host {

// How a CSV data file is imported (distcorr's --na, --delimiter, --decimal).
struct CsvLoadOptions {
    // Texts that mean "missing" in every column; unset: an empty cell and
    // "NA" are missing in numeric columns. A schema's missingValues replaces
    // this list for its file, a field's own list for its column.
    std::optional<std::vector<std::string>> missingValues;
    char delimiter = 0;  // ',', ';', '\t' or '|'; 0 detects it
    char decimal = 0;    // '.' or ','; 0 detects it
    // Where notes go (renamed columns, text read as Windows-1252); none when null.
    std::ostream* notes = nullptr;
    bool quiet = false;  // no notes at all
};

// Reads the text of --na: texts separated by commas ("NA,-99,."); "" gives
// an empty list (only empty cells are missing).
std::vector<std::string> parseMissingValueList(const std::string& text);

// Reads the text of --delimiter: one of , ; | or a tab (also "tab" or "\t").
// Returns 0 when the text is none of them.
char parseDelimiterOption(const std::string& text);

// Reads the text of --decimal: "." or ","; 0 for anything else.
char parseDecimalOption(const std::string& text);

}  // namespace host
