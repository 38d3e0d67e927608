#include "syntax/Token.h"

#include <cstdlib>

#include "syntax/MessageText.h"

namespace host::syntax {

std::string Token::value() const {
    if (kind != TokenKind::String || text.size() < 2) return std::string(text);
    // Between the quotes, a doubled quote stands for one.
    const char quote = text.front();
    std::string content;
    content.reserve(text.size() - 2);
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        content += text[i];
        if (text[i] == quote) ++i;
    }
    return content;
}

double Token::number() const {
    if (kind != TokenKind::Number) return 0.0;
    return std::strtod(std::string(text).c_str(), nullptr);
}

std::string Token::describe() const {
    if (kind == TokenKind::End) return "the end of the command";
    return quotedText(text);
}

}  // namespace host::syntax
