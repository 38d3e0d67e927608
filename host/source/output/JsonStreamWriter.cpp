#include "output/JsonStreamWriter.h"

#include <cmath>
#include <cstring>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "data/NumberText.h"
#include "output/OrderedTextPipeline.h"
#include "output/Utf8Text.h"

namespace host {

namespace {

bool isPlain(const rapidjson::Value& v) { return !v.IsObject() && !v.IsArray(); }

// Control characters that RapidJSON writes as \u00XX with an upper-case hex
// letter; the document has always had them in lower case.
bool hasLetterEscape(const char* text, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x20 && (c & 0xF) >= 0xA && c != '\n' && c != '\f' && c != '\r') return true;
    }
    return false;
}

// The escaped JSON string (quotes included) with its \u escapes in lower case.
std::string lowerCaseEscapes(const char* text, std::size_t length) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> escaper(buffer);
    escaper.String(text, static_cast<rapidjson::SizeType>(length));
    std::string json(buffer.GetString(), buffer.GetSize());
    for (std::size_t i = 0; i + 1 < json.size(); ++i) {
        if (json[i] != '\\') continue;
        if (json[i + 1] == 'u')
            for (std::size_t k = i + 2; k < i + 6 && k < json.size(); ++k)
                if (json[k] >= 'A' && json[k] <= 'F') json[k] = static_cast<char>(json[k] - 'A' + 'a');
        ++i;  // the escaped character is not the start of another escape
    }
    return json;
}

}  // namespace

void formatNumberList(std::string& text, const double* values, std::size_t count) {
    const std::size_t room = count * (kNumberTextCapacity + 2);
    if (text.size() < room) text.resize(room);
    char* out = &text[0];
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) {
            *out++ = ',';
            *out++ = ' ';
        }
        if (std::isfinite(values[i])) {
            out = writeNumber(out, values[i]);
        } else {
            std::memcpy(out, "null", 4);
            out += 4;
        }
    }
    text.resize(static_cast<std::size_t>(out - text.data()));
}

JsonStreamWriter::JsonStreamWriter(std::ostream& out, unsigned threads)
    : stream_(out), writer_(stream_), threads_(threads) {
    writer_.SetIndent(' ', 2);
}

void JsonStreamWriter::setLayoutOfInnermostArray() {
    const bool singleLine = !singleLineArrays_.empty() && singleLineArrays_.back();
    writer_.SetFormatOptions(singleLine ? rapidjson::kFormatSingleLineArray : rapidjson::kFormatDefault);
}

void JsonStreamWriter::beginObject() { writer_.StartObject(); }

void JsonStreamWriter::endObject() { writer_.EndObject(); }

void JsonStreamWriter::beginArray(bool singleLine) {
    // The array's own place is laid out as its parent says, its elements as it says.
    writer_.StartArray();
    singleLineArrays_.push_back(singleLine);
    setLayoutOfInnermostArray();
}

void JsonStreamWriter::endArray() {
    writer_.EndArray();
    singleLineArrays_.pop_back();
    setLayoutOfInnermostArray();
}

void JsonStreamWriter::writeString(const char* text, std::size_t length) {
    const std::string valid = validUtf8(std::string(text, length));
    if (hasLetterEscape(valid.data(), valid.size())) {
        const std::string json = lowerCaseEscapes(valid.data(), valid.size());
        writer_.RawValue(json.data(), json.size(), rapidjson::kStringType);
    } else {
        writer_.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
    }
}

void JsonStreamWriter::key(const std::string& name) { writeString(name.data(), name.size()); }

void JsonStreamWriter::string(const std::string& text) { writeString(text.data(), text.size()); }

void JsonStreamWriter::number(double value) {
    if (!std::isfinite(value)) {
        writer_.Null();
        return;
    }
    char text[kNumberTextCapacity];
    const char* end = writeNumber(text, value);
    writer_.RawValue(text, static_cast<std::size_t>(end - text), rapidjson::kNumberType);
}

void JsonStreamWriter::boolean(bool value) { writer_.Bool(value); }

void JsonStreamWriter::null() { writer_.Null(); }

void JsonStreamWriter::value(const rapidjson::Value& v) {
    if (v.IsObject()) {
        beginObject();
        for (const auto& member : v.GetObject()) {
            writeString(member.name.GetString(), member.name.GetStringLength());
            value(member.value);
        }
        endObject();
    } else if (v.IsArray()) {
        bool plain = true;
        for (const auto& element : v.GetArray()) plain = plain && isPlain(element);
        beginArray(plain);
        for (const auto& element : v.GetArray()) value(element);
        endArray();
    } else if (v.IsString()) {
        writeString(v.GetString(), v.GetStringLength());
    } else if (v.IsBool()) {
        boolean(v.GetBool());
    } else if (v.IsInt64()) {
        writer_.Int64(v.GetInt64());
    } else if (v.IsUint64()) {
        writer_.Uint64(v.GetUint64());
    } else if (v.IsNumber()) {
        number(v.GetDouble());
    } else {
        null();
    }
}

void JsonStreamWriter::numberArray(const std::vector<double>& values) {
    beginArray(true);
    // Each block is one raw value to the writer, which puts ", " between the
    // blocks as between any two elements. The writer is given an empty value
    // for the separator, and the block's bytes go to the stream in one copy
    // rather than through its character-by-character raw value.
    const unsigned threads = values.size() > 2 * kBlockNumbers ? threads_ : 1;
    OrderedTextPipeline blocks(threads, [this](const std::string& text) {
        writer_.RawValue(text.data(), 0, rapidjson::kNumberType);
        stream_.Write(text.data(), text.size());
    });
    for (std::size_t first = 0; first < values.size(); first += kBlockNumbers) {
        const double* start = values.data() + first;
        const std::size_t count = std::min(kBlockNumbers, values.size() - first);
        blocks.submit([start, count](std::string& text) { formatNumberList(text, start, count); });
    }
    blocks.finish();
    endArray();
}

void JsonStreamWriter::finish() {
    stream_.Put('\n');
    stream_.Flush();
}

}  // namespace host
