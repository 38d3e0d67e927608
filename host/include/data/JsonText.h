#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include <rapidjson/document.h>

namespace host {

// Deepest nesting of arrays and objects accepted in a JSON file the host reads.
constexpr int kMaxJsonDepth = 200;

// Why JSON text could not be parsed; ok when it could.
struct JsonParseResult {
    bool ok = true;
    std::string reason;  // "Missing a comma or ']' after an array element."
    std::size_t offset = 0;
    int line = 0;    // from 1, of the offset
    int column = 0;  // from 1, in bytes
};

// Parses every JSON file the host reads (schemas, manifests, string tables)
// with a bounded call stack: RapidJSON's iterative parser, nesting at most
// kMaxJsonDepth deep, text checked to be UTF-8. With numbersAsText, numbers
// are kept as their JSON text so that they can be read exactly.
JsonParseResult parseJsonText(rapidjson::Document& document, std::string_view text, bool numbersAsText = false);

}  // namespace host
