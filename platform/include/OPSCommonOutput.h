#pragma once

class ACAVarValidSpecs;
class ACAInputAdapter;
class BpProcedure;
class ProcedureDataSource;

// The context shared by a procedure's output: variables, data source, frame.
class OPSCommonOutput {
public:
    OPSCommonOutput(ACAVarValidSpecs* specs, ProcedureDataSource& source, BpProcedure& procedure,
                    ACAInputAdapter* adapter);
    virtual ~OPSCommonOutput();

    BpProcedure& GetProcedure() const { return procedure_; }

private:
    ACAVarValidSpecs* specs_;
    ProcedureDataSource& source_;
    BpProcedure& procedure_;
    ACAInputAdapter* adapter_;
};
