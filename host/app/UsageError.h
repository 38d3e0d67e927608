#pragma once
#include <stdexcept>

// A problem with how distcorr was called (options, syntax source, output
// paths): reported as "Error: <text>" with exit status 2, before any command runs.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
