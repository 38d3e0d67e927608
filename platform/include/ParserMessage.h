#pragma once
#include <memory>
#include <string>

#include "VelaVarName.h"

// Host message service. Errors and warnings go to the host message log of the
// running command; "^1" .. "^5" in a text are replaced by the arguments.
class ParserMessage {
public:
    ParserMessage();
    ParserMessage(const ParserMessage& other);
    ParserMessage& operator=(const ParserMessage& other);
    ~ParserMessage();

    void SetCommandName(const std::string& name);
    void SetProcedureTitle(const std::string& title);
    std::string GetCommandName() const;
    std::string GetProcedureTitle() const;

    void GenericError(const std::string& text, const char* a1 = nullptr, const char* a2 = nullptr,
                      const char* a3 = nullptr, const char* a4 = nullptr,
                      const char* a5 = nullptr) const;
    void GenericWarning(const std::string& text, const char* a1 = nullptr, const char* a2 = nullptr,
                        const char* a3 = nullptr, const char* a4 = nullptr,
                        const char* a5 = nullptr) const;
    // A variable that must be a scale (continuous) variable is not one.
    void NeedDepVarCont(const VelaVarName& name, const char* keyword, const char* extra) const;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
};
