// The saved distance file: dictionary, value labels and cases, read back
// through the reference host's loader.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "DistanceCorrSaveOutFile.h"
#include "SaveTestSupport.h"
#include "data/CsvDataLoader.h"

using namespace savetest;

namespace {

const double kMissing = std::numeric_limits<double>::lowest();

// One column of the saved dictionary: type, print and write formats, level, no label.
void expectColumn(const host::VariableInfo& v, const std::string& name, int type, VELA_Format::FormatType format,
                  int decimals, int level) {
    EXPECT_EQ(v.name, name);
    EXPECT_EQ(v.type, type);
    for (const VELA_Format& f : {v.format, v.writeFormat}) {
        EXPECT_EQ(f.type, format);
        EXPECT_EQ(f.width, 8);
        EXPECT_EQ(f.decimals, decimals);
    }
    EXPECT_EQ(v.measurementLevel, level);
    EXPECT_FALSE(v.hasLabel);
}

void expectRowNameColumn(const host::VariableInfo& v) {
    expectColumn(v, "VarName_", 8, VELA_Format::FormatString, 0, 1);
}

void expectDistanceColumn(const host::VariableInfo& v, const std::string& name) {
    expectColumn(v, name, 0, VELA_Format::FormatNumeric, 3, 3);
    EXPECT_TRUE(v.valueLabels.empty());
}

// The whole dictionary of a file with n distance columns.
void expectDictionary(const host::DataSet& data, int n) {
    EXPECT_EQ(data.label(), "Distance Matrix");
    ASSERT_EQ(data.variableCount(), n + 1);
    expectRowNameColumn(data.variable(0));
    for (int j = 1; j <= n; ++j) expectDistanceColumn(data.variable(j), "P" + std::to_string(j));
}

// Case `row` holds the row name and the distances of matrix row r.
void expectDistanceRow(const host::DataSet& data, std::size_t row, const std::string& name,
                       const std::vector<double>& distances) {
    SCOPED_TRACE("case " + std::to_string(row + 1));
    EXPECT_EQ(trimRight(data.textValue(row, 0)), name);
    for (std::size_t j = 0; j < distances.size(); ++j)
        EXPECT_DOUBLE_EQ(data.numericValue(row, static_cast<int>(j + 1)), distances[j]);
}

void expectBlankRow(const host::DataSet& data, std::size_t row, int n) {
    SCOPED_TRACE("case " + std::to_string(row + 1));
    EXPECT_EQ(trimRight(data.textValue(row, 0)), "");
    for (int j = 1; j <= n; ++j) EXPECT_EQ(data.numericValue(row, j), kMissing);
}

}  // namespace

TEST_F(SaveFileTest, SaveNotRequestedWritesNothing) {
    records_.push_back(makeRecord("x", {1.0, 2.0, 4.0}));
    settings_.print().set_configList({"x"});
    settings_.print().setOutFileSpec(csvPath().string(), true);

    DistanceCorrSaveOutFile writer(settings_, records_);
    EXPECT_EQ(writer.start(), 0u);
    EXPECT_TRUE(folderEntries(folder_).empty());
}

TEST_F(SaveFileTest, OneVariableThreeCases) {
    // x = 1.23456, -2.5, 1234.5678: distances |xi - xj| by hand:
    // d(0,1) = 3.73456, d(0,2) = 1233.33324, d(1,2) = 1237.0678.
    records_.push_back(makeRecord("x", {1.23456, -2.5, 1234.5678}));
    requestSave({"x"}, csvPath());

    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        EXPECT_EQ(writer.start(), 0u);
        EXPECT_EQ(writer.state(), DistanceCorrSaveOutFile::FileClosed);
        EXPECT_EQ(writer.rowNames(), (std::vector<std::string>{"P1", "P2", "P3"}));
    }

    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    expectDictionary(*data, 3);
    const std::vector<std::pair<std::string, std::string>> labels = {
        {"P1", "[x = 1.235]"}, {"P2", "[x = -2.500]"}, {"P3", "[x = 1234.568]"}};
    EXPECT_EQ(data->variable(0).valueLabels, labels);

    ASSERT_EQ(data->caseCount(), 3u);
    expectDistanceRow(*data, 0, "P1", {0.0, 3.73456, 1233.33324});
    expectDistanceRow(*data, 1, "P2", {3.73456, 0.0, 1237.0678});
    expectDistanceRow(*data, 2, "P3", {1233.33324, 1237.0678, 0.0});
}

TEST_F(SaveFileTest, DistancesAreWrittenUnrounded) {
    // 0.1 and 0.1234567 differ by 0.0234567: more decimals than the F8.3 format shows.
    records_.push_back(makeRecord("x", {0.1, 0.1234567}));
    requestSave({"x"}, csvPath());
    DistanceCorrSaveOutFile writer(settings_, records_);
    ASSERT_EQ(writer.start(), 0u);

    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    ASSERT_EQ(data->caseCount(), 2u);
    EXPECT_EQ(data->numericValue(0, 2), records_[0].distanceMatrix[0][1]);
    EXPECT_NEAR(data->numericValue(1, 1), 0.0234567, 1e-12);
    EXPECT_EQ(data->variable(0).valueLabels[1].second, "[x = 0.123]");
}

