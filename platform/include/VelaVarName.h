#pragma once
#include <string>

// A variable name as handed to host messages.
class VelaVarName {
public:
    VelaVarName() = default;
    explicit VelaVarName(std::string name) : name_(std::move(name)) {}
    const std::string& str() const { return name_; }
    const char* c_str() const { return name_.c_str(); }

private:
    std::string name_;
};
