#include "DistanceCorrEntry.h"

#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "BpProcedure.h"
#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DistanceCorrAlgo.h"
#include "DistanceCorrCommandDescriber.h"
#include "DistanceCorrCommonData.h"
#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "DistanceCorrOutputGen.h"
#include "DistanceCorrResult.h"
#include "DistanceCorrSaveOutFile.h"
#include "ProcedureDataSource.h"
#include "UniversalParser.h"
#include "VELA_TokenSequence.h"

void distancecorr_entry(void* /*host*/) {
    // Every object of the run is declared here in construction order, so that
    // it is destroyed in reverse order at the end, at an early stop and when
    // an exception unwinds.
    std::optional<BpProcedure> procedure;
    std::optional<ProcedureDataSource> dataSource;
    std::optional<CommandDescriptor> descriptor;
    std::optional<VELA_TokenSequence> tokens;
    std::optional<DistanceCorrCommandDescriber> describer;
    std::optional<CommandSpec> spec;
    std::optional<UniversalParser> parser;
    std::optional<DistanceCorrInputSettings> settings;
    std::optional<std::vector<DistanceCorrResult>> results;
    std::optional<std::vector<DistanceCorrDescriptiveResult>> descriptives;
    std::optional<DistanceCorrCommonData> common;
    std::optional<DistanceCorrAlgo> algo;
    std::optional<DistanceCorrOutputGen> output;
    std::optional<DistanceCorrSaveOutFile> save;

    {
        const std::string title = "Distance Correlation";
        procedure.emplace(title, 10);
    }
    dataSource.emplace();
    {
        const std::string name = "DISTANCE CORRELATION";
        descriptor.emplace(name);
    }
    tokens.emplace(true);
    describer.emplace(*descriptor);

    // Step 1: the grammar.
    if (describer->start() == 1) return;

    // Step 2: parsing; the host has reported any syntax problem.
    spec.emplace();
    parser.emplace(*tokens, *spec, *descriptor);
    if (parser->getCommandSpecifications() != 0) return;

    // Step 3: the subcommands; their readers have reported any problem.
    settings.emplace(*spec, *descriptor, *dataSource);
    if (settings->start() == 1) return;

    // Step 4: the computation.
    results.emplace();
    descriptives.emplace();
    common.emplace();
    algo.emplace(*settings, *results, *descriptives, *common);
    if (algo->start() == 1) {
        std::cerr << "distancecorr_entry: Step4 Unknown error occurred." << std::endl;
        return;
    }

    // Step 5: the output document.
    output.emplace(*procedure, *dataSource, *settings, *results, *descriptives, *common);
    if (output->start() == 1) {
        std::cerr << "distancecorr_entry: Step5 Unknown error occurred." << std::endl;
        return;
    }

    // Step 6: the saved distance file.
    save.emplace(*settings, *descriptives);
    if (save->start() == 1) {
        std::cerr << "distancecorr_entry: Step6 Unknown error occurred." << std::endl;
    }
}

extern "C" void discorr_(void* host) {
    try {
        distancecorr_entry(host);
    } catch (const std::exception&) {
    } catch (...) {
    }
}
