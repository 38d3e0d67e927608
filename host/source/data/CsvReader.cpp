#include "data/CsvReader.h"

#include <utility>

#include "data/DataLoadError.h"

namespace host {

namespace {

bool isLineBreak(char c) { return c == '\n' || c == '\r'; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

CsvReader::CsvReader(std::string text, std::string fileName, char delimiter)
    : text_(std::move(text)), fileName_(std::move(fileName)), delimiter_(delimiter) {
    if (text_.compare(0, 3, "\xEF\xBB\xBF") == 0) start_ = 3;
    for (const char c : {delimiter_, '\n', '\r'}) endsField_[static_cast<unsigned char>(c)] = true;
    restart();
}

void CsvReader::restart() {
    pos_ = start_;
    line_ = 1;
    recordLine_ = 0;
}

void CsvReader::consumeLineBreak() {
    if (text_[pos_] == '\r' && pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n') ++pos_;
    ++pos_;
    ++line_;
}

bool CsvReader::skipBlankLines() {
    while (pos_ < text_.size()) {
        std::size_t end = pos_;
        // A tab separator makes a line of tabs a record of empty fields.
        while (end < text_.size() && isBlank(text_[end]) && text_[end] != delimiter_) ++end;
        if (end < text_.size() && !isLineBreak(text_[end])) return true;
        pos_ = end;
        if (pos_ < text_.size()) consumeLineBreak();
    }
    return false;
}

std::string_view CsvReader::readQuotedField(std::size_t fieldNumber) {
    const int firstLine = line_;
    const std::size_t begin = ++pos_;  // after the opening quote
    std::string* unquoted = nullptr;
    std::size_t copiedUpTo = begin;
    for (;;) {
        if (pos_ >= text_.size())
            throw DataLoadError(fileName_ + ":" + std::to_string(firstLine) + ": field " + std::to_string(fieldNumber) +
                                " opens a quote that is never closed");
        const char c = text_[pos_];
        if (c == '"') {
            if (pos_ + 1 < text_.size() && text_[pos_ + 1] == '"') {
                if (unquoted == nullptr) {
                    if (unquoted_.size() < fieldNumber) unquoted_.resize(fieldNumber);
                    unquoted = &unquoted_[fieldNumber - 1];
                    unquoted->clear();
                }
                unquoted->append(text_, copiedUpTo, pos_ + 1 - copiedUpTo);  // keeps one quote
                pos_ += 2;
                copiedUpTo = pos_;
                continue;
            }
            break;
        }
        if (c == '\n' || (c == '\r' && !(pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n'))) ++line_;
        ++pos_;
    }
    std::string_view field(text_.data() + begin, pos_ - begin);
    if (unquoted != nullptr) {
        unquoted->append(text_, copiedUpTo, pos_ - copiedUpTo);
        field = *unquoted;
    }
    ++pos_;  // closing quote
    while (pos_ < text_.size() && isBlank(text_[pos_]) && text_[pos_] != delimiter_) ++pos_;
    if (pos_ < text_.size() && text_[pos_] != delimiter_ && !isLineBreak(text_[pos_]))
        throw DataLoadError(fileName_ + ":" + std::to_string(line_) + ": field " + std::to_string(fieldNumber) +
                            " has text after its closing quote (a quote inside a quoted "
                            "field must be doubled)");
    return field;
}

std::string_view CsvReader::readPlainField() {
    const char* const data = text_.data();
    const char* p = data + pos_;
    const char* const end = data + text_.size();
    while (p < end && !endsField_[static_cast<unsigned char>(*p)]) ++p;
    const std::size_t begin = pos_;
    pos_ = static_cast<std::size_t>(p - data);
    return std::string_view(data + begin, pos_ - begin);
}

bool CsvReader::readRecord(std::vector<std::string_view>& fields) {
    fields.clear();
    if (!skipBlankLines()) return false;
    recordLine_ = line_;
    for (;;) {
        std::size_t quoteAt = pos_;
        while (quoteAt < text_.size() && isBlank(text_[quoteAt]) && text_[quoteAt] != delimiter_) ++quoteAt;
        if (quoteAt < text_.size() && text_[quoteAt] == '"') {
            pos_ = quoteAt;
            fields.push_back(readQuotedField(fields.size() + 1));
        } else {
            fields.push_back(readPlainField());
        }
        if (pos_ >= text_.size()) return true;
        if (text_[pos_] == delimiter_) {
            ++pos_;
            continue;
        }
        consumeLineBreak();
        return true;
    }
}

bool CsvReader::readRow(CsvRow& row) {
    std::vector<std::string_view> fields;
    row.fields.clear();
    if (!readRecord(fields)) return false;
    row.line = recordLine_;
    row.fields.assign(fields.begin(), fields.end());
    return true;
}

}  // namespace host
