#pragma once
#include "VELA_DataSource.h"

// The active data set as a procedure sees it.
class ProcedureDataSource : public VELA_DataSource {
public:
    ProcedureDataSource();
    ~ProcedureDataSource() override;
};
