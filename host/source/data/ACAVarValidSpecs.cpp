#include "ACAVarValidSpecs.h"

// The host always delivers missing values as system-missing, so the
// validation flags only record which variables are read, in order.
struct ACAVarValidSpecs::Impl {
    std::vector<int> variables;
};

ACAVarValidSpecs::ACAVarValidSpecs(bool, bool, bool) : impl_(std::make_unique<Impl>()) {}

ACAVarValidSpecs::~ACAVarValidSpecs() = default;

void ACAVarValidSpecs::AddVariable(int index, bool, bool, bool, bool) { impl_->variables.push_back(index); }

const std::vector<int>& ACAVarValidSpecs::GetVariables() const { return impl_->variables; }
