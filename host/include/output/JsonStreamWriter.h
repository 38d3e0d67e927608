#pragma once
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <rapidjson/document.h>

namespace host {

// Writes JSON to a stream as it goes, so that large number arrays never sit
// in memory as text. Layout: two-space indentation, one object member per
// line, arrays of plain values on one line, other arrays one element per
// line. Numbers in their shortest round-trip form; NaN and infinities as null.
class JsonStreamWriter {
public:
    explicit JsonStreamWriter(std::ostream& out) : out_(out) {}

    void beginObject();
    void endObject();
    void beginArray(bool singleLine);
    void endArray();
    void key(const std::string& name);

    void string(const std::string& text);
    void number(double value);
    void boolean(bool value);
    void null();
    // A DOM value, laid out as above.
    void value(const rapidjson::Value& value);
    // A single-line array of numbers.
    void numberArray(const std::vector<double>& values);
    // Ends the document with a newline.
    void finish();

private:
    struct Level {
        bool isObject;
        bool singleLine;
        bool empty;
    };

    void beforeValue();
    void newline();
    void writeString(const std::string& text);

    std::ostream& out_;
    std::vector<Level> stack_;
    bool afterKey_ = false;
};

}  // namespace host
