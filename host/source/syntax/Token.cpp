#include "syntax/Token.h"

namespace host::syntax {

std::string Token::describe() const {
    if (kind == TokenKind::End) return "the end of the command";
    return "\"" + text + "\"";
}

}  // namespace host::syntax
