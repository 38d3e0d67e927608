#pragma once
#include <memory>
#include <string>

#include "DataSet.h"
#include "data/CsvLoadOptions.h"
#include "data/DataLoadError.h"

namespace host {

// Loads a CSV data file with its Table Schema dictionary; csvPath "-" reads
// standard input. With schemaPath empty, the dictionary is
// "<name>.schema.json" for "<name>.csv", else "<csvPath>.schema.json", when
// such a file exists (never for standard input). The separator, decimal mark
// and encoding are detected, header names made valid, and types inferred for
// the columns the dictionary does not describe (docs/data-files.md).
// Throws DataLoadError naming the file, the line and the problem.
std::shared_ptr<DataSet> loadCsvDataSet(const std::string& csvPath, const std::string& schemaPath,
                                        const CsvLoadOptions& options);

// The same with the default options and no notes.
std::shared_ptr<DataSet> loadCsvDataSet(const std::string& csvPath, const std::string& schemaPath);

// Where the dictionary of a CSV file is looked for first and written:
// "data.csv" -> "data.schema.json", "data.txt" -> "data.txt.schema.json".
std::string schemaPathFor(const std::string& csvPath);

}  // namespace host
