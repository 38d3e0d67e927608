#include "data/TableSchemaWriter.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include "DataSet.h"
#include "data/NumberText.h"

namespace host {

namespace {

using JsonWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void writeText(JsonWriter& writer, const std::string& text) {
    writer.String(text.c_str(), static_cast<rapidjson::SizeType>(text.size()));
}

void writeIntMember(JsonWriter& writer, const char* name, int value) {
    writer.Key(name);
    writer.Int(value);
}

void writeField(JsonWriter& writer, const VariableInfo& variable) {
    static const char* const levels[] = {"nominal", "nominal", "ordinal", "scale"};
    const bool numeric = variable.type == 0;
    writer.StartObject();
    writer.Key("name");
    writeText(writer, variable.name);
    writer.Key("type");
    writer.String(numeric ? "number" : "string");
    if (variable.hasLabel && !variable.label.empty()) {
        writer.Key("title");
        writeText(writer, variable.label);
    }
    writer.Key("measurementLevel");
    const int level = variable.measurementLevel >= 1 && variable.measurementLevel <= 3 ? variable.measurementLevel : 0;
    writer.String(levels[level]);
    if (!numeric) writeIntMember(writer, "width", variable.type);
    writeIntMember(writer, "displayWidth", variable.format.width);
    if (numeric) writeIntMember(writer, "displayDecimals", variable.format.decimals);
    writeIntMember(writer, "writeWidth", variable.writeFormat.width);
    if (numeric) writeIntMember(writer, "writeDecimals", variable.writeFormat.decimals);
    if (!variable.valueLabels.empty()) {
        writer.Key("categories");
        writer.StartArray();
        for (const auto& pair : variable.valueLabels) {
            writer.StartObject();
            writer.Key("value");
            // Numeric values are kept in their shortest round-trip text.
            double number = 0.0;
            if (numeric && parseNumber(pair.first, number) == NumberParse::Ok) {
                const std::string text = formatNumber(number);
                writer.RawNumber(text.c_str(), static_cast<rapidjson::SizeType>(text.size()), true);
            } else {
                writeText(writer, pair.first);
            }
            writer.Key("label");
            writeText(writer, pair.second);
            writer.EndObject();
        }
        writer.EndArray();
    }
    writer.EndObject();
}

}  // namespace

std::string writeTableSchema(const DataSet& data) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.SetIndent(' ', 2);
    writer.StartObject();
    if (!data.label().empty()) {
        writer.Key("title");
        writeText(writer, data.label());
    }
    writer.Key("fields");
    writer.StartArray();
    for (int v = 0; v < data.variableCount(); ++v) writeField(writer, data.variable(v));
    writer.EndArray();
    writer.Key("missingValues");
    writer.StartArray();
    writer.String("");
    writer.EndArray();
    writer.EndObject();
    return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

}  // namespace host
