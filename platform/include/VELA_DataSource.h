#pragma once
#include <memory>
#include <string>

#include "VELA_Variable.h"

// A data set: its dictionary and its cases. Copies share the same data set.
// The active data set is read through ProcedureDataSource; a new data file is
// built through the data source of a UserOutputCaseFile.
class VELA_DataSource {
public:
    VELA_DataSource();
    VELA_DataSource(const VELA_DataSource& other);
    VELA_DataSource& operator=(const VELA_DataSource& other);
    virtual ~VELA_DataSource();

    // Number of observation columns of a case.
    int ColumnCount() const;
    // Number of variables in the dictionary.
    int VariableCount() const;
    // A handle that refers to no variable when the index is out of range.
    VELA_Variable GetVariable(int index) const;
    std::string GetLabel() const;

    // Dictionary building (new data files only).
    void SetLabel(const char* label);
    // Width 0 makes a numeric variable, a positive width a text variable.
    // The new variable's index is stored through index when it is not null.
    VELA_Variable MakeVariable(int width, unsigned int* index);
    void EndDictionary();
    void CloseData();

    struct Impl;
    explicit VELA_DataSource(std::shared_ptr<Impl> impl);
    const std::shared_ptr<Impl>& impl() const;

private:
    std::shared_ptr<Impl> impl_;
};
