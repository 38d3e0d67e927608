#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "DataSet.h"
#include "data/MissingValueSet.h"
#include "data/NumberText.h"
#include "data/TableSchema.h"

namespace host {

// One column of a CSV file turned into a variable, cell by cell: its type,
// formats, measurement level and labels from the schema field (when there is
// one) or inferred from the cells, and its values. Missing cells (blank, or
// one of the missing-value texts) become the system-missing number or empty
// text. A column without a declared type is read as numbers until a cell is
// not one; then it is a text column, and its texts are read in a second pass
// (addText) over the file.
class CsvColumn {
public:
    struct Source {
        const std::string* csvName;             // for messages
        const std::string* schemaName;          // for messages
        std::size_t number;                     // column number from 1, for messages
        std::size_t fieldNumber;                // the field's number in the schema, for messages
        const MissingValueSet* numericMissing;  // decides the type; missing numbers
        const MissingValueSet* textMissing;     // missing texts
        char decimal;                           // decimal mark; 0: the one the column's numbers use, '.' or ','
    };

    // field may be null (no schema entry). label: the label to use when the
    // field gives none (empty: none). expectedRows: room to reserve.
    CsvColumn(std::string name, std::string label, const SchemaField* field, const Source& source,
              std::size_t expectedRows);

    // First pass: one cell per row, in order. Throws DataLoadError.
    void addCell(std::string_view cell, int line);
    // True when the column turned out to hold text: its cells must be given
    // again to addText.
    bool needsTexts() const { return kind_ == Kind::TextLater; }
    void addText(std::string_view cell);
    // After the last row: formats, measurement level, labels. Throws DataLoadError.
    void finish();

    const VariableInfo& info() const { return info_; }
    bool isNumeric() const { return kind_ == Kind::Inferring || kind_ == Kind::Number; }
    std::vector<double>& numbers() { return numbers_; }   // numeric variables
    std::vector<std::string>& texts() { return texts_; }  // text variables

private:
    enum class Kind { Inferring, Number, Text, TextLater };

    NumberParse parseCell(std::string_view cell, double& value);
    void setNumericFormats(bool integersOnly, int longestCell, int decimals);
    void setTextFormats(int longestCell);
    void setMeasurementLevel();
    void setValueLabels();
    [[noreturn]] void failCell(int line, std::string_view cell, const std::string& problem) const;
    [[noreturn]] void failField(const std::string& problem) const;

    const SchemaField* field_;
    Source source_;
    Kind kind_ = Kind::Inferring;
    bool integersOnly_ = false;
    NumberStyle style_;
    bool decimalKnown_ = true;
    bool plain_ = true;  // numbers as parseNumber reads them: decimal point, nothing else
    int longest_ = 0;
    int decimals_ = 0;
    int tooLargeLine_ = 0;  // first number too large for a double, reported if the column stays numeric
    std::string tooLargeCell_;
    std::string fallbackLabel_;
    VariableInfo info_;
    std::vector<double> numbers_;
    std::vector<std::string> texts_;
};

}  // namespace host
