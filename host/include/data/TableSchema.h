#pragma once
#include <string>
#include <vector>

namespace host {

// A data dictionary in Frictionless Table Schema form, as read from JSON.
// Beside the standard properties the host reads and writes its own:
// "measurementLevel" ("nominal", "ordinal", "scale"), "width" (bytes of a
// string field), "displayWidth", "displayDecimals", "writeWidth" and
// "writeDecimals" (the variable's print and write formats). Of the number
// properties "decimalChar", "groupChar" and "bareNumber" are read.
enum class SchemaType { Unspecified, Number, Integer, String };

struct SchemaCategory {
    std::string value;  // as written; numbers keep their JSON text
    std::string label;
    bool hasLabel = false;
};

struct SchemaField {
    std::string name;
    SchemaType type = SchemaType::Unspecified;
    std::string title;
    bool hasTitle = false;
    std::vector<SchemaCategory> categories;
    bool hasMissingValues = false;
    std::vector<std::string> missingValues;
    int measurementLevel = 0;  // 0 not given, 1 nominal, 2 ordinal, 3 scale
    int width = 0;             // 0 not given
    int displayWidth = 0;
    int displayDecimals = -1;  // -1 not given
    int writeWidth = 0;
    int writeDecimals = -1;
    char decimalChar = 0;  // 0 not given
    char groupChar = 0;    // 0 not given
    bool bareNumber = true;
};

struct TableSchema {
    std::string title;
    bool hasTitle = false;
    bool hasMissingValues = false;
    std::vector<std::string> missingValues{""};
    // Only the fields that need something said about them; they are matched
    // to the columns by name.
    std::vector<SchemaField> fields;
};

}  // namespace host
