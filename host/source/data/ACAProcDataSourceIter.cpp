#include "ACAProcDataSourceIter.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "ACAInputAdapter.h"
#include "ACAVarValidSpecs.h"
#include "DataSet.h"
#include "ProcedureDataSource.h"
#include "Record.h"

// Reads the cases of the data set the iterator was made on, in their order.
// The data set is held for the iterator's life, so every iterator over the
// same source sees the same cases. Text variables deliver system-missing.
struct ACAProcDataSourceIter::Impl {
    std::shared_ptr<const host::DataSet> data;
    std::vector<int> variables;
    std::size_t next = 0;
    bool current = false;
    Record record;
};

ACAProcDataSourceIter::ACAProcDataSourceIter(ACAInputAdapter& adapter, bool) : impl_(std::make_unique<Impl>()) {
    impl_->data = host::dataSetOf(adapter.GetSource());
    if (adapter.GetSpecs() != nullptr) impl_->variables = adapter.GetSpecs()->GetVariables();
    const int count = impl_->data ? impl_->data->variableCount() : 0;
    for (int index : impl_->variables)
        if (index < 0 || index >= count)
            throw std::out_of_range("variable index " + std::to_string(index) + " is not in the data set");
    impl_->record.values().resize(impl_->variables.size());
}

ACAProcDataSourceIter::~ACAProcDataSourceIter() = default;

bool ACAProcDataSourceIter::Next() const {
    Impl& it = *impl_;
    if (!it.data || it.next >= it.data->caseCount()) {
        it.current = false;
        if (it.data) it.next = it.data->caseCount();
        return false;
    }
    std::vector<double>& values = it.record.values();
    for (std::size_t i = 0; i < it.variables.size(); ++i) values[i] = it.data->numericValue(it.next, it.variables[i]);
    ++it.next;
    it.current = true;
    return true;
}

const Record* ACAProcDataSourceIter::GetCurrentRecord() const { return impl_->current ? &impl_->record : nullptr; }

void ACAProcDataSourceIter::Reset() const {
    impl_->next = 0;
    impl_->current = false;
}
