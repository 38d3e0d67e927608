#pragma once
#include <memory>
#include <string>

// The tokens of the command being run. Constructed with true it reads the
// host's current command text.
class VELA_TokenSequence {
public:
    explicit VELA_TokenSequence(bool currentCommand);
    VELA_TokenSequence(const VELA_TokenSequence&) = delete;
    VELA_TokenSequence& operator=(const VELA_TokenSequence&) = delete;
    ~VELA_TokenSequence();

    struct Impl;
    Impl& impl();
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
