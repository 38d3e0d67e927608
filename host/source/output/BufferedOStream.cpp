#include "output/BufferedOStream.h"

#include <cstring>

namespace host {

void BufferedOStream::Write(const char* bytes, std::size_t size) {
    if (size > buffer_.size() - used_) {
        Flush();
        if (size >= buffer_.size()) {
            out_.write(bytes, static_cast<std::streamsize>(size));
            return;
        }
    }
    std::memcpy(buffer_.data() + used_, bytes, size);
    used_ += size;
}

void BufferedOStream::Reserve(std::size_t count) {
    if (count <= buffer_.size() - used_) return;
    Flush();
    if (count > buffer_.size()) buffer_.resize(count);
}

void BufferedOStream::Flush() {
    if (used_ == 0) return;
    out_.write(buffer_.data(), static_cast<std::streamsize>(used_));
    used_ = 0;
}

}  // namespace host
