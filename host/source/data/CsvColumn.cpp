#include "data/CsvColumn.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "data/DataLoadError.h"
#include "syntax/MessageText.h"

namespace host {

namespace {

constexpr int kDefaultNumericWidth = 8;
constexpr int kMaxInferredWidth = 40;  // also the widest numeric format
constexpr int kMaxDecimals = 16;

// Digits after the decimal mark of a number as written ("1.250" -> 3);
// exponent forms count as 0. Same as writtenDecimals, for trimmed text.
int decimalsOf(std::string_view number, char mark) {
    std::size_t digits = 0;
    while (digits < number.size() && number[number.size() - 1 - digits] >= '0' &&
           number[number.size() - 1 - digits] <= '9')
        ++digits;
    return digits < number.size() && number[number.size() - 1 - digits] == mark ? static_cast<int>(digits) : 0;
}

}  // namespace

CsvColumn::CsvColumn(std::string name, std::string label, const SchemaField* field, const Source& source,
                     std::size_t expectedRows)
    : field_(field), source_(source), fallbackLabel_(std::move(label)) {
    info_.name = std::move(name);
    const SchemaType declared = field_ != nullptr ? field_->type : SchemaType::Unspecified;
    if (declared == SchemaType::String)
        kind_ = Kind::Text;
    else if (declared == SchemaType::Number || declared == SchemaType::Integer ||
             (field_ != nullptr && field_->measurementLevel == 3))
        kind_ = Kind::Number;
    integersOnly_ = declared == SchemaType::Integer;
    if (field_ != nullptr) {
        style_.group = field_->groupChar;
        style_.bare = field_->bareNumber;
    }
    // The decimal mark: the field's own, else the one given for the file; a
    // group mark '.' without a decimal mark means a decimal comma.
    style_.decimal = field_ != nullptr && field_->decimalChar != 0 ? field_->decimalChar
                     : source_.decimal != 0                        ? source_.decimal
                     : style_.group == '.'                         ? ','
                     : style_.group != 0                           ? '.'
                                                                   : 0;
    decimalKnown_ = style_.decimal != 0;
    if (!decimalKnown_) style_.decimal = '.';
    plain_ = decimalKnown_ && style_.decimal == '.' && style_.group == 0 && style_.bare;
    if (kind_ == Kind::Text)
        texts_.reserve(expectedRows);
    else
        numbers_.reserve(expectedRows);
}

void CsvColumn::failCell(int line, std::string_view cell, const std::string& problem) const {
    throw DataLoadError(*source_.csvName + ":" + std::to_string(line) + ": " + syntax::quotedText(cell) +
                        " in column " + syntax::quotedText(info_.name) + " " + problem);
}

void CsvColumn::failField(const std::string& problem) const {
    throw DataLoadError(*source_.schemaName + ": field " + std::to_string(source_.fieldNumber) + " (" +
                        syntax::quotedText(field_->name) + "): " + problem);
}

NumberParse CsvColumn::parseCell(std::string_view cell, double& value) {
    if (plain_) return parseTrimmedNumber(cell, value);
    if (decimalKnown_) return parseNumber(cell, value, style_);
    // The first number written with a decimal mark fixes the column's mark.
    const bool comma = cell.find(',') != std::string_view::npos;
    const bool point = cell.find('.') != std::string_view::npos;
    if (comma && !point) {
        NumberStyle commaStyle = style_;
        commaStyle.decimal = ',';
        const NumberParse result = parseNumber(cell, value, commaStyle);
        if (result != NumberParse::NotANumber) {
            style_.decimal = ',';
            decimalKnown_ = true;
        }
        return result;
    }
    const NumberParse result = parseNumber(cell, value, style_);
    if (point && result != NumberParse::NotANumber) decimalKnown_ = true;
    plain_ = decimalKnown_ && style_.decimal == '.' && style_.group == 0 && style_.bare;
    return result;
}

void CsvColumn::addCell(std::string_view cell, int line) {
    if (kind_ == Kind::TextLater) return;
    if (kind_ == Kind::Text) {
        addText(cell);
        return;
    }
    const std::string_view trimmed = trimBlanks(cell);
    if (trimmed.empty() || source_.numericMissing->contains(trimmed)) {
        numbers_.push_back(kSystemMissing);
        return;
    }
    double value = 0.0;
    const NumberParse result = parseCell(trimmed, value);
    if (result == NumberParse::NotANumber) {
        if (kind_ == Kind::Number) failCell(line, cell, "is not a number");
        kind_ = Kind::TextLater;
        numbers_ = std::vector<double>();
        return;
    }
    if (result == NumberParse::OutOfRange) {
        if (kind_ == Kind::Number) failCell(line, cell, "is too large for a number");
        if (tooLargeLine_ == 0) {
            tooLargeLine_ = line;
            tooLargeCell_ = std::string(cell);
        }
    }
    if (integersOnly_ && std::trunc(value) != value) failCell(line, cell, "is not a whole number");
    numbers_.push_back(value);
    longest_ = std::max(longest_, static_cast<int>(trimmed.size()));
    decimals_ = std::max(decimals_, decimalsOf(trimmed, style_.decimal));
}

void CsvColumn::addText(std::string_view cell) {
    const std::string_view trimmed = trimBlanks(cell);
    if (trimmed.empty() || source_.textMissing->contains(trimmed)) {
        texts_.emplace_back();
        return;
    }
    texts_.emplace_back(cell);
    longest_ = std::max(longest_, static_cast<int>(cell.size()));
}

void CsvColumn::finish() {
    if (isNumeric()) {
        if (tooLargeLine_ != 0) failCell(tooLargeLine_, tooLargeCell_, "is too large for a number");
        info_.type = 0;
        setNumericFormats(integersOnly_, longest_, std::min(decimals_, kMaxDecimals));
    } else {
        setTextFormats(longest_);
    }
    if (field_ != nullptr && field_->hasTitle) {
        info_.label = field_->title;
    } else {
        info_.label = fallbackLabel_;
    }
    info_.hasLabel = !info_.label.empty();
    setMeasurementLevel();
    setValueLabels();
}

void CsvColumn::setNumericFormats(bool integersOnly, int longestCell, int decimals) {
    const int shownDecimals = field_ != nullptr && field_->displayDecimals >= 0 ? field_->displayDecimals
                              : integersOnly                                    ? 0
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
    std::unordered_set<std::string> seen;
    seen.reserve(field_->categories.size());
    info_.valueLabels.reserve(field_->categories.size());
    for (const SchemaCategory& category : field_->categories) {
        std::string value = category.value;
        if (info_.type == 0) {
            double number = 0.0;
            if (parseNumber(value, number) != NumberParse::Ok)
                failField("category value " + syntax::quotedText(category.value) + " is not a number");
            value = formatNumber(number);
        }
        if (!seen.insert(value).second)
            failField("category value " + syntax::quotedText(category.value) + " is given twice");
        info_.valueLabels.emplace_back(value, category.hasLabel ? category.label : category.value);
    }
}

}  // namespace host
