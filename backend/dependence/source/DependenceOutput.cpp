#include "DependenceOutput.h"

#include <cstdio>
#include <memory>

#include "ACAVarValidSpecs.h"
#include "BpProcedure.h"
#include "Cell.h"
#include "Cells.h"
#include "Descendants.h"
#include "Dimension.h"
#include "OPSCommonOutput.h"
#include "ProcedureDataSource.h"
#include "StatJSONConverter.h"
#include "StatJSONGenerator.h"
#include "Table.h"

namespace {

const int kNumberFormat = 5;
const int kCellWidth = 10;
const int kDecimals = 4;

bool partialOf(const DependenceSettings& s) { return !s.control.empty(); }

std::string number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

std::string names(const std::vector<DependenceVariable>& list) {
    std::string text;
    for (std::size_t k = 0; k < list.size(); ++k) text += (k ? ", " : "") + list[k].name;
    return text;
}

Cell* textCell(Table* table, const std::string& text) {
    Cell* cell = new Cell(table, CellTypeStandard);  // released by the table
    cell->setValue(text);
    return cell;
}

Cell* numberCell(Table* table, double value) {
    Cell* cell = new Cell(table, CellTypeStandard);  // released by the table
    cell->setValue(value);
    return cell;
}

// Whole counts as exact text: N and the t-test's degrees of freedom.
Cell* countCell(Table* table, double value) {
    if (!(value >= 0)) return numberCell(table, value);
    char text[64];
    std::snprintf(text, sizeof text, "%.0f", value);
    return textCell(table, text);
}

}  // namespace

DependenceOutput::DependenceOutput(BpProcedure& procedure, ProcedureDataSource& source,
                                   const DependenceSettings& settings, const std::vector<DependenceResult>& results)
    : procedure_(procedure), source_(source), settings_(settings), results_(results) {}

std::string DependenceOutput::title() const {
    if (partialOf(settings_)) return "Partial Distance Correlation";
    if (settings_.statistic == DependenceStatistic::U) return "Bias-Corrected Distance Correlation";
    return "Distance Correlation";
}

std::vector<std::string> DependenceOutput::columnLabels() const {
    std::vector<std::string> labels{"N"};
    if (partialOf(settings_)) {
        labels.push_back("pdCor (U, squared)");
        labels.push_back("pdCov (U, squared)");
    } else if (settings_.statistic == DependenceStatistic::U) {
        labels.push_back("bcdCor (U, squared)");
        labels.push_back("dCov (U, squared)");
    } else {
        labels.push_back("dCor (V, root)");
        labels.push_back("dCov (V, root)");
    }
    if (settings_.test == DependenceTest::TTest) {
        labels.push_back("T");
        labels.push_back("df");
    }
    if (settings_.test != DependenceTest::None) labels.push_back("Sig.");
    return labels;
}

std::vector<std::string> DependenceOutput::footnotes() const {
    std::vector<std::string> notes;
    const std::string exponent = "exponent " + number(settings_.exponent);
    std::string statistic;
    if (partialOf(settings_))
        statistic = "Partial distance correlation and covariance given " + names(settings_.control) +
                    ": bias-corrected U-statistics on the squared scale (can be negative), " + exponent + ".";
    else if (settings_.statistic == DependenceStatistic::U)
        statistic =
            "Bias-corrected distance correlation and covariance: U-statistics on the squared scale (can be "
            "negative), " +
            exponent + ".";
    else
        statistic = "Distance correlation and covariance: V-statistics on the root scale, " + exponent + ".";
    notes.push_back(statistic);
    if (settings_.mode == DependenceMode::Sets)
        notes.push_back("Sets: (" + names(settings_.variables) + ") and (" + names(settings_.with) +
                        ") are compared as vectors with Euclidean distances.");
    if (settings_.test == DependenceTest::TTest)
        notes.push_back(
            "t-test of independence: T = sqrt(M - 1) R / sqrt(1 - R^2), df = M - 1, M = N(N - 3)/2, "
            "one-sided p.");
    if (settings_.test == DependenceTest::Permutation)
        notes.push_back("Permutation test: seed " + std::to_string(settings_.seed) + ", " +
                        std::to_string(settings_.replicates) +
                        " replicates, p = (k + 1)/(R + 1) with k the replicates at least as large as the observed "
                        "statistic.");
    notes.push_back(settings_.missing == DependenceMissing::Listwise
                        ? "Missing values: listwise, cases complete on every named variable."
                        : "Missing values: pairwise, cases complete on the row's variables" +
                              std::string(partialOf(settings_) ? " and the control variables." : "."));
    return notes;
}

unsigned DependenceOutput::start() {
    if (results_.empty()) return 1;
    ACAVarValidSpecs specs(true, true, true);
    OPSCommonOutput common(&specs, source_, procedure_, nullptr);
    StatJSONConverter converter(procedure_);
    converter.setCommonOutput(&common);
    StatJSONGenerator generator("Dependence", "");
    {
        Table table(&generator, "Dependence");
        fill(table);
    }
    converter.generateOutput(generator.getProcedureStatJSON());
    return 0;
}

void DependenceOutput::fill(Table& table) const {
    table.set_table_title(title());
    table.hide_title(false);
    table.set_min_data_column_width(100);
    table.set_max_data_column_width(300);
    table.set_default_cell_format(kNumberFormat, kCellWidth, kDecimals);
    const std::vector<std::string> notes = footnotes();
    for (std::size_t k = 0; k < notes.size(); ++k) {
        table.add_footnote(notes[k]);
        table.addFootnoteRefs(static_cast<int>(k));
    }

    Table* t = &table;
    auto* rows = new Descendants(t);  // released by the table
    auto* columns = new Descendants(t);
    auto* cells = new Cells(t);
    rows->set_label(settings_.mode == DependenceMode::Sets ? "Sets" : "Pair");
    rows->setShowLabel(true);
    const bool ttest = settings_.test == DependenceTest::TTest;
    const std::vector<std::string> labels = columnLabels();
    for (std::size_t k = 0; k < labels.size(); ++k) {
        if (ttest && labels[k] == "T") {
            auto* group = new Descendants(t);
            group->set_label("t-Test");
            group->setShowLabel(true);
            for (const char* leaf : {"T", "df", "Sig."}) group->addCell(textCell(t, leaf));
            columns->addCell(group);
            break;
        }
        columns->addCell(textCell(t, labels[k]));
    }
    for (const DependenceResult& r : results_) {
        std::vector<Cell*> row{countCell(t, static_cast<double>(r.n)), numberCell(t, r.correlation),
                               numberCell(t, r.covariance)};
        if (ttest) {
            row.push_back(numberCell(t, r.tStatistic));
            row.push_back(countCell(t, r.df));
            row.push_back(numberCell(t, r.pValue));
        } else if (settings_.test == DependenceTest::Permutation) {
            row.push_back(numberCell(t, r.pValue));
        }
        cells->addCells(row);
        rows->addCell(textCell(t, r.label));
    }
    t->set_dimensions(new Dimension(t, rows, columns));
    t->set_cells(cells);
    t->addTableToProcedureJSON();
}
