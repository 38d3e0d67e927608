#pragma once
#include <memory>
#include <string>
#include <vector>

#include "UPSpecTypes.h"

class CommandDescriptor;
class VELA_DataSource;

// Validates variable names of one parameter against the data source.
// With numericOnly set, text variables are refused.
class VarSpecObj {
public:
    VarSpecObj(const std::string& paramName, const std::string& subComName,
               const CommandDescriptor& desc, const VELA_DataSource* source, bool numericOnly);
    VarSpecObj(const VarSpecObj&) = delete;
    VarSpecObj& operator=(const VarSpecObj&) = delete;
    ~VarSpecObj();

    // True when every name is a valid variable; reports the first problem otherwise.
    bool ValidateVariables(const std::vector<std::string>& names, UPSpecTypes::RepeatVarOptions repeat);
    // The variable's data-set index, negative (and reported) when invalid.
    int ValidateVariable(const std::string& name);
    int GetNValidVars() const;
    const std::vector<int>& GetValidVarList() const;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
};
