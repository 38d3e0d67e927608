#include "data/MemoryDataSet.h"

#include <stdexcept>

#include "data/NumberText.h"
#include "data/VariableName.h"

namespace host {

const VariableInfo& MemoryDataSet::variable(int index) const {
    if (index < 0 || index >= variableCount())
        throw std::out_of_range("variable index " + std::to_string(index) + " is not in the data set");
    return variables_[static_cast<std::size_t>(index)];
}

VariableInfo& MemoryDataSet::editVariable(int index) {
    if (index < 0 || index >= variableCount())
        throw std::out_of_range("variable index " + std::to_string(index) + " is not in the data set");
    return variables_[static_cast<std::size_t>(index)];
}

int MemoryDataSet::findVariable(const std::string& name) const {
    for (std::size_t i = 0; i < variables_.size(); ++i)
        if (sameVariableName(variables_[i].name, name)) return static_cast<int>(i);
    return -1;
}

int MemoryDataSet::addVariable(VariableInfo info) {
    if (caseCount_ != 0) throw std::logic_error("variables cannot be added after cases");
    variables_.push_back(std::move(info));
    numbers_.emplace_back();
    texts_.emplace_back();
    return variableCount() - 1;
}

void MemoryDataSet::addCase(const std::vector<double>& numbers, const std::vector<std::string>& texts) {
    const std::size_t count = variables_.size();
    if (numbers.size() != count || texts.size() != count)
        throw std::invalid_argument("a case needs one value per variable");
    for (std::size_t v = 0; v < count; ++v) {
        if (variables_[v].type == 0)
            numbers_[v].push_back(numbers[v]);
        else
            texts_[v].push_back(texts[v]);
    }
    ++caseCount_;
}

void MemoryDataSet::setCases(std::size_t count, std::vector<std::vector<double>> numbers,
                             std::vector<std::vector<std::string>> texts) {
    if (caseCount_ != 0) throw std::logic_error("cases can be set only once, before any other case");
    const std::size_t variables = variables_.size();
    if (numbers.size() != variables || texts.size() != variables)
        throw std::invalid_argument("cases need one column per variable");
    for (std::size_t v = 0; v < variables; ++v) {
        const bool numeric = variables_[v].type == 0;
        if ((numeric ? numbers[v].size() : texts[v].size()) != count)
            throw std::invalid_argument("a column does not hold one value per case");
    }
    numbers_ = std::move(numbers);
    texts_ = std::move(texts);
    caseCount_ = count;
}

void MemoryDataSet::checkCell(std::size_t caseIndex, int variable) const {
    if (variable < 0 || variable >= variableCount())
        throw std::out_of_range("variable index " + std::to_string(variable) + " is not in the data set");
    if (caseIndex >= caseCount_)
        throw std::out_of_range("case " + std::to_string(caseIndex) + " is not in the data set");
}

double MemoryDataSet::numericValue(std::size_t caseIndex, int variable) const {
    checkCell(caseIndex, variable);
    const auto v = static_cast<std::size_t>(variable);
    if (variables_[v].type != 0) return kSystemMissing;
    return numbers_[v][caseIndex];
}

std::string MemoryDataSet::textValue(std::size_t caseIndex, int variable) const {
    checkCell(caseIndex, variable);
    const auto v = static_cast<std::size_t>(variable);
    if (variables_[v].type != 0) return texts_[v][caseIndex];
    const double value = numbers_[v][caseIndex];
    return isSystemMissing(value) ? std::string() : formatNumber(value);
}

}  // namespace host
