#include "OPSCommonOutput.h"

OPSCommonOutput::OPSCommonOutput(ACAVarValidSpecs* specs, ProcedureDataSource& source, BpProcedure& procedure,
                                 ACAInputAdapter* adapter)
    : specs_(specs), source_(source), procedure_(procedure), adapter_(adapter) {}

OPSCommonOutput::~OPSCommonOutput() = default;
