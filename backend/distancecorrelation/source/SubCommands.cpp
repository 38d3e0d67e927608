#include "SubCommands.h"

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "ProcedureDataSource.h"

SubCommands::PrintSettings::PrintSettings()
    : details_(false),
      distanceCorrelationCoefficient_(false),
      correlationEstimates_(false),
      distanceVariance_(false),
      distanceMatrix_(false),
      save_(false) {}

void SubCommands::PrintSettings::setOutFileSpec(std::string path, bool forWriting) {
    outFileSpec_.Init(path, forWriting, true);
}

SubCommands::SubCommands(const CommandSpec& spec, const CommandDescriptor& descriptor,
                         const ProcedureDataSource& source)
    : commandSpec_(spec), commandDescriptor_(descriptor), dataSource_(source) {
    message_.SetCommandName("DISTANCE CORRELATION");
    message_.SetProcedureTitle("Distance Correlation");
}

SubCommands::~SubCommands() = default;
