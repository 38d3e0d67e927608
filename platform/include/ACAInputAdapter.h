#pragma once
#include <memory>

class ACAVarValidSpecs;
class ProcedureDataSource;

// Binds a validity specification to a data source.
class ACAInputAdapter {
public:
    ACAInputAdapter(ACAVarValidSpecs* specs, ProcedureDataSource& source);
    ACAInputAdapter(const ACAInputAdapter&) = delete;
    ACAInputAdapter& operator=(const ACAInputAdapter&) = delete;
    virtual ~ACAInputAdapter();

    ACAVarValidSpecs* GetSpecs() const;
    ProcedureDataSource& GetSource() const;

private:
    ACAVarValidSpecs* specs_;
    ProcedureDataSource& source_;
};
