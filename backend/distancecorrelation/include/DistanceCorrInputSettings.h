#pragma once
#include "SubCommands.h"

// The input stage: reads the five subcommands into the settings records.
class DistanceCorrInputSettings : public SubCommands {
public:
    DistanceCorrInputSettings(const CommandSpec& spec, const CommandDescriptor& descriptor,
                              const ProcedureDataSource& source);

    // 0 when every subcommand was read; 1 when the run must stop.
    unsigned start();
    unsigned prepareInputSetting(subCommand which);
};
