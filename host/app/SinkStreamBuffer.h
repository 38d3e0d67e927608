#pragma once
#include <cstddef>
#include <functional>
#include <streambuf>
#include <vector>

// An output stream buffer that hands full blocks of bytes to a sink. The
// first time the sink fails the buffer stops: later bytes are dropped, the
// stream reports failure, and failed() stays true.
class SinkStreamBuffer : public std::streambuf {
public:
    using Sink = std::function<bool(const char* bytes, std::size_t size)>;

    explicit SinkStreamBuffer(Sink sink, std::size_t blockSize = 1 << 16);
    SinkStreamBuffer(const SinkStreamBuffer&) = delete;
    SinkStreamBuffer& operator=(const SinkStreamBuffer&) = delete;

    bool failed() const { return failed_; }

protected:
    int overflow(int c) override;
    int sync() override;

private:
    bool drain();

    Sink sink_;
    std::vector<char> block_;
    bool failed_ = false;
};

// Writes all bytes to a file descriptor, retrying short writes and EINTR.
// Returns 0, or the errno of the failure.
int writeAllToDescriptor(int fd, const char* bytes, std::size_t size);
