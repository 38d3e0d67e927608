#pragma once
#include <vector>

class ProcedureDataSource;

// Reads the values of chosen variables of the active data set through the
// host's data access chain (validity specification, input adapter, record
// iterator), one column per variable in case order.
class DependenceCaseData {
public:
    static std::vector<std::vector<double>> fetch(ProcedureDataSource& source, const std::vector<int>& indices);
};
