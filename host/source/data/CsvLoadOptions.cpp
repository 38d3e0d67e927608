#include "data/CsvLoadOptions.h"

namespace host {

std::vector<std::string> parseMissingValueList(const std::string& text) {
    std::vector<std::string> list;
    if (text.empty()) return list;
    std::string::size_type start = 0;
    for (;;) {
        const std::string::size_type comma = text.find(',', start);
        list.push_back(text.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
        if (comma == std::string::npos) return list;
        start = comma + 1;
    }
}

char parseDelimiterOption(const std::string& text) {
    if (text == "," || text == ";" || text == "|" || text == "\t") return text[0];
    if (text == "tab" || text == "TAB" || text == "\\t") return '\t';
    return 0;
}

char parseDecimalOption(const std::string& text) {
    if (text == "." || text == ",") return text[0];
    return 0;
}

}  // namespace host
