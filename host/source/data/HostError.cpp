#include "data/HostError.h"

#include "ErrorText.h"
#include "HostSession.h"

namespace host {

void reportHostError(const std::string& text) {
    HostSession::instance().addMessage(MessageLevel::Error, "", text);
}

void raiseHostError(const std::string& text) {
    reportHostError(text);
    throw ErrorText(text);
}

}  // namespace host
