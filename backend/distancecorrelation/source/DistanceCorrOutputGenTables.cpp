// The descriptive, coefficients, estimates and distance variance tables.
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "Cell.h"
#include "Cells.h"
#include "Descendants.h"
#include "Dimension.h"
#include "DistanceCorrOutputGen.h"
#include "Table.h"

namespace {

// Replicates as a whole number of iterations. Counts beyond the 32-bit
// range are written in full rather than wrapped.
std::string replicatesText(double iterations) {
    const double whole = std::floor(iterations);
    if (whole >= std::numeric_limits<std::int32_t>::min() &&
        whole <= std::numeric_limits<std::int32_t>::max())
        return std::to_string(static_cast<std::int32_t>(whole));
    if (std::isfinite(whole) && std::fabs(whole) < 9.2e18)
        return std::to_string(static_cast<std::int64_t>(whole));
    return std::to_string(whole);
}

}  // namespace

int DistanceCorrOutputGen::generateDescriptiveStatistics() {
    if (!settings_.printSettings().get_details()) return 0;
    if (descriptives_.empty()) return 1;

    std::unique_ptr<Table> table(new (std::nothrow)
                                     Table(generator_.get(), "Distance Correlation Details"));
    if (!table) return 1;
    frameTable(*table, lookUp("Descriptive Statistics"), 100, 3);

    Table* t = table.get();
    Cells* cells = new (std::nothrow) Cells(t);
    Descendants* rows = new (std::nothrow) Descendants(t);
    Descendants* columns = new (std::nothrow) Descendants(t);
    if (!cells || !rows || !columns) return 1;

    columns->set_label(" ");
    columns->setShowLabel(false);
    for (const char* key :
         {"Variable", "Label", "N", "Mean", "Std. Deviation", "Minimum", "Maximum"})
        columns->addCell(textCell(t, lookUp(key)));

    for (std::size_t i = 0; i < descriptives_.size(); ++i) {
        const DistanceCorrDescriptiveResult& d = descriptives_[i];
        std::vector<Cell*> row{textCell(t, d.varName),
                               textCell(t, d.varLabel),
                               numberCell(t, static_cast<double>(d.n)),
                               numberCell(t, d.mean),
                               numberCell(t, d.stdDev),
                               numberCell(t, d.minimum),
                               numberCell(t, d.maximum)};
        cells->addCells(row);
        rows->addCell(textCell(t, std::to_string(i + 1)));
    }

    finishTable(*table, rows, columns, cells);
    return 0;
}

int DistanceCorrOutputGen::generateDistanceCorrCoefficients() {
    if (!settings_.printSettings().get_distanceCorrCoefficient()) return 0;
    if (results_.empty()) return 1;

    std::unique_ptr<Table> table(new (std::nothrow)
                                     Table(generator_.get(), "Distance Correlation Coefficients"));
    if (!table) return 1;
    frameTable(*table, lookUp("Distance Correlation Coefficients"), 100, 4);

    const SubCommands::CriteriaSettings& criteria = settings_.criteriaSettings();
    table->addFootnoteRefs(0);
    if (criteria.get_permEnabled()) {
        table->add_footnote(getCompositTrans(lookUp("Number of Replicates ^1"),
                                             replicatesText(criteria.get_permMaxIterations()), ""));
    }
    return fillPairTable(*table, false, lookUp("Variable"));
}

int DistanceCorrOutputGen::generateSampleEstimates() {
    if (!settings_.printSettings().get_correlationEstimates()) return 0;
    if (results_.empty()) return 1;

    std::unique_ptr<Table> table(
        new (std::nothrow) Table(generator_.get(), "Distance Correlation Estimation Summary"));
    if (!table) return 1;
    frameTable(*table, lookUp("Distance Correlation Estimates"), 100, 4);
    return fillPairTable(*table, true, lookUp("Variable Pair"));
}

int DistanceCorrOutputGen::fillPairTable(Table& table, bool withCovariance, const std::string& rowLabel) {
    const SubCommands::CriteriaSettings& criteria = settings_.criteriaSettings();
    const bool perm = criteria.get_permEnabled();
    const std::string permLabel = getCompositTrans(lookUp("Permutation Confidence Interval ^1"),
                                                   _round(criteria.get_permSigLevel()), "");
    const std::string ciLabel =
        getCompositTrans(lookUp("Confidence Interval ^1"), _round(criteria.get_ciLevel()), "");

    Table* t = &table;
    Cells* cells = new (std::nothrow) Cells(t);
    Descendants* rows = new (std::nothrow) Descendants(t);
    Descendants* columns = new (std::nothrow) Descendants(t);
    if (!cells || !rows || !columns) return 1;

    // The permutation group is made first and stands before the ordinary interval.
    Descendants* permGroup = perm ? intervalGroup(t, permLabel) : nullptr;
    Descendants* ciGroup = intervalGroup(t, ciLabel);
    if (withCovariance) {
        columns->addCell(textCell(t, lookUp("dCov")));
        columns->addCell(textCell(t, lookUp("dCor")));
    } else {
        columns->addCell(textCell(t, lookUp("dCor Value")));
    }
    if (permGroup) columns->addCell(permGroup);
    columns->addCell(ciGroup);
    if (perm) columns->addCell(textCell(t, lookUp("Sig.")));

    rows->set_label(rowLabel);
    rows->setShowLabel(true);

    for (const DistanceCorrResult& r : results_) {
        std::vector<Cell*> row;
        if (withCovariance) row.push_back(numberCell(t, r.dCov));
        row.push_back(numberCell(t, r.dCor));
        if (perm) {
            row.push_back(numberCell(t, r.permLower));
            row.push_back(numberCell(t, r.permUpper));
        }
        row.push_back(numberCell(t, r.ciLower));
        row.push_back(numberCell(t, r.ciUpper));
        if (perm) row.push_back(numberCell(t, r.pValue));
        cells->addCells(row);
        rows->addCell(textCell(t, pairLabel(r)));
    }

    finishTable(table, rows, columns, cells);
    return 0;
}

int DistanceCorrOutputGen::generateDistVariance() {
    if (!settings_.printSettings().get_distanceVariance()) return 0;
    if (descriptives_.empty()) return 1;

    std::unique_ptr<Table> table(new (std::nothrow) Table(generator_.get(), "Distance Variance"));
    if (!table) return 1;
    frameTable(*table, lookUp("Distance Variance"), 100, 4);

    Table* t = table.get();
    Cells* cells = new (std::nothrow) Cells(t);
    Descendants* rows = new (std::nothrow) Descendants(t);
    Descendants* columns = new (std::nothrow) Descendants(t);
    if (!cells || !rows || !columns) return 1;

    columns->addCell(textCell(t, lookUp("dVar")));
    rows->set_label(lookUp("Variable"));
    rows->setShowLabel(true);

    for (const DistanceCorrDescriptiveResult& d : descriptives_) {
        std::vector<Cell*> row{numberCell(t, d.distVariance)};
        cells->addCells(row);
        rows->addCell(textCell(t, d.varName));  // names are shown as they are
    }

    finishTable(*table, rows, columns, cells);
    return 0;
}
