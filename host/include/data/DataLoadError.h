#pragma once
#include <stdexcept>
#include <string>

namespace host {

// A data or dictionary file that cannot be read. The message names the file,
// the line when there is one, and the problem: "data.csv:7: row has 4 fields,
// header has 5".
class DataLoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
