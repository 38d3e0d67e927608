#pragma once
#include <string>
#include <vector>

#include "DataSet.h"
#include "data/TableSchema.h"

namespace host {

// One column of a CSV file turned into a variable: its type, formats,
// measurement level and labels from the schema field (when there is one) or
// inferred from the cells, and its values. Missing cells (blank, or one of
// the missing-value texts) become the system-missing number or empty text.
class CsvColumn {
public:
    struct Source {
        std::string csvName;                 // for messages
        std::string schemaName;              // for messages
        std::size_t number;                  // column number from 1, for messages
        const std::vector<int>* lines;       // line of each row
        const std::vector<std::string>* missingTexts;
    };

    // field may be null (no schema). Throws DataLoadError.
    CsvColumn(const std::string& name, std::vector<std::string> cells, const SchemaField* field,
              const Source& source);

    const VariableInfo& info() const { return info_; }
    const std::vector<double>& numbers() const { return numbers_; }   // numeric variables
    const std::vector<std::string>& texts() const { return texts_; }  // text variables

private:
    bool isMissing(const std::string& cell) const;
    bool looksNumeric() const;
    void convertNumbers(bool integersOnly);
    void convertTexts();
    void setNumericFormats(bool integersOnly, int longestCell, int decimals);
    void setTextFormats(int longestCell);
    void setMeasurementLevel();
    void setValueLabels();
    [[noreturn]] void failCell(std::size_t row, const std::string& problem) const;
    [[noreturn]] void failField(const std::string& problem) const;

    std::vector<std::string> cells_;
    const SchemaField* field_;
    Source source_;
    VariableInfo info_;
    std::vector<double> numbers_;
    std::vector<std::string> texts_;
};

}  // namespace host
