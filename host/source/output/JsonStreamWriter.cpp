#include "output/JsonStreamWriter.h"

#include <charconv>
#include <cmath>

#include "output/NumberText.h"
#include "output/Utf8Text.h"

namespace host {

namespace {

bool isPlain(const rapidjson::Value& v) { return !v.IsObject() && !v.IsArray(); }

}  // namespace

void JsonStreamWriter::beforeValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (stack_.empty()) return;
    Level& level = stack_.back();
    if (!level.empty) out_ << ',';
    if (level.singleLine) {
        if (!level.empty) out_ << ' ';
    } else {
        newline();
    }
    level.empty = false;
}

void JsonStreamWriter::newline() {
    out_ << '\n';
    for (std::size_t i = 0; i < stack_.size(); ++i) out_ << "  ";
}

void JsonStreamWriter::writeString(const std::string& raw) {
    static const char* hex = "0123456789abcdef";
    const std::string text = validUtf8(raw);
    out_ << '"';
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        switch (c) {
        case '"': out_ << "\\\""; break;
        case '\\': out_ << "\\\\"; break;
        case '\b': out_ << "\\b"; break;
        case '\f': out_ << "\\f"; break;
        case '\n': out_ << "\\n"; break;
        case '\r': out_ << "\\r"; break;
        case '\t': out_ << "\\t"; break;
        default:
            if (c < 0x20)
                out_ << "\\u00" << hex[c >> 4] << hex[c & 0xF];
            else
                out_ << ch;
        }
    }
    out_ << '"';
}

void JsonStreamWriter::beginObject() {
    beforeValue();
    out_ << '{';
    stack_.push_back({true, false, true});
}

void JsonStreamWriter::endObject() {
    const bool empty = stack_.back().empty;
    stack_.pop_back();
    if (!empty) newline();
    out_ << '}';
}

void JsonStreamWriter::beginArray(bool singleLine) {
    beforeValue();
    out_ << '[';
    stack_.push_back({false, singleLine, true});
}

void JsonStreamWriter::endArray() {
    const Level level = stack_.back();
    stack_.pop_back();
    if (!level.empty && !level.singleLine) newline();
    out_ << ']';
}

void JsonStreamWriter::key(const std::string& name) {
    Level& level = stack_.back();
    if (!level.empty) out_ << ',';
    newline();
    level.empty = false;
    writeString(name);
    out_ << ": ";
    afterKey_ = true;
}

void JsonStreamWriter::string(const std::string& text) {
    beforeValue();
    writeString(text);
}

void JsonStreamWriter::number(double value) {
    beforeValue();
    if (std::isfinite(value))
        out_ << shortestNumber(value);
    else
        out_ << "null";
}

void JsonStreamWriter::boolean(bool value) {
    beforeValue();
    out_ << (value ? "true" : "false");
}

void JsonStreamWriter::null() {
    beforeValue();
    out_ << "null";
}

void JsonStreamWriter::value(const rapidjson::Value& v) {
    if (v.IsObject()) {
        beginObject();
        for (const auto& member : v.GetObject()) {
            key(std::string(member.name.GetString(), member.name.GetStringLength()));
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
        string(std::string(v.GetString(), v.GetStringLength()));
    } else if (v.IsBool()) {
        boolean(v.GetBool());
    } else if (v.IsInt64()) {
        beforeValue();
        out_ << v.GetInt64();
    } else if (v.IsUint64()) {
        beforeValue();
        out_ << v.GetUint64();
    } else if (v.IsNumber()) {
        number(v.GetDouble());
    } else {
        null();
    }
}

void JsonStreamWriter::numberArray(const std::vector<double>& values) {
    beginArray(true);
    // Formatted in blocks: one write per block instead of one per number.
    constexpr std::size_t kBlock = 1 << 16;
    char buffer[kBlock + 64];
    std::size_t used = 0;
    Level& level = stack_.back();
    for (double v : values) {
        if (!level.empty) {
            buffer[used++] = ',';
            buffer[used++] = ' ';
        }
        level.empty = false;
        if (std::isfinite(v)) {
            used = static_cast<std::size_t>(std::to_chars(buffer + used, buffer + sizeof buffer, v).ptr - buffer);
        } else {
            for (char c : {'n', 'u', 'l', 'l'}) buffer[used++] = c;
        }
        if (used >= kBlock) {
            out_.write(buffer, static_cast<std::streamsize>(used));
            used = 0;
        }
    }
    out_.write(buffer, static_cast<std::streamsize>(used));
    endArray();
}

void JsonStreamWriter::finish() { out_ << '\n'; }

}  // namespace host
