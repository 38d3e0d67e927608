#include "syntax/VariableIndex.h"

#include "DataSet.h"
#include "syntax/TextCase.h"

namespace host::syntax {

int VariableIndex::find(std::string_view name) {
    if (!data_) return -1;
    if (!built_) {
        const int count = data_->variableCount();
        first_.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) first_.emplace(upperCase(data_->variable(i).name), i);
        built_ = true;
    }
    const auto found = first_.find(upperCase(name));
    return found == first_.end() ? -1 : found->second;
}

}  // namespace host::syntax
