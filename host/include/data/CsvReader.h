#pragma once
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// One record of a CSV text and the line on which it starts.
struct CsvRow {
    std::vector<std::string> fields;
    int line = 0;
};

// Reads CSV text as RFC 4180 describes it, with a chosen field separator
// (comma by default): records end with CRLF, LF or a lone CR; a field in
// double quotes may hold separators, line breaks and doubled quotes. A UTF-8
// byte-order mark at the start is skipped, and lines holding nothing but
// blanks are skipped. Errors are DataLoadError with the file name and line.
class CsvReader {
public:
    CsvReader(std::string text, std::string fileName, char delimiter = ',');

    // Reads the next record; false when the text is exhausted.
    bool readRow(CsvRow& row);

    // The same without copying: the views stay valid until the next call.
    bool readRecord(std::vector<std::string_view>& fields);
    // Line on which the record last read starts.
    int recordLine() const { return recordLine_; }

    // Starts again at the first record.
    void restart();

    const std::string& text() const { return text_; }

private:
    bool skipBlankLines();
    std::string_view readQuotedField(std::size_t fieldNumber);
    std::string_view readPlainField();
    void consumeLineBreak();

    std::string text_;
    std::string fileName_;
    char delimiter_;
    bool endsField_[256] = {};  // the separator, CR and LF
    std::size_t start_ = 0;
    std::size_t pos_ = 0;
    int line_ = 1;
    int recordLine_ = 0;
    std::deque<std::string> unquoted_;  // per field: text of a quoted field with doubled quotes
};

}  // namespace host
