#pragma once
#include <memory>
#include <vector>

// Which variables an input adapter reads and how their values are validated.
class ACAVarValidSpecs {
public:
    ACAVarValidSpecs(bool flag1, bool flag2, bool flag3);
    ACAVarValidSpecs(const ACAVarValidSpecs&) = delete;
    ACAVarValidSpecs& operator=(const ACAVarValidSpecs&) = delete;
    virtual ~ACAVarValidSpecs();

    void AddVariable(int index, bool flag1, bool flag2, bool flag3, bool flag4);
    const std::vector<int>& GetVariables() const;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
};
