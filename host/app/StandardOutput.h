#pragma once
#include <ostream>

#include "SinkStreamBuffer.h"

// distcorr's standard output, written straight to descriptor 1. The first
// failure (a closed pipe, a full disk) is reported once on standard error;
// later output is dropped and failed() stays true, so the program can go on
// writing its files and still exit with an error.
class StandardOutput {
public:
    StandardOutput();
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    std::ostream& stream() { return stream_; }
    // Sends what is buffered; false once anything failed.
    bool flush();
    bool failed() const { return buffer_.failed(); }

private:
    int error_ = 0;
    bool reported_ = false;
    SinkStreamBuffer buffer_;
    std::ostream stream_;
};
