#pragma once
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <rapidjson/document.h>

namespace host {

// A table item of the output document, laid out as a pivot table: the
// column headers as a grid of spanning cells over the leaf columns, the row
// headers as stub columns (one per nesting level), the data as texts
// formatted with the table's decimals. Text and HTML rendering share it.
class PivotLayout {
public:
    struct HeaderCell {
        std::string text;
        std::size_t row;         // first header row
        std::size_t rowSpan;     // a leaf above the bottom row reaches down to it
        std::size_t column;      // first leaf column
        std::size_t columnSpan;
        bool isGroup;
    };
    struct Datum {
        std::string text;
        bool numeric;
    };

    explicit PivotLayout(const rapidjson::Value& table);

    std::string title;        // the title, or the name when there is none
    bool showTitle = true;
    std::string titleMarkers;  // "a", "a,b": footnotes the table refers to
    std::vector<std::pair<std::string, std::string>> footnotes;  // marker, text
    int minColumnWidth = 0;
    int maxColumnWidth = 0;

    std::size_t headerRows = 0;
    std::vector<HeaderCell> headers;  // by row, then column
    std::size_t columns = 0;

    std::size_t stubColumns = 1;
    std::string stubHeader;  // the row dimension's label when shown
    std::vector<std::vector<std::string>> stub;  // per row, per stub column
    std::vector<std::vector<Datum>> data;        // per row, per column
    std::vector<bool> numericColumn;

    // Marker of footnote i: a ... z, aa, ab, ...
    static std::string footnoteMarker(std::size_t index);
};

}  // namespace host
