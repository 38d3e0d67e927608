#include "data/TableSchemaReader.h"

#include <charconv>
#include <unordered_map>

#include <rapidjson/document.h>

#include "data/DataLoadError.h"
#include "data/JsonText.h"
#include "data/TextFile.h"
#include "syntax/MessageText.h"

namespace host {

namespace {

class FieldReader {
public:
    FieldReader(const std::string& fileName, const rapidjson::Value& value, std::size_t number)
        : fileName_(fileName), value_(value), number_(number) {}

    SchemaField read() {
        if (!value_.IsObject()) fail("must be a JSON object");
        if (!value_.HasMember("name") || !value_["name"].IsString() || value_["name"].GetStringLength() == 0)
            fail("needs a \"name\" text");
        field_.name = value_["name"].GetString();
        readType();
        if (const rapidjson::Value* title = member("title")) {
            field_.title = text(*title, "title");
            field_.hasTitle = true;
        }
        readCategories();
        if (const rapidjson::Value* missing = member("missingValues")) {
            field_.missingValues = textList(*missing, "missingValues");
            field_.hasMissingValues = true;
        }
        readMeasurementLevel();
        field_.width = integer("width", 1, 32767, 0);
        field_.displayWidth = integer("displayWidth", 1, 32767, 0);
        field_.displayDecimals = integer("displayDecimals", 0, 16, -1);
        field_.writeWidth = integer("writeWidth", 1, 32767, 0);
        field_.writeDecimals = integer("writeDecimals", 0, 16, -1);
        if (field_.type != SchemaType::String && field_.type != SchemaType::Unspecified && field_.width != 0)
            fail("\"width\" applies to string fields only");
        field_.decimalChar = character("decimalChar");
        field_.groupChar = character("groupChar");
        if (field_.decimalChar != 0 && field_.decimalChar == field_.groupChar)
            fail("\"decimalChar\" and \"groupChar\" must differ");
        if (const rapidjson::Value* bare = member("bareNumber")) {
            if (!bare->IsBool()) fail("\"bareNumber\" must be true or false");
            field_.bareNumber = bare->GetBool();
        }
        return field_;
    }

private:
    [[noreturn]] void fail(const std::string& problem) const {
        std::string who = "field " + std::to_string(number_);
        if (!field_.name.empty()) who += " (" + syntax::quotedText(field_.name) + ")";
        throw DataLoadError(fileName_ + ": " + who + ": " + problem);
    }

    const rapidjson::Value* member(const char* name) const {
        const auto it = value_.FindMember(name);
        return it == value_.MemberEnd() || it->value.IsNull() ? nullptr : &it->value;
    }

    std::string text(const rapidjson::Value& value, const char* property) const {
        if (!value.IsString()) fail("\"" + std::string(property) + "\" must be a text");
        return std::string(value.GetString(), value.GetStringLength());
    }

    std::vector<std::string> textList(const rapidjson::Value& value, const char* property) const {
        if (!value.IsArray()) fail("\"" + std::string(property) + "\" must be a list of texts");
        std::vector<std::string> list;
        for (const auto& item : value.GetArray()) list.push_back(text(item, property));
        return list;
    }

    int integer(const char* property, int low, int high, int absent) const {
        const rapidjson::Value* value = member(property);
        if (value == nullptr) return absent;
        int number = 0;
        const char* first = value->IsString() ? value->GetString() : "";
        const char* last = first + (value->IsString() ? value->GetStringLength() : 0);
        const auto result = std::from_chars(first, last, number);
        if (!value->IsString() || result.ec != std::errc() || result.ptr != last || number < low || number > high)
            fail("\"" + std::string(property) + "\" must be a whole number from " + std::to_string(low) + " to " +
                 std::to_string(high));
        return number;
    }

    // One ASCII character other than a digit, sign or letter; 0 when absent.
    char character(const char* property) const {
        const rapidjson::Value* value = member(property);
        if (value == nullptr) return 0;
        const std::string given = text(*value, property);
        const char c = given.size() == 1 ? given[0] : '\0';
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (c < ' ' || c > '~' || letter || (c >= '0' && c <= '9') || c == '+' || c == '-')
            fail("\"" + std::string(property) + "\" must be one character such as \".\" or \",\"");
        return c;
    }

