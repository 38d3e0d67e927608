// The distance matrix tables, one per variable named on CONFIGURE.
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "Cell.h"
#include "Cells.h"
#include "Descendants.h"
#include "DistanceCorrOutputGen.h"
#include "Table.h"

namespace {

// Rows and columns printed per matrix; larger matrices are cut.
const std::size_t kMatrixLimit = 100;

// A case identifier as a row label: its whole part. Identifiers that no
// integer type can hold are shown as "." rather than as a wrapped number.
std::string identifierText(double id) {
    const double whole = std::floor(id);
    if (whole >= 0.0 && whole < 18446744073709551616.0)
        return std::to_string(static_cast<std::uint64_t>(whole));
    if (whole < 0.0 && whole >= -9223372036854775808.0)
        return std::to_string(static_cast<std::int64_t>(whole));
    return ".";
}

}  // namespace

int DistanceCorrOutputGen::generateDistanceMatrix() {
    const SubCommands::PrintSettings& print = settings_.printSettings();
    if (!print.get_distanceMatrix() || print.get_configList().empty()) return 0;
    if (descriptives_.empty()) return 1;

    for (const std::string& requested : print.get_configList()) {
        for (DistanceCorrDescriptiveResult& d : descriptives_) {
            if (requested == d.varName) {
                std::string name = requested;
                generateMatrix2D(d.distanceMatrix, name);
            }
        }
    }

    // Judged on the first variable only, whichever matrices were printed.
    if (descriptives_.front().distanceMatrix.size() > kMatrixLimit)
        message_.GenericWarning("Performance improvement ...");
    return 0;
}

int DistanceCorrOutputGen::generateMatrix2D(const std::vector<std::vector<double>>& matrix,
                                            std::string& name) {
    if (matrix.empty()) return 1;

    const std::string title =
        getCompositTrans(lookUp("Distance Matrix for Variable ^1"), name, "");
    std::unique_ptr<Table> table(new (std::nothrow) Table(generator_.get(), lookUp(title)));
    if (!table) return 1;
    frameTable(*table, title, 70, 3);

    const bool cut = matrix.size() > kMatrixLimit;
    const std::size_t n = cut ? kMatrixLimit : matrix.size();

    int footnote = 0;
    if (cut) {
        table->addFootnoteRefs(footnote++);
        table->add_footnote(getCompositTrans(lookUp("First ^1 records are printed."),
                                             std::to_string(kMatrixLimit), ""));
    }
    // Stands on every matrix table, cut or not.
    table->addFootnoteRefs(footnote++);
    table->add_footnote(lookUp("Distance Matrix data limit reached ..."));

    Table* t = table.get();
    Descendants* rows = new (std::nothrow) Descendants(t);
    Descendants* columns = new (std::nothrow) Descendants(t);
    Cells* cells = new (std::nothrow) Cells(t);
    if (!rows || !columns || !cells) return 1;

    for (std::size_t j = 1; j <= n; ++j) columns->addCell(textCell(t, std::to_string(j)));

    // Identifiers label the rows only when more than 100 of them exist and
    // the table was cut to 100 rows; otherwise the rows are numbered.
    bool useIds = false;
    std::vector<double> ids;
    const SubCommands::IDSettings& id = settings_.idSettings();
    if (id.getIdEnabled()) {
        rows->set_label(id.getIdName());
        ids = common_.idValues;
        const std::size_t k = ids.size() > kMatrixLimit ? kMatrixLimit : 0;
        useIds = k == n;
    } else {
        rows->set_label(" ");
    }
    rows->setShowLabel(true);

    for (std::size_t r = 0; r < n; ++r) {
        const std::vector<double>& source = matrix[r];
        std::vector<Cell*> row;
        row.reserve(n);
        for (std::size_t c = 0; c < n; ++c) {
            // A ragged matrix keeps the table rectangular with empty cells.
            row.push_back(c < source.size() ? numberCell(t, source[c]) : textCell(t, ""));
        }
        cells->addCells(row);
        rows->addCell(textCell(t, useIds ? identifierText(ids[r]) : std::to_string(r + 1)));
    }

    finishTable(*table, rows, columns, cells);
    return 0;
}
