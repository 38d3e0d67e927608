#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "syntax/Token.h"

namespace host::syntax {

// Finds where a variable name is written in a command, for messages that are
// given only the names of the subcommand (or keyword) and the parameter. It
// reads the command's tokens as it goes, holding two at a time.
class VariableNameLocator {
public:
    // The text must outlive the locator and the tokens it finds.
    VariableNameLocator(std::string_view text, int firstLine) : text_(text), firstLine_(firstLine) {}

    // The occurrence-th (from 1) writing of name, in any letter case, in the
    // value of parameter after the subcommand or keyword; false if not found.
    bool find(const std::string& subComName, const std::string& paramName, const std::string& name, int occurrence,
              Token& at) const;

private:
    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

    std::size_t anchorOf(const std::string& subComName) const;
    std::size_t valueStart(std::size_t anchor, const std::string& paramName, TokenKind next) const;

    std::string_view text_;
    int firstLine_;
};

}  // namespace host::syntax