    void readType() {
        const rapidjson::Value* type = member("type");
        if (type == nullptr) return;
        const std::string name = text(*type, "type");
        if (name == "number")
            field_.type = SchemaType::Number;
        else if (name == "integer")
            field_.type = SchemaType::Integer;
        else if (name == "string")
            field_.type = SchemaType::String;
        else if (name != "any")
            fail("type " + syntax::quotedText(name) + " is not supported (use \"number\", \"integer\" or \"string\")");
    }

    void readCategories() {
        const rapidjson::Value* categories = member("categories");
        if (categories == nullptr) return;
        if (!categories->IsArray()) fail("\"categories\" must be a list");
        for (const auto& item : categories->GetArray()) {
            SchemaCategory category;
            if (item.IsObject()) {
                const auto value = item.FindMember("value");
                if (value == item.MemberEnd() || !value->value.IsString())
                    fail("each category needs a \"value\" (a number or a text)");
                category.value.assign(value->value.GetString(), value->value.GetStringLength());
                const auto label = item.FindMember("label");
                if (label != item.MemberEnd()) {
                    category.label = text(label->value, "label");
                    category.hasLabel = true;
                }
            } else if (item.IsString()) {
                category.value.assign(item.GetString(), item.GetStringLength());
            } else {
                fail("each category must be a value or an object with \"value\" and \"label\"");
            }
            field_.categories.push_back(std::move(category));
        }
    }

    void readMeasurementLevel() {
        const rapidjson::Value* level = member("measurementLevel");
        if (level == nullptr) return;
        const std::string name = text(*level, "measurementLevel");
        if (name == "nominal")
            field_.measurementLevel = 1;
        else if (name == "ordinal")
            field_.measurementLevel = 2;
        else if (name == "scale")
            field_.measurementLevel = 3;
        else
            fail("\"measurementLevel\" must be \"nominal\", \"ordinal\" or \"scale\", not " + syntax::quotedText(name));
        if (field_.measurementLevel == 3 && field_.type == SchemaType::String)
            fail("a string field cannot have the measurement level \"scale\"");
    }

    const std::string& fileName_;
    const rapidjson::Value& value_;
    std::size_t number_;
    SchemaField field_;
};

}  // namespace

TableSchema parseTableSchema(const std::string& json, const std::string& fileName) {
    rapidjson::Document document;
    // Numbers are kept as their JSON text so that they can be read exactly and
    // independently of the locale.
    const JsonParseResult parsed = parseJsonText(document, json, true);
    if (!parsed.ok)
        throw DataLoadError(fileName + ":" + std::to_string(parsed.line) + ": not valid JSON: " + parsed.reason);
    if (!document.IsObject()) throw DataLoadError(fileName + ": a table schema must be a JSON object");
    TableSchema schema;
    const auto title = document.FindMember("title");
    if (title != document.MemberEnd() && !title->value.IsNull()) {
        if (!title->value.IsString()) throw DataLoadError(fileName + ": \"title\" must be a text");
        schema.title.assign(title->value.GetString(), title->value.GetStringLength());
        schema.hasTitle = true;
    }
    const auto missing = document.FindMember("missingValues");
    if (missing != document.MemberEnd() && !missing->value.IsNull()) {
        if (!missing->value.IsArray()) throw DataLoadError(fileName + ": \"missingValues\" must be a list of texts");
        schema.missingValues.clear();
        schema.hasMissingValues = true;
        for (const auto& item : missing->value.GetArray()) {
            if (!item.IsString()) throw DataLoadError(fileName + ": \"missingValues\" must be a list of texts");
            schema.missingValues.emplace_back(item.GetString(), item.GetStringLength());
        }
    }
    const auto fields = document.FindMember("fields");
    if (fields == document.MemberEnd() || fields->value.IsNull()) return schema;
    if (!fields->value.IsArray()) throw DataLoadError(fileName + ": \"fields\" must be a list of field objects");
    std::unordered_map<std::string, std::size_t> numbers;
    for (const auto& item : fields->value.GetArray()) {
        const std::size_t number = schema.fields.size() + 1;
        schema.fields.push_back(FieldReader(fileName, item, number).read());
        const auto known = numbers.emplace(schema.fields.back().name, number);
        if (!known.second)
            throw DataLoadError(fileName + ": field " + std::to_string(number) + " (" +
                                syntax::quotedText(schema.fields.back().name) + ") has the name of field " +
                                std::to_string(known.first->second));
    }
    return schema;
}

TableSchema readTableSchema(const std::string& path) { return parseTableSchema(readTextFile(path), path); }

}  // namespace host
