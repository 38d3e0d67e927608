#include "DependenceEntry.h"

#include <optional>
#include <vector>

#include "BpProcedure.h"
#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DependenceAnalysis.h"
#include "DependenceCommandDescriber.h"
#include "DependenceOutput.h"
#include "DependenceResult.h"
#include "DependenceSettings.h"
#include "DependenceSettingsReader.h"
#include "ProcedureDataSource.h"
#include "UniversalParser.h"
#include "VELA_TokenSequence.h"

void dependence_entry(void* /*host*/) {
    // Declared in construction order: destroyed in reverse at any stop.
    BpProcedure procedure("Dependence", 10);
    ProcedureDataSource source;
    CommandDescriptor descriptor("DEPENDENCE");
    VELA_TokenSequence tokens(true);
    DependenceCommandDescriber describer(descriptor);
    if (describer.start() != 0) return;

    CommandSpec spec;
    UniversalParser parser(tokens, spec, descriptor);
    if (parser.getCommandSpecifications() != 0) return;  // the host reported the problem

    DependenceSettings settings;
    DependenceSettingsReader reader(spec, descriptor, source);
    if (reader.start(settings) != 0) return;

    std::vector<DependenceResult> results;
    DependenceAnalysis analysis(settings, results);
    if (analysis.start() != 0) return;

    DependenceOutput output(procedure, source, settings, results);
    output.start();
}

extern "C" void dependence_(void* host) {
    try {
        dependence_entry(host);
    } catch (...) {
    }
}
