#include "data/CsvDataLoader.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <ostream>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "data/CsvColumn.h"
#include "data/CsvDialect.h"
#include "data/CsvReader.h"
#include "data/HeaderNames.h"
#include "data/MemoryDataSet.h"
#include "data/MissingValueSet.h"
#include "data/NumberText.h"
#include "data/TableSchemaReader.h"
#include "data/TextEncoding.h"
#include "data/TextFile.h"
#include "data/VariableName.h"
#include "syntax/MessageText.h"

namespace host {

namespace {

constexpr std::size_t kMaxRenameNotes = 10;

bool endsWithCsv(const std::string& path) {
    if (path.size() < 4) return false;
    std::string tail = path.substr(path.size() - 4);
    for (char& c : tail)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return tail == ".csv";
}

std::string findSchema(const std::string& csvPath) {
    const std::string first = schemaPathFor(csvPath);
    if (isRegularFile(first)) return first;
    const std::string second = csvPath + ".schema.json";
    if (second != first && isRegularFile(second)) return second;
    return "";
}

// Notes on standard error (or wherever the options say), unless quiet.
class Notes {
public:
    explicit Notes(const CsvLoadOptions& options) : out_(options.quiet ? nullptr : options.notes) {}
    void add(const std::string& text) const {
        if (out_ != nullptr) *out_ << "Note: " << text << "\n";
    }

private:
    std::ostream* out_;
};

void noteRenamedColumns(const std::vector<HeaderName>& names, const std::string& where, const Notes& notes) {
    std::size_t renamed = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const HeaderName& header = names[i];
        if (header.reason.empty()) continue;
        if (++renamed > kMaxRenameNotes) continue;
        const std::string column = "column " + std::to_string(i + 1);
        if (header.original.empty())
            notes.add(where + column + " has no name in the header row; it is named " + header.name);
        else
            notes.add(where + column + " (" + syntax::quotedText(header.original) + ") is named " + header.name + ": " +
                      header.reason);
    }
    if (renamed > kMaxRenameNotes)
        notes.add(where + std::to_string(renamed - kMaxRenameNotes) + " more columns are renamed by the same rule");
}

// The schema field of each column (null when it has none) and its number.
struct FieldMatch {
    std::vector<const SchemaField*> fields;
    std::vector<std::size_t> numbers;
};

FieldMatch matchFields(const TableSchema& schema, const std::vector<HeaderName>& names, const std::string& schemaName,
                       const std::string& csvName) {
    FieldMatch match{std::vector<const SchemaField*>(names.size(), nullptr), std::vector<std::size_t>(names.size())};
    std::unordered_map<std::string_view, std::size_t> byOriginal;
    std::unordered_map<std::string_view, std::size_t> byName;
    for (std::size_t i = 0; i < names.size(); ++i) {
        byOriginal.emplace(names[i].original, i);
        byName.emplace(names[i].name, i);
    }
    for (std::size_t k = 0; k < schema.fields.size(); ++k) {
        const SchemaField& field = schema.fields[k];
        const std::string who =
            schemaName + ": field " + std::to_string(k + 1) + " (" + syntax::quotedText(field.name) + ")";
        auto found = byOriginal.find(field.name);
        const bool byText = found != byOriginal.end();
        if (!byText) found = byName.find(field.name);
        if (!byText && found == byName.end()) {
            std::string hint;
            for (std::size_t i = 0; i < names.size() && hint.empty(); ++i)
                if (sameVariableName(names[i].original, field.name))
                    hint = " (column " + std::to_string(i + 1) + " is " + syntax::quotedText(names[i].original) +
                           "; names must match exactly, letter case included)";
            throw DataLoadError(who + " is not a column of " + csvName + hint);
        }
        const std::size_t column = found->second;
        if (match.fields[column] != nullptr)
            throw DataLoadError(who + " describes column " + std::to_string(column + 1) + " of " + csvName +
                                " like field " + std::to_string(match.numbers[column]));
        match.fields[column] = &field;
        match.numbers[column] = k + 1;
    }
    return match;
}

// The missing-value texts of each column: numeric ones decide the type.
class MissingTexts {
public:
    MissingTexts(const CsvLoadOptions& options, const TableSchema& schema) {
        if (schema.hasMissingValues) {
            numeric_ = text_ = add(schema.missingValues);
        } else if (options.missingValues) {
            numeric_ = text_ = add(*options.missingValues);
        } else {
            numeric_ = add({"", "NA"});  // R and pandas write NA; a text "NA" stays text
            text_ = add({""});
        }
    }
    // The texts for numbers and for texts of a column.
    std::pair<const MissingValueSet*, const MissingValueSet*> of(const SchemaField* field) {
        if (field == nullptr || !field->hasMissingValues) return {numeric_, text_};
        const MissingValueSet* own = add(field->missingValues);
        return {own, own};
    }

private:
    const MissingValueSet* add(const std::vector<std::string>& texts) {
        sets_.push_back(std::make_unique<MissingValueSet>(texts));
        return sets_.back().get();
    }

