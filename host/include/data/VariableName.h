#pragma once
#include <string>

namespace host {

// Why a text cannot be a variable name; empty when it can. A name starts
// with a letter and goes on with letters, digits, '.', '_', '$', '#' or '@';
// it does not end with '.' and is not one of the reserved words (ALL, AND,
// BY, EQ, GE, GT, LE, LT, NE, NOT, OR, TO, WITH). Bytes of non-ASCII UTF-8
// characters count as letters.
std::string variableNameProblem(const std::string& name);

// ASCII comparison ignoring letter case, as variable names are matched.
bool sameVariableName(const std::string& a, const std::string& b);

}  // namespace host
