#pragma once
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace host {
class DataSet;
}

namespace host::syntax {

// Finds a variable of a data set by name without regard to letter case, as
// DataSet::findVariable does, in constant time: a command may name every
// variable of a wide data set. Built on the first look-up.
class VariableIndex {
public:
    explicit VariableIndex(std::shared_ptr<const DataSet> data) : data_(std::move(data)) {}

    // The index of the first variable of that name, -1 if none (or no data set).
    int find(std::string_view name);

private:
    std::shared_ptr<const DataSet> data_;
    bool built_ = false;
    std::unordered_map<std::string, int> first_;  // upper-case name -> lowest index
};

}  // namespace host::syntax
