#include "data/CsvDataLoader.h"

#include <utility>
#include <vector>

#include "data/CsvColumn.h"
#include "data/CsvReader.h"
#include "data/MemoryDataSet.h"
#include "data/NumberText.h"
#include "data/TableSchemaReader.h"
#include "data/TextFile.h"
#include "data/VariableName.h"

namespace host {

namespace {

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

std::vector<std::string> readHeader(const CsvRow& header, const std::string& csvPath) {
    const std::string where = csvPath + ":" + std::to_string(header.line) + ": ";
    std::vector<std::string> names;
    for (std::size_t i = 0; i < header.fields.size(); ++i) {
        const std::string name(trimBlanks(header.fields[i]));
        const std::string column = "column " + std::to_string(i + 1);
        if (name.empty()) throw DataLoadError(where + column + " has no name in the header row");
        const std::string problem = variableNameProblem(name);
        if (!problem.empty())
            throw DataLoadError(where + column + " is named \"" + name + "\", which is not a valid variable name: " +
                                problem);
        for (std::size_t j = 0; j < names.size(); ++j)
            if (sameVariableName(names[j], name))
                throw DataLoadError(where + column + " is named \"" + name + "\" like column " +
                                    std::to_string(j + 1) + " (\"" + names[j] +
                                    "\"); variable names must differ (letter case does not count)");
        names.push_back(name);
    }
    return names;
}

void checkSchemaMatches(const TableSchema& schema, const std::vector<std::string>& names,
                        const std::string& schemaPath, const std::string& csvPath) {
    if (schema.fields.size() != names.size())
        throw DataLoadError(schemaPath + ": the schema has " + std::to_string(schema.fields.size()) +
                            " fields but " + csvPath + " has " + std::to_string(names.size()) + " columns");
    for (std::size_t i = 0; i < names.size(); ++i)
        if (schema.fields[i].name != names[i])
            throw DataLoadError(schemaPath + ": field " + std::to_string(i + 1) + " is named \"" +
                                schema.fields[i].name + "\" but column " + std::to_string(i + 1) + " of " +
                                csvPath + " is \"" + names[i] + "\"");
}

}  // namespace

std::string schemaPathFor(const std::string& csvPath) {
    if (endsWithCsv(csvPath)) return csvPath.substr(0, csvPath.size() - 4) + ".schema.json";
    return csvPath + ".schema.json";
}

std::shared_ptr<DataSet> loadCsvDataSet(const std::string& csvPath, const std::string& schemaPath) {
    CsvReader reader(readTextFile(csvPath), csvPath);
    CsvRow header;
    if (!reader.readRow(header))
        throw DataLoadError(csvPath + ":1: the file is empty; its first line must name the variables");
    const std::vector<std::string> names = readHeader(header, csvPath);

    std::vector<std::vector<std::string>> cells(names.size());
    std::vector<int> lines;
    CsvRow row;
    while (reader.readRow(row)) {
        if (row.fields.size() != names.size())
            throw DataLoadError(csvPath + ":" + std::to_string(row.line) + ": row has " +
                                std::to_string(row.fields.size()) + (row.fields.size() == 1 ? " field" : " fields") +
                                ", header has " + std::to_string(names.size()));
        for (std::size_t i = 0; i < names.size(); ++i) cells[i].push_back(std::move(row.fields[i]));
        lines.push_back(row.line);
    }

    const std::string schemaFile = schemaPath.empty() ? findSchema(csvPath) : schemaPath;
    TableSchema schema;
    if (!schemaFile.empty()) {
        schema = readTableSchema(schemaFile);
        checkSchemaMatches(schema, names, schemaFile, csvPath);
    }

    auto data = std::make_shared<MemoryDataSet>();
    if (schema.hasTitle) data->setLabel(schema.title);
    std::vector<CsvColumn> columns;
    columns.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const SchemaField* field = schemaFile.empty() ? nullptr : &schema.fields[i];
        const std::vector<std::string>& missing =
            field != nullptr && field->hasMissingValues ? field->missingValues : schema.missingValues;
        columns.emplace_back(names[i], std::move(cells[i]), field,
                             CsvColumn::Source{csvPath, schemaFile, i + 1, &lines, &missing});
        data->addVariable(columns.back().info());
    }

    std::vector<double> numbers(names.size(), kSystemMissing);
    std::vector<std::string> texts(names.size());
    for (std::size_t row = 0; row < lines.size(); ++row) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].info().type == 0)
                numbers[i] = columns[i].numbers()[row];
            else
                texts[i] = columns[i].texts()[row];
        }
        data->addCase(numbers, texts);
    }
    return data;
}

}  // namespace host