TEST_F(SaveFileTest, TwoVariablesThreeCasesFollowTheConfigureOrder) {
    // Records in the order x, y, z; CONFIGURE names y first, then x; z is not saved.
    records_.push_back(makeRecord("x", {1.0, 3.0, 7.0}));    // d: 2, 6, 4
    records_.push_back(makeRecord("y", {10.0, 5.0, 4.5}));   // d: 5, 5.5, 0.5
    records_.push_back(makeRecord("z", {100.0, 0.0, 50.0}));
    requestSave({"y", "x"}, csvPath());

    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        EXPECT_EQ(writer.start(), 0u);
        EXPECT_EQ(writer.rowNames(),
                  (std::vector<std::string>{"P1", "P2", "P3", "P4", "P5", "P6"}));
    }

    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    expectDictionary(*data, 3);
    const std::vector<std::pair<std::string, std::string>> labels = {
        {"P1", "[y = 10.000]"}, {"P2", "[y = 5.000]"}, {"P3", "[y = 4.500]"},
        {"P4", "[x = 1.000]"},  {"P5", "[x = 3.000]"}, {"P6", "[x = 7.000]"}};
    EXPECT_EQ(data->variable(0).valueLabels, labels);

    ASSERT_EQ(data->caseCount(), 7u);
    expectDistanceRow(*data, 0, "P1", {0.0, 5.0, 5.5});
    expectDistanceRow(*data, 1, "P2", {5.0, 0.0, 0.5});
    expectDistanceRow(*data, 2, "P3", {5.5, 0.5, 0.0});
    expectBlankRow(*data, 3, 3);
    expectDistanceRow(*data, 4, "P4", {0.0, 2.0, 6.0});
    expectDistanceRow(*data, 5, "P5", {2.0, 0.0, 4.0});
    expectDistanceRow(*data, 6, "P6", {6.0, 4.0, 0.0});
}

TEST_F(SaveFileTest, TenOrMoreCasesLabelRowsInTextOrder) {
    // Eleven cases with x = i * i / 4 for i = 0 ... 10.
    std::vector<double> values;
    for (int i = 0; i <= 10; ++i) values.push_back(i * i / 4.0);
    records_.push_back(makeRecord("size", values));
    requestSave({"size"}, csvPath());
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        ASSERT_EQ(writer.start(), 0u);
    }

    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    expectDictionary(*data, 11);

    // Row names compared as text: P1, P10, P11, P2, ..., P9.
    const std::vector<int> textOrder = {1, 10, 11, 2, 3, 4, 5, 6, 7, 8, 9};
    std::vector<std::pair<std::string, std::string>> labels;
    for (int k : textOrder)
        labels.emplace_back("P" + std::to_string(k), expectedLabel("size", values[k - 1]));
    EXPECT_EQ(data->variable(0).valueLabels, labels);
    EXPECT_EQ(labels[1], (std::pair<std::string, std::string>{"P10", "[size = 20.250]"}));

    // The cases themselves stay in row order.
    ASSERT_EQ(data->caseCount(), 11u);
    for (std::size_t r = 0; r < 11; ++r) {
        std::vector<double> row;
        for (std::size_t j = 0; j < 11; ++j) {
            const double a = r * r / 4.0, b = j * j / 4.0;
            row.push_back(a > b ? a - b : b - a);
        }
        expectDistanceRow(*data, r, "P" + std::to_string(r + 1), row);
    }
}

TEST_F(SaveFileTest, RowNamesRunOnPastTenAcrossBlocks) {
    // Two blocks of six cases: rows P1 ... P6 and P7 ... P12, labels in text order.
    records_.push_back(makeRecord("a", {1, 2, 3, 4, 5, 6}));
    records_.push_back(makeRecord("b", {-1, -2, -3, -4, -5, -6}));
    requestSave({"a", "b"}, csvPath());
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        ASSERT_EQ(writer.start(), 0u);
    }
    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    expectDictionary(*data, 6);
    const auto& labels = data->variable(0).valueLabels;
    ASSERT_EQ(labels.size(), 12u);
    const std::vector<std::string> textOrder = {"P1", "P10", "P11", "P12", "P2", "P3",
                                                "P4", "P5",  "P6",  "P7",  "P8", "P9"};
    for (std::size_t k = 0; k < labels.size(); ++k) EXPECT_EQ(labels[k].first, textOrder[k]);
    EXPECT_EQ(labels[1].second, "[b = -4.000]");  // P10 is the fourth case of b

    ASSERT_EQ(data->caseCount(), 13u);
    expectBlankRow(*data, 6, 6);
    expectDistanceRow(*data, 12, "P12", {5, 4, 3, 2, 1, 0});
}

