#pragma once
#include <string>
#include <vector>

#include "syntax/Token.h"

namespace host::syntax {

// Finds where a variable name is written in a command, for messages that are
// given only the names of the subcommand (or keyword) and the parameter.
class VariableNameLocator {
public:
    explicit VariableNameLocator(const std::vector<Token>& tokens) : tokens_(tokens) {}

    // The occurrence-th (from 1) writing of name, in any letter case, in the
    // value of parameter after the subcommand or keyword; null if not found.
    const Token* find(const std::string& subComName, const std::string& paramName, const std::string& name,
                      int occurrence) const;

private:
    const std::vector<Token>& tokens_;
};

}  // namespace host::syntax
