#pragma once
#include <string>

#include "data/TableSchema.h"

namespace host {

// Reads a Table Schema file. Throws DataLoadError naming the file, the line
// of a JSON syntax error, or the field and property that are wrong.
TableSchema readTableSchema(const std::string& path);

// The same for JSON text already read; fileName is used in messages.
TableSchema parseTableSchema(const std::string& json, const std::string& fileName);

}  // namespace host
