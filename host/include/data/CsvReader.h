#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace host {

// One record of a CSV text and the line on which it starts.
struct CsvRow {
    std::vector<std::string> fields;
    int line = 0;
};

// Reads CSV text as RFC 4180 describes it: fields separated by commas,
// records by CRLF or LF; a field in double quotes may hold commas, line
// breaks and doubled quotes. A UTF-8 byte-order mark at the start is skipped,
// and lines holding nothing but blanks are skipped. Errors are DataLoadError
// with the file name and line.
class CsvReader {
public:
    CsvReader(std::string text, std::string fileName);

    // Reads the next record; false when the text is exhausted.
    bool readRow(CsvRow& row);

private:
    bool skipBlankLines();
    void readQuotedField(std::string& field, std::size_t fieldNumber);
    void readPlainField(std::string& field);
    void consumeLineBreak();

    std::string text_;
    std::string fileName_;
    std::size_t pos_ = 0;
    int line_ = 1;
};

}  // namespace host
