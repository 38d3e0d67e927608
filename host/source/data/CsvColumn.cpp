#include "data/CsvColumn.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "data/DataLoadError.h"
#include "data/NumberText.h"

namespace host {

namespace {

constexpr int kDefaultNumericWidth = 8;
constexpr int kMaxInferredWidth = 40;  // also the widest numeric format
constexpr int kMaxDecimals = 16;

}  // namespace

CsvColumn::CsvColumn(const std::string& name, std::vector<std::string> cells, const SchemaField* field,
                     const Source& source)
    : cells_(std::move(cells)), field_(field), source_(source) {
    info_.name = name;
    const SchemaType declared = field_ != nullptr ? field_->type : SchemaType::Unspecified;
    bool numeric = false;
    if (declared == SchemaType::Number || declared == SchemaType::Integer)
        numeric = true;
    else if (declared == SchemaType::Unspecified)
        numeric = (field_ != nullptr && field_->measurementLevel == 3) || looksNumeric();
    if (numeric)
        convertNumbers(declared == SchemaType::Integer);
    else
        convertTexts();
    if (field_ != nullptr && field_->hasTitle) {
        info_.label = field_->title;
        info_.hasLabel = !info_.label.empty();
    }
    setMeasurementLevel();
    setValueLabels();
    cells_ = std::vector<std::string>();  // the raw texts are no longer needed
}

void CsvColumn::failCell(std::size_t row, const std::string& problem) const {
    throw DataLoadError(source_.csvName + ":" + std::to_string((*source_.lines)[row]) + ": " + problem);
}

void CsvColumn::failField(const std::string& problem) const {
    throw DataLoadError(source_.schemaName + ": field " + std::to_string(source_.number) + " (\"" + info_.name +
                        "\"): " + problem);
}

bool CsvColumn::isMissing(const std::string& cell) const {
    const std::string_view text = trimBlanks(cell);
    if (text.empty()) return true;
    for (const std::string& missing : *source_.missingTexts)
        if (trimBlanks(missing) == text) return true;
    return false;
}

bool CsvColumn::looksNumeric() const {
    double value = 0.0;
    for (const std::string& cell : cells_)
        if (!isMissing(cell) && parseNumber(cell, value) == NumberParse::NotANumber) return false;
    return true;
}

void CsvColumn::convertNumbers(bool integersOnly) {
    numbers_.reserve(cells_.size());
    int longest = 0;
    int decimals = 0;
    for (std::size_t row = 0; row < cells_.size(); ++row) {
        const std::string& cell = cells_[row];
        if (isMissing(cell)) {
            numbers_.push_back(kSystemMissing);
            continue;
        }
        double value = 0.0;
        const NumberParse result = parseNumber(cell, value);
        if (result == NumberParse::NotANumber)
            failCell(row, "\"" + cell + "\" in column \"" + info_.name + "\" is not a number");
        if (result == NumberParse::OutOfRange)
            failCell(row, "\"" + cell + "\" in column \"" + info_.name + "\" is too large for a number");
        if (integersOnly && std::trunc(value) != value)
            failCell(row, "\"" + cell + "\" in column \"" + info_.name + "\" is not a whole number");
        numbers_.push_back(value);
        longest = std::max(longest, static_cast<int>(trimBlanks(cell).size()));
        decimals = std::max(decimals, writtenDecimals(cell));
    }
    info_.type = 0;
    setNumericFormats(integersOnly, longest, std::min(decimals, kMaxDecimals));
}

void CsvColumn::convertTexts() {
    texts_.reserve(cells_.size());
    int longest = 0;
    for (const std::string& cell : cells_) {
        texts_.push_back(isMissing(cell) ? std::string() : cell);
        longest = std::max(longest, static_cast<int>(texts_.back().size()));
    }
    setTextFormats(longest);
}

void CsvColumn::setNumericFormats(bool integersOnly, int longestCell, int decimals) {
    const int shownDecimals = field_ != nullptr && field_->displayDecimals >= 0 ? field_->displayDecimals
                              : integersOnly                                   ? 0
                                                                               : decimals;
    int width = std::min(std::max(kDefaultNumericWidth, longestCell), kMaxInferredWidth);
    width = std::max(width, std::min(shownDecimals + 2, kMaxInferredWidth));
    if (field_ != nullptr && field_->displayWidth > 0) width = field_->displayWidth;
    info_.format = VELA_Format(VELA_Format::FormatNumeric, width, shownDecimals);
    info_.writeFormat = info_.format;
    if (field_ != nullptr && field_->writeWidth > 0) info_.writeFormat.width = field_->writeWidth;
    if (field_ != nullptr && field_->writeDecimals >= 0) info_.writeFormat.decimals = field_->writeDecimals;
    for (const VELA_Format* format : {&info_.format, &info_.writeFormat})
        if (format->width > kMaxInferredWidth || format->decimals >= format->width)
            failField("a numeric format needs a width from 1 to " + std::to_string(kMaxInferredWidth) +
                      " and fewer decimals than its width");
}

void CsvColumn::setTextFormats(int longestCell) {
    int width = std::max(longestCell, 1);
    // A declared width is the least width: longer values widen the variable.
    if (field_ != nullptr) width = std::max(width, field_->width);
    info_.type = width;
    info_.format = VELA_Format(VELA_Format::FormatString, width, 0);
    if (field_ != nullptr && field_->displayWidth > 0) info_.format.width = field_->displayWidth;
    info_.writeFormat = VELA_Format(VELA_Format::FormatString, width, 0);
    if (field_ != nullptr && field_->writeWidth > 0) info_.writeFormat.width = field_->writeWidth;
}

void CsvColumn::setMeasurementLevel() {
    const int declared = field_ != nullptr ? field_->measurementLevel : 0;
    if (declared == 0) {
        info_.measurementLevel = info_.type == 0 ? 3 : 1;
        return;
    }
    if (declared == 3 && info_.type != 0) failField("a string field cannot have the measurement level \"scale\"");
    info_.measurementLevel = declared;
}

void CsvColumn::setValueLabels() {
    if (field_ == nullptr) return;
    for (const SchemaCategory& category : field_->categories) {
        std::string value = category.value;
        if (info_.type == 0) {
            double number = 0.0;
            if (parseNumber(value, number) != NumberParse::Ok)
                failField("category value \"" + category.value + "\" is not a number");
            value = formatNumber(number);
        }
        for (const auto& pair : info_.valueLabels)
            if (pair.first == value) failField("category value \"" + category.value + "\" is given twice");
        info_.valueLabels.emplace_back(value, category.hasLabel ? category.label : category.value);
    }
}

}  // namespace host
