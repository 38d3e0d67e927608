#pragma once
#include <memory>

class VELA_TokenSequence;
class CommandSpec;
class CommandDescriptor;

// Parses the command's tokens against its descriptor into a CommandSpec.
class UniversalParser {
public:
    UniversalParser(VELA_TokenSequence& tokens, CommandSpec& spec, const CommandDescriptor& desc);
    UniversalParser(const UniversalParser&) = delete;
    UniversalParser& operator=(const UniversalParser&) = delete;
    ~UniversalParser();

    // 0 when the command was parsed; otherwise the problem has been reported.
    unsigned getCommandSpecifications();

private:
    VELA_TokenSequence& tokens_;
    CommandSpec& spec_;
    const CommandDescriptor& desc_;
};
