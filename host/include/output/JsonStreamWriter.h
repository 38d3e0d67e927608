#pragma once
#include <string>
#include <vector>

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>

#include "output/BufferedOStream.h"

namespace host {

// Writes JSON to a stream as it goes, through RapidJSON's PrettyWriter, so
// that large number arrays never sit in memory as text. Layout: two-space
// indentation, one object member per line, arrays of plain values on one
// line, other arrays one element per line. Numbers in their shortest
// round-trip form (std::to_chars: "0.1", "3", "1e-07"); NaN and infinities
// as null. Strings as UTF-8, invalid bytes replaced by U+FFFD.
class JsonStreamWriter {
public:
    // `threads` format the blocks of numberArray (1: on the caller's thread).
    explicit JsonStreamWriter(std::ostream& out, unsigned threads = 1);

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
    // A single-line array of numbers, formatted a block at a time.
    void numberArray(const std::vector<double>& values);
    // Ends the document with a newline and writes out what is buffered.
    void finish();

    // Numbers per block of numberArray.
    static constexpr std::size_t kBlockNumbers = 16384;

private:
    void writeString(const char* text, std::size_t length);
    void setLayoutOfInnermostArray();

    BufferedOStream stream_;
    rapidjson::PrettyWriter<BufferedOStream> writer_;
    std::vector<bool> singleLineArrays_;  // per open array
    unsigned threads_;
};

// Replaces text with "a, b, c": the shortest texts of the values, null for
// NaN and infinities. Its memory is reused; only growth is cleared.
void formatNumberList(std::string& text, const double* values, std::size_t count);

}  // namespace host
