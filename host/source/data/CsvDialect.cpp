#include "data/CsvDialect.h"

#include <string_view>
#include <vector>

#include "data/CsvReader.h"
#include "data/DataLoadError.h"

namespace host {

namespace {

constexpr int kSampleRecords = 50;

struct Split {
    std::size_t headerFields = 0;
    bool constant = false;  // every sampled record after the header has the same count
    std::size_t fields = 0;
};

// cut: the sample ends before the text does, so its last record may be cut
// inside a quoted field.
Split splitWith(const std::string& sample, bool cut, char delimiter) {
    Split split;
    CsvReader reader(sample, "", delimiter);
    std::vector<std::string_view> fields;
    int records = 0;
    try {
        if (!reader.readRecord(fields)) return split;
        split.headerFields = fields.size();
        split.fields = fields.size();
        split.constant = true;
        for (; records < kSampleRecords && reader.readRecord(fields); ++records) {
            if (records == 0 && fields.size() == split.headerFields + 1) split.fields = fields.size();
            if (fields.size() != split.fields) split.constant = false;
        }
    } catch (const DataLoadError&) {
        // A broken quote rules the separator out, unless the sample's cut made it.
        if (!cut || records == 0) split.constant = false;
    }
    return split;
}

// The header and the first records of the text (a line break may also lie
// inside a quoted field), and at least the first line.
std::string_view sampleOf(const std::string& text) {
    constexpr std::size_t kEnough = std::size_t{1} << 20;
    std::size_t end = 0;
    for (int breaks = 0; end < text.size() && breaks < 2 * (kSampleRecords + 2); ++breaks) {
        const std::size_t next = text.find_first_of("\r\n", end);
        end = next == std::string::npos ? text.size() : next + 1;
        if (end > kEnough) break;
    }
    return std::string_view(text).substr(0, end);
}

}  // namespace

char detectDelimiter(const std::string& text) {
    const std::string sample(sampleOf(text));
    const bool cut = sample.size() < text.size();
    const char candidates[] = {',', ';', '\t', '|'};
    char best = 0;
    std::size_t bestFields = 1;
    char widestHeader = ',';
    std::size_t widestHeaderFields = 1;
    for (const char candidate : candidates) {
        const Split split = splitWith(sample, cut, candidate);
        if (split.constant && split.headerFields > 1) {
            if (split.fields > bestFields) {
                best = candidate;
                bestFields = split.fields;
            }
        }
        if (split.headerFields > widestHeaderFields) {
            widestHeader = candidate;
            widestHeaderFields = split.headerFields;
        }
    }
    return best != 0 ? best : widestHeader;
}

}  // namespace host
