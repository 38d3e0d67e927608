#include "data/NewFileDataStore.h"

#include "VELA_Case.h"
#include "data/DataSourceImpl.h"
#include "data/HostError.h"
#include "data/NewCaseFile.h"

namespace host {

void NewFileDataStore::AddCase(const VELA_Case& dataCase) {
    if (dataCase.GetDataSource().impl() != source_ || !source_->newFile)
        raiseHostError("Cannot add a case of another data source to a new data file.");
    source_->newFile->addCase(dataCase.GetObsPointer());
}

}  // namespace host
