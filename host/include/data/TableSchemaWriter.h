#pragma once
#include <string>

namespace host {

class DataSet;

// The Table Schema JSON of a data set's dictionary, in the form the loader
// reads back: file label as "title", each variable as a field with its type,
// label, measurement level, formats and value labels.
std::string writeTableSchema(const DataSet& data);

}  // namespace host