TEST_F(SaveFileTest, DiagonalOfEveryBlockIsZero) {
    records_.push_back(makeRecord("x", {2.0, 9.0, -4.0, 0.5}));
    records_.push_back(makeRecord("y", {3.0, 3.5, 8.0, 1.0}));
    requestSave({"x", "y"}, csvPath());
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        ASSERT_EQ(writer.start(), 0u);
    }
    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    ASSERT_EQ(data->caseCount(), 9u);
    for (std::size_t block = 0; block < 2; ++block) {
        for (std::size_t r = 0; r < 4; ++r) {
            const std::size_t row = block * 5 + r;
            EXPECT_EQ(data->numericValue(row, static_cast<int>(r + 1)), 0.0) << "case " << row + 1;
            for (std::size_t j = 0; j < 4; ++j) {
                if (j != r) {
                    EXPECT_GT(data->numericValue(row, static_cast<int>(j + 1)), 0.0);
                }
            }
        }
    }
}

TEST_F(SaveFileTest, UnmatchedAndMisshapenNamesContributeNoRows) {
    // "w" has a 2 x 2 matrix over 3 values: it gives no rows but still a separator;
    // "nosuch" matches no record and gives nothing at all.
    records_.push_back(makeRecord("x", {0.0, 1.0, 3.0}));
    DistanceCorrDescriptiveResult misshapen = makeRecord("w", {1.0, 2.0});
    misshapen.values.push_back(3.0);
    records_.push_back(misshapen);
    records_.push_back(makeRecord("y", {2.0, 2.0, 6.0}));
    requestSave({"x", "nosuch", "w", "y"}, csvPath());
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        ASSERT_EQ(writer.start(), 0u);
        EXPECT_EQ(writer.rowNames(),
                  (std::vector<std::string>{"P1", "P2", "P3", "P4", "P5", "P6"}));
    }
    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    expectDictionary(*data, 3);
    EXPECT_EQ(data->variable(0).valueLabels[3],
              (std::pair<std::string, std::string>{"P4", "[y = 2.000]"}));

    ASSERT_EQ(data->caseCount(), 8u);
    expectDistanceRow(*data, 2, "P3", {3.0, 2.0, 0.0});
    expectBlankRow(*data, 3, 3);
    expectBlankRow(*data, 4, 3);
    expectDistanceRow(*data, 5, "P4", {0.0, 0.0, 4.0});
    expectDistanceRow(*data, 7, "P6", {4.0, 4.0, 0.0});
}

TEST_F(SaveFileTest, UninitialisedFileSpecificationCreatesNoFile) {
    records_.push_back(makeRecord("x", {1.0, 2.0, 4.0}));
    settings_.print().set_save(true);
    settings_.print().set_configList({"x"});
    ASSERT_FALSE(settings_.printSettings().GetOutFileSpec().IsInit());

    DistanceCorrSaveOutFile writer(settings_, records_);
    EXPECT_EQ(writer.start(), 0u);
    EXPECT_EQ(writer.state(), DistanceCorrSaveOutFile::FileClosed);
    EXPECT_TRUE(writer.rowNames().empty());
    EXPECT_TRUE(folderEntries(folder_).empty());
}

TEST_F(SaveFileTest, UninitialisedFileSpecificationStepByStep) {
    records_.push_back(makeRecord("x", {1.0, 2.0, 4.0}));
    settings_.print().set_save(true);
    settings_.print().set_configList({"x"});

    DistanceCorrSaveOutFile writer(settings_, records_);
    EXPECT_EQ(writer.state(), DistanceCorrSaveOutFile::FileReady);
    EXPECT_EQ(writer.PrepareDataOutFile(), DistanceCorrSaveOutFile::FileReady);
    EXPECT_EQ(writer.WriteDataOutFile(), DistanceCorrSaveOutFile::FileReady);
    EXPECT_EQ(writer.Close(), DistanceCorrSaveOutFile::FileClosed);
    EXPECT_TRUE(folderEntries(folder_).empty());
}

TEST_F(SaveFileTest, NoDescriptiveRecordsIsAFailure) {
    requestSave({"x"}, csvPath());
    DistanceCorrSaveOutFile writer(settings_, records_);
    EXPECT_EQ(writer.start(), 1u);
    EXPECT_TRUE(folderEntries(folder_).empty());
}

TEST_F(SaveFileTest, ReplacesAnExistingFile) {
    {
        std::ofstream old(csvPath());
        old << "old contents\n";
    }
    records_.push_back(makeRecord("x", {1.0, 2.0}));
    requestSave({"x"}, csvPath());
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        ASSERT_EQ(writer.start(), 0u);
    }
    auto data = host::loadCsvDataSet(csvPath().string(), schemaPath().string());
    ASSERT_TRUE(data);
    ASSERT_EQ(data->caseCount(), 2u);
    expectDistanceRow(*data, 1, "P2", {1.0, 0.0});
    EXPECT_EQ(folderEntries(folder_),
              (std::vector<std::string>{"distances.csv", "distances.schema.json"}));
}
