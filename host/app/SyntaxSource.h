#pragma once
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

// One syntax text and the name messages give its source.
struct SyntaxText {
    std::string text;
    std::string sourceName;  // the syntax file, "standard input" or "command line"
};

// Where distcorr's commands come from: the -e texts (run in the order given),
// a syntax file, "-" for standard input, or, when none was given, standard
// input when it is not a terminal. Every problem is a UsageError naming the
// source and the reason.
class SyntaxSource {
public:
    // The most syntax read from one source.
    static constexpr std::size_t kMaxBytes = std::size_t(256) << 20;

    SyntaxSource(std::vector<std::string> executeTexts, std::string syntaxFile, bool dataFromStandardInput)
        : executeTexts_(std::move(executeTexts)),
          syntaxFile_(std::move(syntaxFile)),
          dataFromStandardInput_(dataFromStandardInput) {}

    // The file whose syntax is read ("" for -e, standard input or nothing).
    const std::string& syntaxFile() const { return syntaxFile_ == "-" ? kNone : syntaxFile_; }

    std::vector<SyntaxText> read() const;

private:
    static const std::string kNone;

    std::vector<std::string> executeTexts_;
    std::string syntaxFile_;
    bool dataFromStandardInput_;
};
