#pragma once
#include <memory>
#include <string>

#include "DataSet.h"
#include "data/DataLoadError.h"

namespace host {

// Loads a CSV data file with its Table Schema dictionary. With schemaPath
// empty, the dictionary is "<name>.schema.json" for "<name>.csv", else
// "<csvPath>.schema.json", when such a file exists; without one the types
// are inferred (a column whose every non-empty cell is a number is numeric).
// Throws DataLoadError naming the file, the line and the problem.
std::shared_ptr<DataSet> loadCsvDataSet(const std::string& csvPath, const std::string& schemaPath);

// Where the dictionary of a CSV file is looked for first and written:
// "data.csv" -> "data.schema.json", "data.txt" -> "data.txt.schema.json".
std::string schemaPathFor(const std::string& csvPath);

}  // namespace host
