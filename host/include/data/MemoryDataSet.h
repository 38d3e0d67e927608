#pragma once
#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "DataSet.h"

namespace host {

// A data set held in memory, built variable by variable and case by case.
// Variables live in a deque so that references to them (and pointers to
// their labels) stay valid while more variables are added.
class MemoryDataSet : public DataSet {
public:
    std::string label() const override { return label_; }
    int variableCount() const override { return static_cast<int>(variables_.size()); }
    const VariableInfo& variable(int index) const override;
    int findVariable(const std::string& name) const override;
    std::size_t caseCount() const override { return caseCount_; }
    // A text variable reads as missing: text never reaches a procedure as a number.
    double numericValue(std::size_t caseIndex, int variable) const override;
    // A numeric variable reads as its shortest text, "" when missing.
    std::string textValue(std::size_t caseIndex, int variable) const override;

    void setLabel(std::string label) { label_ = std::move(label); }
    // Adds a variable (only before the first case); returns its index.
    int addVariable(VariableInfo info);
    VariableInfo& editVariable(int index);
    // Appends one case: numbers[v] is used for numeric variables, texts[v]
    // for text variables; both hold one entry per variable.
    void addCase(const std::vector<double>& numbers, const std::vector<std::string>& texts);
    // Takes all cases at once, column by column (only before the first case):
    // numbers[v] holds count values of a numeric variable v, texts[v] count
    // texts of a text variable; the other one is empty.
    void setCases(std::size_t count, std::vector<std::vector<double>> numbers,
                  std::vector<std::vector<std::string>> texts);

private:
    void checkCell(std::size_t caseIndex, int variable) const;

    std::string label_;
    std::deque<VariableInfo> variables_;
    std::vector<std::vector<double>> numbers_;     // per variable; empty for text
    std::vector<std::vector<std::string>> texts_;  // per variable; empty for numeric
    std::size_t caseCount_ = 0;
};

}  // namespace host
