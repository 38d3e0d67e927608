#pragma once
// One command taken through the host parser and the input stage over a CSV
// fixture, the way the procedure's entry runs it.
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DistanceCorrCommandDescriber.h"
#include "DistanceCorrInputSettings.h"
#include "HostSession.h"
#include "ProcedureDataSource.h"
#include "UniversalParser.h"
#include "VELA_TokenSequence.h"
#include "data/CsvDataLoader.h"

// The value in which missing data reaches the procedure.
const double kMissing = std::numeric_limits<double>::lowest();

inline std::string inputFixture(const std::string& name) {
    return std::string(DC_FIXTURES) + "/input/" + name;
}

// Makes tests/fixtures/input/<base>.csv (with its schema) the active data set.
inline void useDataSet(const std::string& base) {
    host::HostSession::instance().setActiveDataSet(
        host::loadCsvDataSet(inputFixture(base + ".csv"), inputFixture(base + ".schema.json")));
}

// The host's text for a non-scale variable named on VARIABLE.
inline std::string needScaleText(const std::string& name, const std::string& level) {
    return "Variable \"" + name + "\" named on VARIABLE is " + level +
           "; a scale (continuous) variable is needed there.";
}

// The texts of the messages the current command produced.
inline std::vector<std::string> messageTexts() {
    std::vector<std::string> texts;
    for (const host::HostMessage& m : host::HostSession::instance().messages()) texts.push_back(m.text);
    return texts;
}

class InputStageRun {
public:
    // The data set must already be active: the data source binds to it.
    explicit InputStageRun(const std::string& commandText)
        : begun_(beginCommand(commandText)),
          descriptor_("DISTANCE CORRELATION"),
          tokens_(true),
          describer_(descriptor_),
          describeStatus_(describer_.start()),
          parser_(tokens_, spec_, descriptor_),
          parseStatus_(parser_.getCommandSpecifications()),
          settings_(spec_, descriptor_, source_) {}

    unsigned describeStatus() const { return describeStatus_; }
    unsigned parseStatus() const { return parseStatus_; }
    unsigned start() { return settings_.start(); }
    DistanceCorrInputSettings& settings() { return settings_; }
    ProcedureDataSource& source() { return source_; }

private:
    static bool beginCommand(const std::string& text) {
        host::HostSession& session = host::HostSession::instance();
        session.setQuiet(true);
        session.beginCommand(host::CommandText{text, "test", 1});
        return true;
    }

    bool begun_;
    ProcedureDataSource source_;
    CommandDescriptor descriptor_;
    VELA_TokenSequence tokens_;
    DistanceCorrCommandDescriber describer_;
    unsigned describeStatus_;
    CommandSpec spec_;
    UniversalParser parser_;
    unsigned parseStatus_;
    DistanceCorrInputSettings settings_;
};

// Tests that run commands against the mixed fixture (scale, ordinal and nominal variables).
class MixedDataSetTest : public ::testing::Test {
protected:
    void SetUp() override { useDataSet("mixed"); }
};
