#include "DistanceCorrOutputGen.h"

#include <iomanip>
#include <locale>
#include <new>
#include <sstream>

#include "ACAVarValidSpecs.h"
#include "BpProcedure.h"
#include "Cell.h"
#include "Cells.h"
#include "Descendants.h"
#include "Dimension.h"
#include "FacSTDictionary.h"
#include "OPSCommonOutput.h"
#include "PathFactory.h"
#include "ProcedureDataSource.h"
#include "StatJSONConverter.h"
#include "StatJSONGenerator.h"
#include "Table.h"

namespace {
// Every cell of the procedure's tables is a standard cell.
const CellType kCellType = static_cast<CellType>(1);
// Format type code of a fixed-point number.
const int kNumberFormat = 5;
const int kCellWidth = 10;
const int kMaxColumnWidth = 300;
}  // namespace

std::string _round(double value) {
    std::ostringstream out;
    out.imbue(std::locale::classic());  // a decimal point whatever the user's locale
    out << std::fixed << std::setprecision(2) << value;
    return out.str();
}

DistanceCorrOutputGen::DistanceCorrOutputGen(
    BpProcedure& procedure, ProcedureDataSource& source, const DistanceCorrInputSettings& settings,
    std::vector<DistanceCorrResult>& results,
    std::vector<DistanceCorrDescriptiveResult>& descriptives, DistanceCorrCommonData& common)
    : procedure_(procedure),
      source_(source),
      settings_(settings),
      results_(results),
      descriptives_(descriptives),
      common_(common) {
    specs_ = std::make_unique<ACAVarValidSpecs>(true, true, true);
    generator_ = std::make_unique<StatJSONGenerator>("Distance Correlation", "");
    message_.SetCommandName("DISTANCE CORRELATION");
    message_.SetProcedureTitle("Distance Correlation");
    const std::string resources = PathFactory::getPathInstance(3)->getStringResourcePath();
    dictionary_ = std::make_unique<FacSTDictionary>(resources);
    dictionary_->SetProcedure("Distance Correlation");
}

DistanceCorrOutputGen::~DistanceCorrOutputGen() {
    // Released in this order; the message goes last with the members.
    generator_.reset();
    specs_.reset();
    dictionary_.reset();
}

int DistanceCorrOutputGen::start() {
    if (results_.empty() || descriptives_.empty()) return 1;

    OPSCommonOutput common(specs_.get(), source_, procedure_, nullptr);
    StatJSONConverter converter(procedure_);
    converter.setCommonOutput(&common);

    // The order of the calls is the order of the tables in the document; the
    // builders' statuses only mean that a table is absent.
    generateDescriptiveStatistics();
    generateDistanceCorrCoefficients();
    generateSampleEstimates();
    generateDistVariance();
    generateDistanceMatrix();

    int status = 0;
    if (settings_.plotSettings().get_scatterPlotEnabled())
        status = static_cast<int>(generateOutputChart());

    generateOutput(converter);
    return status;
}

void DistanceCorrOutputGen::generateOutput(StatJSONConverter& converter) {
    if (generator_) converter.generateOutput(generator_->getProcedureStatJSON());
}

std::string DistanceCorrOutputGen::getCompositTrans(const std::string& pattern,
                                                    const std::string& first,
                                                    const std::string& second) const {
    // Both markers are located in the pattern itself, so a replacement that
    // happens to contain a marker is inserted as it is.
    const std::string::size_type pos1 = pattern.find("^1");
    const std::string::size_type pos2 = pattern.find("^2");
    std::string result;
    result.reserve(pattern.size() + first.size() + second.size());
    for (std::string::size_type i = 0; i < pattern.size();) {
        if (i == pos1) {
            result += first;
            i += 2;
        } else if (i == pos2) {
            result += second;
            i += 2;
        } else {
            result += pattern[i++];
        }
    }
    return result;
}

std::string DistanceCorrOutputGen::lookUp(const std::string& key) const {
    return dictionary_ ? dictionary_->LookUp(key) : key;
}

void DistanceCorrOutputGen::frameTable(Table& table, const std::string& title, int minWidth,
                                       int decimals) const {
    table.set_table_title(title);
    table.hide_title(false);
    table.set_min_data_column_width(minWidth);
    table.set_max_data_column_width(kMaxColumnWidth);
    table.set_default_cell_format(kNumberFormat, kCellWidth, decimals);
}

void DistanceCorrOutputGen::finishTable(Table& table, Descendants* rows, Descendants* columns,
                                        Cells* cells) {
    Dimension* dimension = new Dimension(&table, rows, columns);  // released by the table
    table.set_dimensions(dimension);
    table.set_cells(cells);
    table.addTableToProcedureJSON();
}

Cell* DistanceCorrOutputGen::textCell(Table* table, const std::string& text) {
    Cell* cell = new Cell(table, kCellType);  // released by the table
    cell->setValue(text);
    return cell;
}

Cell* DistanceCorrOutputGen::numberCell(Table* table, double value) {
    Cell* cell = new Cell(table, kCellType);  // released by the table
    cell->setValue(value);
    return cell;
}

Descendants* DistanceCorrOutputGen::intervalGroup(Table* table, const std::string& label) const {
    Descendants* group = new Descendants(table);  // released by the table
    group->set_label(label);
    group->addCell(textCell(table, lookUp("Lower")));
    group->addCell(textCell(table, lookUp("Upper")));
    group->setShowLabel(true);
    return group;
}

std::string DistanceCorrOutputGen::pairLabel(const DistanceCorrResult& result) const {
    return result.varName1 + " " + lookUp("vs.") + " " + result.varName2;
}
