#pragma once
#include "ParserMessage.h"
#include "SubCommands.h"

class CommandDescriptor;

// Describes the grammar of DISTANCE CORRELATION to the host parser.
class DistanceCorrCommandDescriber {
public:
    explicit DistanceCorrCommandDescriber(CommandDescriptor& descriptor);

    // 0 when the grammar was described, 1 when describing raised an exception.
    unsigned start();
    unsigned setSubCommandDescription(subCommand which);

    void describeGlobalCommands();
    void describeId();
    void describeCriteria();
    void describePrint();
    void describePlot();

private:
    CommandDescriptor& descriptor_;
    ParserMessage message_;
};
