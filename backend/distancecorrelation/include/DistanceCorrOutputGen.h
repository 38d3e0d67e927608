#pragma once
#include <memory>
#include <string>
#include <vector>

#include "DistanceCorrCommonData.h"
#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "DistanceCorrResult.h"
#include "ParserMessage.h"

class ACAVarValidSpecs;
class BpProcedure;
class Cell;
class Cells;
class Descendants;
class FacSTDictionary;
class ProcedureDataSource;
class StatJSONConverter;
class StatJSONGenerator;
class Table;

// The value in fixed notation with two decimals (95 gives "95.00"); used to
// put confidence levels into labels.
std::string _round(double value);

// The output stage: builds the requested tables and the scatter plot from the
// engine's results and hands one output document to the host.
class DistanceCorrOutputGen {
public:
    DistanceCorrOutputGen(BpProcedure& procedure, ProcedureDataSource& source,
                          const DistanceCorrInputSettings& settings,
                          std::vector<DistanceCorrResult>& results,
                          std::vector<DistanceCorrDescriptiveResult>& descriptives,
                          DistanceCorrCommonData& common);
    DistanceCorrOutputGen(const DistanceCorrOutputGen&) = delete;
    DistanceCorrOutputGen& operator=(const DistanceCorrOutputGen&) = delete;
    ~DistanceCorrOutputGen();

    // 1 when there is nothing to show; otherwise the chart's status when a
    // scatter plot was requested, else 0.
    int start();
    void generateOutput(StatJSONConverter& converter);

    // Table builders, in output order; 1 when their data is empty or the
    // table could not be created.
    int generateDescriptiveStatistics();
    int generateDistanceCorrCoefficients();
    int generateSampleEstimates();
    int generateDistVariance();
    int generateDistanceMatrix();
    int generateMatrix2D(const std::vector<std::vector<double>>& matrix, std::string& name);
    unsigned generateOutputChart();

    // The pattern with the first "^1" replaced by first and the first "^2"
    // by second; the inserted texts are not searched for markers.
    std::string getCompositTrans(const std::string& pattern, const std::string& first,
                                 const std::string& second) const;

private:
    std::string lookUp(const std::string& key) const;
    // Title, widths and default number format shared by every table.
    void frameTable(Table& table, const std::string& title, int minWidth, int decimals) const;
    // Sets the trees and cells on the table and adds it to the document.
    static void finishTable(Table& table, Descendants* rows, Descendants* columns, Cells* cells);
    static Cell* textCell(Table* table, const std::string& text);
    static Cell* numberCell(Table* table, double value);
    // A shown column group with the looked-up "Lower" and "Upper" below it.
    Descendants* intervalGroup(Table* table, const std::string& label) const;
    // Columns, rows and cells of the coefficients table (withCovariance false)
    // or the estimates table (true): one row per variable pair.
    int fillPairTable(Table& table, bool withCovariance, const std::string& rowLabel);
    // "x vs. y", the row header of a variable pair.
    std::string pairLabel(const DistanceCorrResult& result) const;

    BpProcedure& procedure_;
    ProcedureDataSource& source_;
    const DistanceCorrInputSettings& settings_;
    std::vector<DistanceCorrResult>& results_;
    std::vector<DistanceCorrDescriptiveResult>& descriptives_;
    DistanceCorrCommonData& common_;
    std::unique_ptr<StatJSONGenerator> generator_;
    std::unique_ptr<ACAVarValidSpecs> specs_;
    ParserMessage message_;
    std::unique_ptr<FacSTDictionary> dictionary_;
};