    std::vector<std::unique_ptr<MissingValueSet>> sets_;
    const MissingValueSet* numeric_ = nullptr;
    const MissingValueSet* text_ = nullptr;
};

std::size_t countOf(const std::string& text, char c) {
    std::size_t count = 0;
    for (const char* p = text.data(); (p = static_cast<const char*>(std::memchr(p, c, text.data() + text.size() - p)));
         ++p)
        ++count;
    return count;
}

// Lines of the text, an upper bound on its records.
std::size_t countLines(const std::string& text) {
    const std::size_t lf = countOf(text, '\n');
    return (lf > 0 ? lf : countOf(text, '\r')) + 1;
}

[[noreturn]] void failRowLength(const std::string& where, std::size_t fields, std::size_t columns, bool rowNames) {
    throw DataLoadError(
        where + "row has " + std::to_string(fields) + (fields == 1 ? " field" : " fields") + ", header has " +
        (rowNames ? std::to_string(columns - 1) + " (and a first column of row names)" : std::to_string(columns)));
}

}  // namespace

std::string schemaPathFor(const std::string& csvPath) {
    if (endsWithCsv(csvPath)) return csvPath.substr(0, csvPath.size() - 4) + ".schema.json";
    return csvPath + ".schema.json";
}

std::shared_ptr<DataSet> loadCsvDataSet(const std::string& csvPath, const std::string& schemaPath) {
    return loadCsvDataSet(csvPath, schemaPath, CsvLoadOptions());
}

std::shared_ptr<DataSet> loadCsvDataSet(const std::string& csvPath, const std::string& schemaPath,
                                        const CsvLoadOptions& options) {
    const bool fromStandardInput = csvPath == "-";
    const std::string csvName = fromStandardInput ? "standard input" : csvPath;
    const Notes notes(options);
    std::string encodingNote;
    std::string text =
        decodeDataText(fromStandardInput ? readStandardInput(csvName) : readTextFile(csvPath), csvName, encodingNote);
    if (!encodingNote.empty()) notes.add(encodingNote);
    const char delimiter = options.delimiter != 0 ? options.delimiter : detectDelimiter(text);
    const std::size_t expectedRows = countLines(text);
    CsvReader reader(std::move(text), csvName, delimiter);

    std::vector<std::string_view> fields;
    if (!reader.readRecord(fields))
        throw DataLoadError(csvName + ":1: the file is empty; its first line must name the variables");
    const std::string where = csvName + ":" + std::to_string(reader.recordLine()) + ": ";
    std::vector<std::string> header(fields.begin(), fields.end());
    bool haveRow = reader.readRecord(fields);
    // R's write.table leaves out the header cell of the row names.
    const bool rowNames = haveRow && fields.size() == header.size() + 1;
    if (rowNames) header.insert(header.begin(), std::string());
    const std::vector<HeaderName> names = variableNamesFromHeader(header);
    noteRenamedColumns(names, where, notes);

    const std::string schemaFile = !schemaPath.empty() ? schemaPath : fromStandardInput ? "" : findSchema(csvPath);
    TableSchema schema;
    if (!schemaFile.empty()) schema = readTableSchema(schemaFile);
    const FieldMatch match = matchFields(schema, names, schemaFile, csvName);

    MissingTexts missing(options, schema);
    const char decimal = options.decimal != 0 ? options.decimal : delimiter == ',' ? '.' : 0;
    std::vector<CsvColumn> columns;
    columns.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const SchemaField* field = match.fields[i];
        const auto texts = missing.of(field);
        const CsvColumn::Source source{&csvName,    &schemaFile,  i + 1,  match.numbers[i],
                                       texts.first, texts.second, decimal};
        columns.emplace_back(names[i].name, names[i].reason.empty() ? std::string() : names[i].original, field, source,
                             expectedRows);
    }

    std::size_t rows = 0;
    for (; haveRow; haveRow = reader.readRecord(fields), ++rows) {
        if (fields.size() != columns.size())
            failRowLength(csvName + ":" + std::to_string(reader.recordLine()) + ": ", fields.size(), columns.size(),
                          rowNames);
        const int line = reader.recordLine();
        for (std::size_t i = 0; i < columns.size(); ++i) columns[i].addCell(fields[i], line);
    }
    // Columns that turned out to hold text read their cells again.
    if (std::any_of(columns.begin(), columns.end(), [](const CsvColumn& c) { return c.needsTexts(); })) {
        reader.restart();
        reader.readRecord(fields);  // the header
        while (reader.readRecord(fields))
            for (CsvColumn& column : columns)
                if (column.needsTexts()) column.addText(fields[static_cast<std::size_t>(&column - columns.data())]);
    }

    auto data = std::make_shared<MemoryDataSet>();
    if (schema.hasTitle) data->setLabel(schema.title);
    std::vector<std::vector<double>> numbers(columns.size());
    std::vector<std::vector<std::string>> texts(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].finish();
        data->addVariable(columns[i].info());
        if (columns[i].info().type == 0)
            numbers[i] = std::move(columns[i].numbers());
        else
            texts[i] = std::move(columns[i].texts());
    }
    data->setCases(rows, std::move(numbers), std::move(texts));
    return data;
}

}  // namespace host
