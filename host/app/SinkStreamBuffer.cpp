#include "SinkStreamBuffer.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

SinkStreamBuffer::SinkStreamBuffer(Sink sink, std::size_t blockSize) : sink_(std::move(sink)), block_(blockSize) {
    setp(block_.data(), block_.data() + block_.size());
}

bool SinkStreamBuffer::drain() {
    const std::size_t size = static_cast<std::size_t>(pptr() - pbase());
    setp(block_.data(), block_.data() + block_.size());
    if (failed_ || size == 0) return !failed_;
    if (!sink_(block_.data(), size)) failed_ = true;
    return !failed_;
}

int SinkStreamBuffer::overflow(int c) {
    if (!drain()) return traits_type::eof();
    if (c != traits_type::eof()) {
        *pptr() = static_cast<char>(c);
        pbump(1);
    }
    return traits_type::not_eof(c);
}

int SinkStreamBuffer::sync() { return drain() ? 0 : -1; }

int writeAllToDescriptor(int fd, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t n = ::write(fd, bytes, size);
        if (n < 0) {
            if (errno == EINTR) continue;
            return errno;
        }
        bytes += n;
        size -= static_cast<std::size_t>(n);
    }
    return 0;
}
