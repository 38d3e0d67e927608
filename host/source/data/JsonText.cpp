#include "data/JsonText.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

namespace host {

namespace {

// Forwards the parser's events to the document and stops at kMaxJsonDepth.
class DepthLimitedHandler {
public:
    explicit DepthLimitedHandler(rapidjson::Document& document) : document_(document) {}

    bool Null() { return document_.Null(); }
    bool Bool(bool b) { return document_.Bool(b); }
    bool Int(int i) { return document_.Int(i); }
    bool Uint(unsigned u) { return document_.Uint(u); }
    bool Int64(int64_t i) { return document_.Int64(i); }
    bool Uint64(uint64_t u) { return document_.Uint64(u); }
    bool Double(double d) { return document_.Double(d); }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool copy) {
        return document_.RawNumber(text, length, copy);
    }
    bool String(const char* text, rapidjson::SizeType length, bool copy) {
        return document_.String(text, length, copy);
    }
    bool Key(const char* text, rapidjson::SizeType length, bool copy) { return document_.Key(text, length, copy); }
    bool StartObject() { return enter() && document_.StartObject(); }
    bool EndObject(rapidjson::SizeType count) {
        --depth_;
        return document_.EndObject(count);
    }
    bool StartArray() { return enter() && document_.StartArray(); }
    bool EndArray(rapidjson::SizeType count) {
        --depth_;
        return document_.EndArray(count);
    }

    bool tooDeep() const { return tooDeep_; }

private:
    bool enter() {
        if (++depth_ <= kMaxJsonDepth) return true;
        tooDeep_ = true;
        return false;
    }

    rapidjson::Document& document_;
    int depth_ = 0;
    bool tooDeep_ = false;
};

constexpr unsigned kFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;

template <unsigned flags>
JsonParseResult parseWith(rapidjson::Document& document, std::string_view text) {
    JsonParseResult result;
    rapidjson::Reader reader;
    bool tooDeep = false;
    auto generator = [&](rapidjson::Document& target) {
        rapidjson::MemoryStream bytes(text.data(), text.size());
        rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> input(bytes);
        DepthLimitedHandler handler(target);
        const bool parsed = !reader.Parse<flags>(input, handler).IsError();
        tooDeep = handler.tooDeep();
        return parsed;
    };
    document.Populate(generator);
    if (!reader.HasParseError()) return result;
    result.ok = false;
    result.offset = reader.GetErrorOffset();
    result.reason = tooDeep
                        ? "Arrays and objects are nested more than " + std::to_string(kMaxJsonDepth) + " levels deep."
                        : rapidjson::GetParseError_En(reader.GetParseErrorCode());
    result.line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < result.offset && i < text.size(); ++i)
        if (text[i] == '\n') {
            ++result.line;
            lineStart = i + 1;
        }
    result.column = static_cast<int>(result.offset - lineStart + 1);
    return result;
}

}  // namespace

JsonParseResult parseJsonText(rapidjson::Document& document, std::string_view text, bool numbersAsText) {
    if (numbersAsText) return parseWith<kFlags | rapidjson::kParseNumbersAsStringsFlag>(document, text);
    return parseWith<kFlags>(document, text);
}

}  // namespace host
