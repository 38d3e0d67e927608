#include "DistanceCorrInputSettings.h"

#include <exception>
#include <stdexcept>

DistanceCorrInputSettings::DistanceCorrInputSettings(const CommandSpec& spec,
                                                     const CommandDescriptor& descriptor,
                                                     const ProcedureDataSource& source)
    : SubCommands(spec, descriptor, source) {}

unsigned DistanceCorrInputSettings::start() {
    try {
        for (int i = kGlobal; i <= kPlot; ++i) {
            // The reader has already told the user what is wrong; the error
            // only leaves the loop and is never shown.
            if (prepareInputSetting(static_cast<subCommand>(i)) != 0)
                throw std::runtime_error("Error encountered while syntax parsing.");
        }
    } catch (const std::exception&) {
        return 1;
    } catch (...) {
        return 1;
    }
    return 0;
}

unsigned DistanceCorrInputSettings::prepareInputSetting(subCommand which) {
    switch (which) {
        case kGlobal: return get_Subcommand_Global() ? 0 : 1;
        case kId: return get_SubCommand_ID() ? 0 : 1;
        case kCriteria:
            // CRITERIA can never stop the run; its result is ignored on purpose.
            get_Subcommand_Criteria();
            return 0;
        case kPrint: return get_Subcommand_Print() ? 0 : 1;
        case kPlot: return get_Subcommand_Plot() ? 0 : 1;
    }
    return 1;
}
