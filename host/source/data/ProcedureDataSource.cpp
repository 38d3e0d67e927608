#include "ProcedureDataSource.h"

#include <memory>

#include "HostSession.h"
#include "data/DataSourceImpl.h"

// The session's active data set; an empty one when none is loaded.
ProcedureDataSource::ProcedureDataSource()
    : VELA_DataSource(std::make_shared<Impl>(host::HostSession::instance().activeDataSet())) {}

ProcedureDataSource::~ProcedureDataSource() = default;
