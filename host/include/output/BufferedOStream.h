#pragma once
#include <cstddef>
#include <ostream>
#include <vector>

namespace host {

// A RapidJSON output stream over a std::ostream: bytes are gathered in a
// large buffer and written in big blocks, not one call per character.
class BufferedOStream {
public:
    using Ch = char;

    explicit BufferedOStream(std::ostream& out, std::size_t capacity = std::size_t{1} << 20)
        : out_(out), buffer_(capacity) {}
    BufferedOStream(const BufferedOStream&) = delete;
    BufferedOStream& operator=(const BufferedOStream&) = delete;
    ~BufferedOStream() { Flush(); }

    void Put(char c) {
        if (used_ == buffer_.size()) Flush();
        buffer_[used_++] = c;
    }
    // Bytes as they are; a block larger than the buffer is written directly.
    void Write(const char* bytes, std::size_t size);
    void Flush();
    // Room for count more characters, which PutUnsafe then adds unchecked.
    void Reserve(std::size_t count);
    void PutUnsafe(char c) { buffer_[used_++] = c; }

    // Input side of the stream concept: never used by a writer.
    char Peek() const { return '\0'; }
    char Take() { return '\0'; }
    std::size_t Tell() const { return 0; }
    char* PutBegin() { return nullptr; }
    std::size_t PutEnd(char*) { return 0; }

private:
    std::ostream& out_;
    std::vector<char> buffer_;
    std::size_t used_ = 0;
};

// Found by argument-dependent lookup from RapidJSON's writers, in place of
// its generic versions, which check the room for every character.
inline void PutReserve(BufferedOStream& stream, std::size_t count) { stream.Reserve(count); }
inline void PutUnsafe(BufferedOStream& stream, char c) { stream.PutUnsafe(c); }

}  // namespace host
