#include "DependenceCaseData.h"

#include "ACAInputAdapter.h"
#include "ACAProcDataSourceIter.h"
#include "ACAVarValidSpecs.h"
#include "ProcedureDataSource.h"
#include "Record.h"

std::vector<std::vector<double>> DependenceCaseData::fetch(ProcedureDataSource& source,
                                                           const std::vector<int>& indices) {
    ACAVarValidSpecs specs(true, true, true);
    for (int index : indices) specs.AddVariable(index, false, true, true, true);
    ACAInputAdapter adapter(&specs, source);
    ACAProcDataSourceIter iterator(adapter, true);

    std::vector<std::vector<double>> columns(indices.size());
    while (iterator.Next()) {
        const Record* record = iterator.GetCurrentRecord();
        if (record == nullptr || record->Size() != indices.size()) continue;
        const double* values = record->GetAll();
        for (std::size_t j = 0; j < indices.size(); ++j) columns[j].push_back(values[j]);
    }
    return columns;
}
