#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace host {

// Turns the bytes of a data file into UTF-8 text. UTF-8 (with or without a
// byte-order mark) is kept as it is; UTF-16 with a byte-order mark is
// converted. Bytes that are not valid UTF-8 make the whole file read as
// Windows-1252 (Latin-1 with the printable characters of 0x80-0x9F); note
// then says so, naming the first line that is not UTF-8, else it is empty.
std::string decodeDataText(std::string bytes, const std::string& fileName, std::string& note);

// Offset of the first byte that does not belong to valid UTF-8 (no overlong
// forms, surrogates or code points above U+10FFFF); npos when there is none.
std::size_t firstInvalidUtf8(std::string_view text);

// The physical line (from 1) on which a byte offset lies: LF, CRLF and a
// lone CR each end a line.
int lineOfOffset(std::string_view text, std::size_t offset);

}  // namespace host
