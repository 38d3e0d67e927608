#include "ACAInputAdapter.h"

ACAInputAdapter::ACAInputAdapter(ACAVarValidSpecs* specs, ProcedureDataSource& source)
    : specs_(specs), source_(source) {}

ACAInputAdapter::~ACAInputAdapter() = default;

ACAVarValidSpecs* ACAInputAdapter::GetSpecs() const { return specs_; }

ProcedureDataSource& ACAInputAdapter::GetSource() const { return source_; }
