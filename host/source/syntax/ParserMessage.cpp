#include "ParserMessage.h"

#include "DataSet.h"
#include "HostSession.h"
#include "syntax/MessageText.h"

struct ParserMessage::Impl {
    std::string commandName;
    std::string procedureTitle;
};

namespace {

// Replaces "^1" .. "^5" by the arguments in order; an absent argument leaves nothing.
// The arguments are the user's words and names, shown as every message shows them.
std::string fillPlaceholders(const std::string& text, const char* const (&args)[5]) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '^' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '5') {
            const char* arg = args[text[i + 1] - '1'];
            if (arg != nullptr) out += host::syntax::shownText(arg);
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

const char* levelName(int level) {
    switch (level) {
        case 1:
            return "nominal";
        case 2:
            return "ordinal";
        default:
            return nullptr;
    }
}

}  // namespace

ParserMessage::ParserMessage() : impl_(std::make_unique<Impl>()) {}
ParserMessage::ParserMessage(const ParserMessage& other) : impl_(std::make_unique<Impl>(*other.impl_)) {}

ParserMessage& ParserMessage::operator=(const ParserMessage& other) {
    if (this != &other) *impl_ = *other.impl_;
    return *this;
}

ParserMessage::~ParserMessage() = default;

void ParserMessage::SetCommandName(const std::string& name) { impl_->commandName = name; }
void ParserMessage::SetProcedureTitle(const std::string& title) { impl_->procedureTitle = title; }
std::string ParserMessage::GetCommandName() const { return impl_->commandName; }
std::string ParserMessage::GetProcedureTitle() const { return impl_->procedureTitle; }

void ParserMessage::GenericError(const std::string& text, const char* a1, const char* a2, const char* a3,
                                 const char* a4, const char* a5) const {
    const char* const args[5] = {a1, a2, a3, a4, a5};
    host::HostSession::instance().addMessage(host::MessageLevel::Error, impl_->commandName,
                                             fillPlaceholders(text, args));
}

void ParserMessage::GenericWarning(const std::string& text, const char* a1, const char* a2, const char* a3,
                                   const char* a4, const char* a5) const {
    const char* const args[5] = {a1, a2, a3, a4, a5};
    host::HostSession::instance().addMessage(host::MessageLevel::Warning, impl_->commandName,
                                             fillPlaceholders(text, args));
}

void ParserMessage::NeedDepVarCont(const VelaVarName& name, const char* keyword, const char* extra) const {
    // Name the variable's level when the active data set knows it.
    const char* level = nullptr;
    if (auto data = host::HostSession::instance().activeDataSet()) {
        const int index = data->findVariable(name.str());
        if (index >= 0) level = levelName(data->variable(index).measurementLevel);
    }
    std::string text = "Variable " + host::syntax::quotedText(name.str());
    if (keyword != nullptr && *keyword != '\0') text += " named on " + std::string(keyword);
    if (level != nullptr)
        text += " is " + std::string(level) + "; a scale (continuous) variable is needed there.";
    else
        text += " is not a scale (continuous) variable; a scale variable is needed there.";
    if (extra != nullptr && *extra != '\0') text += " " + std::string(extra);
    host::HostSession::instance().addMessage(host::MessageLevel::Error, impl_->commandName, text);
}
