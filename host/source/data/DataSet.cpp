#include "DataSet.h"

#include "VELA_DataSource.h"
#include "data/DataSourceImpl.h"

namespace host {

std::shared_ptr<const DataSet> dataSetOf(const VELA_DataSource& source) {
    return source.impl() ? source.impl()->data : nullptr;
}

}  // namespace host
