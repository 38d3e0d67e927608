#include "StandardOutput.h"

#include <unistd.h>

#include <cstring>
#include <iostream>

StandardOutput::StandardOutput()
    : buffer_([this](const char* bytes, std::size_t size) {
          error_ = writeAllToDescriptor(STDOUT_FILENO, bytes, size);
          return error_ == 0;
      }),
      stream_(&buffer_) {}

bool StandardOutput::flush() {
    stream_.flush();
    if (!buffer_.failed()) return true;
    if (!reported_) {
        std::cerr << "Error: cannot write to standard output: " << std::strerror(error_) << "\n";
        reported_ = true;
    }
    return false;
}
