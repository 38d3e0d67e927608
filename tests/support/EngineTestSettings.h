#pragma once
// Settings and result containers for tests of the computation engine: the
// host objects the settings refer to are built in place, and the protected
// settings records are writable.
#include <string>
#include <vector>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DistanceCorrAlgo.h"
#include "DistanceCorrInputSettings.h"
#include "ProcedureDataSource.h"

// Constructed before the settings that hold references to them.
struct EngineTestHostObjects {
    CommandSpec spec;
    CommandDescriptor descriptor{"DISTANCE CORRELATION"};
    ProcedureDataSource source;
};

struct EngineTestSettings : private EngineTestHostObjects, public DistanceCorrInputSettings {
    EngineTestSettings() : DistanceCorrInputSettings(spec, descriptor, source) {}

    GlobalSettings& global() { return global_; }
    IDSettings& id() { return id_; }
    CriteriaSettings& criteria() { return criteria_; }

    // Analysis variables named V1, V2, ... with labels "Label V1", ...
    void setColumns(const std::vector<std::vector<double>>& columns) {
        std::vector<std::string> names;
        std::vector<std::string> labels;
        for (std::size_t v = 0; v < columns.size(); ++v) {
            names.push_back("V" + std::to_string(v + 1));
            labels.push_back("Label V" + std::to_string(v + 1));
        }
        global_.setGlobalVarNames(names);
        global_.setGlobalVarLabels(labels);
        global_.setGlobalData(columns);
    }
};

// One engine with its settings and the three result containers.
struct EngineRun {
    EngineTestSettings settings;
    std::vector<DistanceCorrResult> results;
    std::vector<DistanceCorrDescriptiveResult> descriptives;
    DistanceCorrCommonData common;
    DistanceCorrAlgo algo{settings, results, descriptives, common};

    EngineRun() = default;
    explicit EngineRun(const std::vector<std::vector<double>>& columns) { settings.setColumns(columns); }
};
