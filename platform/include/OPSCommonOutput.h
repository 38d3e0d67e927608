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
    // Kept for the host's side of the context; the procedure reads only the frame.
    [[maybe_unused]] ACAVarValidSpecs* specs_;
    [[maybe_unused]] ProcedureDataSource& source_;
    BpProcedure& procedure_;
    [[maybe_unused]] ACAInputAdapter* adapter_;
};
