#include "data/CsvReader.h"

#include <utility>

#include "data/DataLoadError.h"

namespace host {

namespace {

bool isLineBreak(char c) { return c == '\n' || c == '\r'; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

CsvReader::CsvReader(std::string text, std::string fileName)
    : text_(std::move(text)), fileName_(std::move(fileName)) {
    if (text_.compare(0, 3, "\xEF\xBB\xBF") == 0) pos_ = 3;
}

void CsvReader::consumeLineBreak() {
    if (text_[pos_] == '\r' && pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n') ++pos_;
    ++pos_;
    ++line_;
}

bool CsvReader::skipBlankLines() {
    while (pos_ < text_.size()) {
        std::size_t end = pos_;
        while (end < text_.size() && isBlank(text_[end])) ++end;
        if (end < text_.size() && !isLineBreak(text_[end])) return true;
        pos_ = end;
        if (pos_ < text_.size()) consumeLineBreak();
    }
    return false;
}

void CsvReader::readQuotedField(std::string& field, std::size_t fieldNumber) {
    const int firstLine = line_;
    ++pos_;  // opening quote
    for (;;) {
        if (pos_ >= text_.size())
            throw DataLoadError(fileName_ + ":" + std::to_string(firstLine) + ": field " +
                                std::to_string(fieldNumber) +
                                " opens a quote that is never closed");
        const char c = text_[pos_];
        if (c == '"') {
            if (pos_ + 1 < text_.size() && text_[pos_ + 1] == '"') {
                field += '"';
                pos_ += 2;
                continue;
            }
            ++pos_;
            break;
        }
        if (c == '\n' || (c == '\r' && !(pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n')))
            ++line_;
        field += c;
        ++pos_;
    }
    while (pos_ < text_.size() && isBlank(text_[pos_])) ++pos_;
    if (pos_ < text_.size() && text_[pos_] != ',' && !isLineBreak(text_[pos_]))
        throw DataLoadError(fileName_ + ":" + std::to_string(line_) + ": field " +
                            std::to_string(fieldNumber) +
                            " has text after its closing quote (a quote inside a quoted "
                            "field must be doubled)");
}

void CsvReader::readPlainField(std::string& field) {
    const std::size_t start = pos_;
    while (pos_ < text_.size() && text_[pos_] != ',' && !isLineBreak(text_[pos_])) ++pos_;
    field.assign(text_, start, pos_ - start);
}

bool CsvReader::readRow(CsvRow& row) {
    row.fields.clear();
    if (!skipBlankLines()) return false;
    row.line = line_;
    for (;;) {
        std::string field;
        std::size_t quoteAt = pos_;
        while (quoteAt < text_.size() && isBlank(text_[quoteAt])) ++quoteAt;
        if (quoteAt < text_.size() && text_[quoteAt] == '"') {
            pos_ = quoteAt;
            readQuotedField(field, row.fields.size() + 1);
        } else {
            readPlainField(field);
        }
        row.fields.push_back(std::move(field));
        if (pos_ >= text_.size()) return true;
        if (text_[pos_] == ',') {
            ++pos_;
            continue;
        }
        consumeLineBreak();
        return true;
    }
}

}  // namespace host
