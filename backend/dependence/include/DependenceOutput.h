#pragma once
#include <string>
#include <vector>

#include "DependenceResult.h"
#include "DependenceSettings.h"

class BpProcedure;
class ProcedureDataSource;
class Table;

// The output stage: one pivot table, comparisons in rows and statistics in
// columns, with footnotes naming the statistic, the test and the missing-data
// rule, handed to the host as the run's output document.
class DependenceOutput {
public:
    DependenceOutput(BpProcedure& procedure, ProcedureDataSource& source, const DependenceSettings& settings,
                     const std::vector<DependenceResult>& results);

    // 0 when the document was handed over, 1 otherwise.
    unsigned start();

    // Texts of the table, also used by the tests.
    std::string title() const;
    std::vector<std::string> columnLabels() const;
    std::vector<std::string> footnotes() const;

private:
    void fill(Table& table) const;

    BpProcedure& procedure_;
    ProcedureDataSource& source_;
    const DependenceSettings& settings_;
    const std::vector<DependenceResult>& results_;
};
