#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VELA_Format.h"

class VELA_DataSource;

namespace host {

// One variable of a data set's dictionary.
struct VariableInfo {
    std::string name;
    std::string label;
    bool hasLabel = false;
    int type = 0;               // 0 numeric, otherwise the width of a text variable
    int measurementLevel = 3;   // 1 nominal, 2 ordinal, 3 scale
    VELA_Format format{5, 8, 2};
    VELA_Format writeFormat{5, 8, 2};
    // Value labels in the order they were defined; values as texts as they
    // appear in the data (numbers in their shortest round-trip form).
    std::vector<std::pair<std::string, std::string>> valueLabels;
};

// A data set held by the reference host: its dictionary and its cases.
// Numeric values are doubles; a missing value (empty cell or user-missing
// code) is the most negative finite double.
class DataSet {
public:
    virtual ~DataSet() = default;

    virtual std::string label() const = 0;
    virtual int variableCount() const = 0;
    virtual const VariableInfo& variable(int index) const = 0;
    // Index of the variable whose name matches case-insensitively; -1 if none.
    virtual int findVariable(const std::string& name) const = 0;
    virtual std::size_t caseCount() const = 0;
    virtual double numericValue(std::size_t caseIndex, int variable) const = 0;
    virtual std::string textValue(std::size_t caseIndex, int variable) const = 0;
};

// The data set behind a data source (null when the source has none).
std::shared_ptr<const DataSet> dataSetOf(const VELA_DataSource& source);

}  // namespace host
