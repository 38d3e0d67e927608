#pragma once
#include <memory>
#include <string>

#include "VELA_Format.h"
#include "VELA_ValueLabelMap.h"

// A handle to one variable of a data source's dictionary. Copies refer to the
// same variable. A default-constructed handle refers to none.
class VELA_Variable {
public:
    VELA_Variable();
    VELA_Variable(const VELA_Variable& other);
    VELA_Variable& operator=(const VELA_Variable& other);
    ~VELA_Variable();

    explicit operator bool() const;

    std::string GetName() const;
    // Null when the variable has no label.
    const char* GetLabel() const;
    // 1 nominal, 2 ordinal, 3 scale.
    int GetMeasurementLevel() const;
    VELA_ValueLabelMap GetValueLabels() const;
    // 0 numeric, otherwise the width of a text variable.
    int GetType() const;
    VELA_Format GetFormat() const;
    VELA_Format GetWriteFormat() const;

    void SetName(const std::string& name);
    void SetFormat(VELA_Format::FormatType type, int width, int decimals);
    void SetWriteFormat(VELA_Format::FormatType type, int width, int decimals);
    void SetMeasurementLevel(int level);
    void SetLabel(const std::string& label);
    void SetValueLabels(const VELA_ValueLabelMap& labels);

    struct Impl;
    explicit VELA_Variable(std::shared_ptr<Impl> impl);
    const std::shared_ptr<Impl>& impl() const;

private:
    std::shared_ptr<Impl> impl_;
};
