#pragma once
// Shared set-up of the saved-distance-file tests: settings whose PRINT record
// the test fills directly, hand-made descriptive records, a scratch folder and
// the path of the written file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "ProcedureDataSource.h"

namespace savetest {

namespace fs = std::filesystem;

// Settings as the readers would leave them, with the PRINT record open to the test.
class SaveTestSettings : public DistanceCorrInputSettings {
public:
    SaveTestSettings(const CommandSpec& spec, const CommandDescriptor& descriptor,
                     const ProcedureDataSource& source)
        : DistanceCorrInputSettings(spec, descriptor, source) {}

    PrintSettings& print() { return print_; }
};

// A record for a variable with the given values and the absolute-difference
// distance matrix, worked out here independently of the engine.
inline DistanceCorrDescriptiveResult makeRecord(const std::string& name,
                                                const std::vector<double>& values) {
    DistanceCorrDescriptiveResult record;
    record.varName = name;
    record.n = values.size();
    record.values = values;
    record.distanceMatrix.assign(values.size(), std::vector<double>(values.size(), 0.0));
    for (std::size_t i = 0; i < values.size(); ++i)
        for (std::size_t j = 0; j < values.size(); ++j)
            record.distanceMatrix[i][j] = std::fabs(values[i] - values[j]);
    return record;
}

// "[name = value]" with the value printed with 3 decimals by the C library.
inline std::string expectedLabel(const std::string& name, double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", value);
    return "[" + name + " = " + text + "]";
}

inline std::string trimRight(std::string text) {
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

inline std::string readBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::vector<std::string> folderEntries(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// Fixture: a fresh scratch folder per test and a settings object with
// SAVE off, no CONFIGURE names and no output file.
class SaveFileTest : public ::testing::Test {
protected:
    SaveFileTest()
        : descriptor_("DISTANCE CORRELATION"), settings_(spec_, descriptor_, dataSource_) {}

    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::path(DC_BINARY_DIR) / "test-scratch" / "save" /
                  (std::string(info->test_suite_name()) + "." + info->name());
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }

    // Asks for the distance matrices of the named variables in the given file.
    void requestSave(const std::vector<std::string>& names, const fs::path& file) {
        settings_.print().set_distanceMatrix(true);
        settings_.print().set_save(true);
        settings_.print().set_configList(names);
        settings_.print().setOutFileSpec(file.string(), true);
    }

    fs::path csvPath() const { return folder_ / "distances.csv"; }
    fs::path schemaPath() const { return folder_ / "distances.schema.json"; }

    CommandSpec spec_;
    CommandDescriptor descriptor_;
    ProcedureDataSource dataSource_;
    SaveTestSettings settings_;
    std::vector<DistanceCorrDescriptiveResult> records_;
    fs::path folder_;
};

}  // namespace savetest
