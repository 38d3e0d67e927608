#pragma once
#include <string>

// The exception the host raises for its own failures (files, dictionaries).
class ErrorText {
public:
    explicit ErrorText(std::string text) : text_(std::move(text)) {}
    const std::string& GetText() const { return text_; }
    const char* what() const noexcept { return text_.c_str(); }

private:
    std::string text_;
};
