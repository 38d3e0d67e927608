#pragma once
// Settings and result records filled by hand for the output stage tests, and
// one run of the output stage on them.
#include <string>
#include <vector>

#include "BpProcedure.h"
#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DistanceCorrCommonData.h"
#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "DistanceCorrOutputGen.h"
#include "DistanceCorrResult.h"
#include "HostSession.h"
#include "ProcedureDataSource.h"

// Opens the protected settings records to the tests.
class OutputTestSettings : public DistanceCorrInputSettings {
public:
    OutputTestSettings(const CommandSpec& spec, const CommandDescriptor& descriptor,
                       const ProcedureDataSource& source)
        : DistanceCorrInputSettings(spec, descriptor, source) {}

    SubCommands::IDSettings& id() { return id_; }
    SubCommands::CriteriaSettings& criteria() { return criteria_; }
    SubCommands::PrintSettings& print() { return print_; }
    SubCommands::PlotSettings& plot() { return plot_; }
};

// Everything the output stage is constructed from, as the entry builds it.
struct OutputRun {
    OutputRun() {
        host::HostSession& session = host::HostSession::instance();
        session.setQuiet(true);
        session.beginCommand(host::CommandText{"DISTANCE CORRELATION.", "test", 1});
    }

    int start() {
        DistanceCorrOutputGen generator(procedure, source, settings, results, descriptives, common);
        return generator.start();
    }

    BpProcedure procedure{"Distance Correlation", 10};
    ProcedureDataSource source;
    CommandDescriptor descriptor{"DISTANCE CORRELATION"};
    CommandSpec spec;
    OutputTestSettings settings{spec, descriptor, source};
    std::vector<DistanceCorrResult> results;
    std::vector<DistanceCorrDescriptiveResult> descriptives;
    DistanceCorrCommonData common;
};

inline DistanceCorrResult pairResult(const std::string& name1, const std::string& name2,
                                     double dCor, double dCov, double ciLower, double ciUpper,
                                     double permLower, double permUpper, double pValue) {
    DistanceCorrResult r;
    r.varName1 = name1;
    r.varName2 = name2;
    r.dCor = dCor;
    r.dCov = dCov;
    r.ciLower = ciLower;
    r.ciUpper = ciUpper;
    r.permLower = permLower;
    r.permUpper = permUpper;
    r.pValue = pValue;
    return r;
}

// A variable whose distance matrix is |v_i - v_j| of the given values.
inline DistanceCorrDescriptiveResult variableWithValues(const std::string& name,
                                                        const std::vector<double>& values) {
    DistanceCorrDescriptiveResult d;
    d.varName = name;
    d.n = values.size();
    d.values = values;
    d.distanceMatrix.assign(values.size(), std::vector<double>(values.size(), 0.0));
    for (std::size_t i = 0; i < values.size(); ++i)
        for (std::size_t j = 0; j < values.size(); ++j)
            d.distanceMatrix[i][j] = values[i] > values[j] ? values[i] - values[j] : values[j] - values[i];
    return d;
}

// Values 1, 2, ..., n: the distance of cases i and j is |i - j|.
inline std::vector<double> countingValues(std::size_t n) {
    std::vector<double> v(n);
    for (std::size_t i = 0; i < n; ++i) v[i] = static_cast<double>(i + 1);
    return v;
}

// The smallest run that has something to show: one pair of two variables.
inline void fillTwoVariables(OutputRun& run) {
    run.results.push_back(pairResult("x", "y", 0.5, 0.25, 0.1, 0.8, 0.2, 0.7, 0.03));
    run.descriptives.push_back(variableWithValues("x", {1, 2, 4}));
    run.descriptives.push_back(variableWithValues("y", {3, 1, 2}));
}

inline std::size_t messagesWithText(const std::string& text) {
    std::size_t count = 0;
    for (const host::HostMessage& m : host::HostSession::instance().messages())
        if (m.text == text) ++count;
    return count;
}
