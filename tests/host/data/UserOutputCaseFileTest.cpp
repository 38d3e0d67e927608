#include "UserOutputCaseFile.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include "DataTestSupport.h"
#include "ErrorText.h"
#include "IndependentDataStore.h"
#include "UserCaseFileSpec.h"
#include "VELA_Case.h"
#include "VELA_DataSource.h"
#include "data/CsvDataLoader.h"
#include "data/MemoryDataSet.h"
#include "data/NumberText.h"

using datatest::listFolder;
using datatest::readFile;
using datatest::ScratchFolder;
using datatest::writeFile;
using Names = std::vector<std::string>;

namespace {

const double kMissing = -std::numeric_limits<double>::max();

UserCaseFileSpec specFor(const std::string& path, bool replace = true) {
    UserCaseFileSpec spec;
    spec.Init(path, true, replace);
    return spec;
}

VELA_Variable addVariable(VELA_DataSource& source, const std::string& name, int width) {
    unsigned index = 0;
    VELA_Variable variable = source.MakeVariable(width, &index);
    variable.SetName(name);
    return variable;
}

// The layout the distance procedure writes: a row-name column and one
// column per case, for x = 1, 2.5, 4 (distances |xi - xj|).
void writeDistanceFile(const std::string& path) {
    UserOutputCaseFile file(specFor(path));
    VELA_DataSource& source = *file.DataSource();
    source.SetLabel("Distance Matrix");
    VELA_Variable rowName = addVariable(source, "VarName_", 8);
    rowName.SetFormat(VELA_Format::FormatString, 8, 0);
    rowName.SetWriteFormat(VELA_Format::FormatString, 8, 0);
    rowName.SetMeasurementLevel(1);
    for (int j = 1; j <= 3; ++j) {
        VELA_Variable column = addVariable(source, "P" + std::to_string(j), 0);
        column.SetFormat(VELA_Format::FormatNumeric, 8, 3);
        column.SetWriteFormat(VELA_Format::FormatNumeric, 8, 3);
        column.SetMeasurementLevel(3);
    }
    VELA_ValueLabelMap labels(rowName.GetType());
    labels.AddPair(std::string("P1"), "[x = 1.000]");
    labels.AddPair(std::string("P2"), "[x = 2.500]");
    labels.AddPair(std::string("P3"), "[x = 4.000]");
    rowName.SetValueLabels(labels);
    source.EndDictionary();

    const double x[] = {1.0, 2.5, 4.0};
    std::vector<OBS> buffer(static_cast<std::size_t>(source.ColumnCount()));
    VELA_Case row(source, buffer.data());
    for (int r = 0; r < 3; ++r) {
        row.InitCase();
        const std::string name = "P" + std::to_string(r + 1);
        row.SetColumnValue(0, name.c_str(), 8);  // shorter than 8: ends at its NUL
        for (int j = 0; j < 3; ++j) row.SetColumnValue(j + 1, std::fabs(x[r] - x[j]));
        file.DataStore()->AddCase(row);
    }
    row.InitCase();
    file.DataStore()->AddCase(row);  // a blank case
    source.CloseData();
}

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// Copies a data set into a new file through the platform interface.
void saveThroughInterface(const host::DataSet& data, const std::string& path) {
    UserOutputCaseFile file(specFor(path));
    VELA_DataSource& source = *file.DataSource();
    source.SetLabel(data.label().c_str());
    for (int v = 0; v < data.variableCount(); ++v) {
        const host::VariableInfo& info = data.variable(v);
        VELA_Variable variable = addVariable(source, info.name, info.type);
        variable.SetFormat(info.format.type, info.format.width, info.format.decimals);
        variable.SetWriteFormat(info.writeFormat.type, info.writeFormat.width, info.writeFormat.decimals);
        variable.SetMeasurementLevel(info.measurementLevel);
        if (info.hasLabel) variable.SetLabel(info.label);
        VELA_ValueLabelMap labels(info.type);
        for (const auto& pair : info.valueLabels) labels.AddPair(pair.first, pair.second);
        if (!info.valueLabels.empty()) variable.SetValueLabels(labels);
    }
    source.EndDictionary();
    std::vector<OBS> buffer(static_cast<std::size_t>(source.ColumnCount()));
    VELA_Case dataCase(source, buffer.data());
    int column = 0;
    std::vector<int> firstColumn;
    for (int v = 0; v < data.variableCount(); ++v) {
        firstColumn.push_back(column);
        column += data.variable(v).type == 0 ? 1 : (data.variable(v).type + 7) / 8;
    }
    for (std::size_t c = 0; c < data.caseCount(); ++c) {
        dataCase.InitCase();
        for (int v = 0; v < data.variableCount(); ++v) {
            if (data.variable(v).type == 0) {
                dataCase.SetColumnValue(firstColumn[v], data.numericValue(c, v));
            } else {
                const std::string text = data.textValue(c, v);
                dataCase.SetColumnValue(firstColumn[v], text.c_str(), static_cast<int>(text.size()));
            }
        }
        file.DataStore()->AddCase(dataCase);
    }
    source.CloseData();
}

void expectSameDataSet(const host::DataSet& a, const host::DataSet& b) {
    EXPECT_EQ(a.label(), b.label());
    ASSERT_EQ(a.variableCount(), b.variableCount());
    ASSERT_EQ(a.caseCount(), b.caseCount());
    for (int v = 0; v < a.variableCount(); ++v) {
        const host::VariableInfo& x = a.variable(v);
        const host::VariableInfo& y = b.variable(v);
        EXPECT_EQ(x.name, y.name);
        EXPECT_EQ(x.type, y.type) << x.name;
        EXPECT_EQ(x.label, y.label) << x.name;
        EXPECT_EQ(x.hasLabel, y.hasLabel) << x.name;
        EXPECT_EQ(x.measurementLevel, y.measurementLevel) << x.name;
        EXPECT_EQ(x.format.type, y.format.type) << x.name;
        EXPECT_EQ(x.format.width, y.format.width) << x.name;
        EXPECT_EQ(x.format.decimals, y.format.decimals) << x.name;
        EXPECT_EQ(x.writeFormat.width, y.writeFormat.width) << x.name;
        EXPECT_EQ(x.writeFormat.decimals, y.writeFormat.decimals) << x.name;
        EXPECT_EQ(x.valueLabels, y.valueLabels) << x.name;
        for (std::size_t c = 0; c < a.caseCount(); ++c) {
            if (x.type == 0)
                EXPECT_EQ(bitsOf(a.numericValue(c, v)), bitsOf(b.numericValue(c, v))) << x.name << " case " << c;
            else
                EXPECT_EQ(a.textValue(c, v), b.textValue(c, v)) << x.name << " case " << c;
        }
    }
}

// Lowers the file size limit for one scope, so that writes fail as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &saved_);
        previousHandler_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit lowered = saved_;
        lowered.rlim_cur = bytes;
        active_ = ::setrlimit(RLIMIT_FSIZE, &lowered) == 0;
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, previousHandler_);
    }
    bool active() const { return active_; }

private:
    rlimit saved_{};
    void (*previousHandler_)(int) = nullptr;
    bool active_ = false;
};

class UserOutputCaseFileTest : public ::testing::Test {
protected:
    void SetUp() override { datatest::quietSession(); }

    ScratchFolder folder;
    std::string target = folder.file("out.csv");
    std::string schema = folder.file("out.schema.json");
    const std::string oldData = "old,data\r\n1,2\r\n";
    const std::string oldSchema = "{\"fields\": [{\"name\": \"old\"}, {\"name\": \"data\"}]}";

    void writeOldFiles() {
        writeFile(target, oldData);
        writeFile(schema, oldSchema);
    }
    void expectOldFilesUntouched() {
        EXPECT_EQ(readFile(target), oldData);
        EXPECT_EQ(readFile(schema), oldSchema);
        EXPECT_EQ(listFolder(folder.path()), (Names{"out.csv", "out.schema.json"}));
    }
};

}  // namespace

TEST_F(UserOutputCaseFileTest, WritesDataAndDictionary) {
    writeDistanceFile(target);
    EXPECT_EQ(readFile(target),
              "VarName_,P1,P2,P3\r\n"
              "P1,0,1.5,3\r\n"
              "P2,1.5,0,1.5\r\n"
              "P3,3,1.5,0\r\n"
              ",,,\r\n");
    rapidjson::Document json;
    json.Parse(readFile(schema).c_str());
    ASSERT_FALSE(json.HasParseError());
    EXPECT_STREQ(json["title"].GetString(), "Distance Matrix");
    const auto& fields = json["fields"];
    ASSERT_EQ(fields.Size(), 4u);
    EXPECT_STREQ(fields[0]["name"].GetString(), "VarName_");
    EXPECT_STREQ(fields[0]["type"].GetString(), "string");
    EXPECT_EQ(fields[0]["width"].GetInt(), 8);
    EXPECT_STREQ(fields[0]["measurementLevel"].GetString(), "nominal");
    EXPECT_STREQ(fields[0]["categories"][1]["value"].GetString(), "P2");
    EXPECT_STREQ(fields[0]["categories"][1]["label"].GetString(), "[x = 2.500]");
    EXPECT_STREQ(fields[2]["name"].GetString(), "P2");
    EXPECT_STREQ(fields[2]["type"].GetString(), "number");
    EXPECT_EQ(fields[2]["displayDecimals"].GetInt(), 3);
    EXPECT_STREQ(fields[2]["measurementLevel"].GetString(), "scale");
    EXPECT_FALSE(fields[2].HasMember("title"));
    EXPECT_EQ(listFolder(folder.path()), (Names{"out.csv", "out.schema.json"}));
}

TEST_F(UserOutputCaseFileTest, WrittenFileLoadsBack) {
    writeDistanceFile(target);
    const auto data = host::loadCsvDataSet(target, "");
    EXPECT_EQ(data->label(), "Distance Matrix");
    ASSERT_EQ(data->variableCount(), 4);
    ASSERT_EQ(data->caseCount(), 4u);
    EXPECT_EQ(data->variable(0).type, 8);
    EXPECT_EQ(data->variable(0).measurementLevel, 1);
    EXPECT_EQ(data->variable(3).measurementLevel, 3);
    EXPECT_EQ(data->variable(3).format.decimals, 3);
    EXPECT_EQ(data->textValue(1, 0), "P2");
    EXPECT_EQ(data->numericValue(2, 1), 3.0);
    EXPECT_EQ(data->numericValue(1, 1), 1.5);
    // The blank case: empty text, missing numbers.
    EXPECT_EQ(data->textValue(3, 0), "");
    EXPECT_EQ(data->numericValue(3, 2), kMissing);
    EXPECT_EQ(data->variable(0).valueLabels[2], (std::pair<std::string, std::string>("P3", "[x = 4.000]")));
}

TEST_F(UserOutputCaseFileTest, ExampleDataSetRoundTripsExactly) {
    const auto original = host::loadCsvDataSet(datatest::example("study.csv"), "");
    saveThroughInterface(*original, target);
    const auto copy = host::loadCsvDataSet(target, "");
    expectSameDataSet(*original, *copy);
    // Saving the copy again gives the same bytes.
    const std::string second = folder.file("second.csv");
    saveThroughInterface(*copy, second);
    EXPECT_EQ(readFile(second), readFile(target));
    EXPECT_EQ(readFile(folder.file("second.schema.json")), readFile(schema));
}

TEST_F(UserOutputCaseFileTest, AwkwardValuesRoundTripExactly) {
    auto data = std::make_shared<host::MemoryDataSet>();
    data->setLabel("Label with \"quotes\", commas and ü");
    host::VariableInfo number;
    number.name = "Solar.R";
    number.label = "Line\nbreak";
    number.hasLabel = true;
    number.valueLabels = {{"-0.5", "minus a half"}, {"1e+22", "big"}};
    host::VariableInfo text;
    text.name = "t_1";
    text.type = 20;
    text.measurementLevel = 2;
    text.format = VELA_Format(VELA_Format::FormatString, 20, 0);
    text.writeFormat = text.format;
    text.valueLabels = {{"a,b", "with comma"}};
    data->addVariable(number);
    data->addVariable(text);
    std::mt19937_64 random(99);
    const std::vector<std::string> texts = {"a,b", "say \"hi\"", "two\nlines", " leading blank", "", "ü-umlaut"};
    for (int c = 0; c < 300; ++c) {
        double value = 0.0;
        do {
            const std::uint64_t bits = random();
            std::memcpy(&value, &bits, sizeof value);
        } while (!std::isfinite(value));
        if (c == 0) value = kMissing;
        if (c == 1) value = -0.0;
        if (c == 2) value = std::numeric_limits<double>::denorm_min();
        data->addCase({value, 0.0}, {"", texts[static_cast<std::size_t>(c) % texts.size()]});
    }
    saveThroughInterface(*data, target);
    expectSameDataSet(*data, *host::loadCsvDataSet(target, ""));
}

TEST_F(UserOutputCaseFileTest, NonFiniteNumbersAreWrittenAsMissing) {
    {
        UserOutputCaseFile file(specFor(target));
        VELA_DataSource& source = *file.DataSource();
        addVariable(source, "x", 0);
        source.EndDictionary();
        OBS buffer[1];
        VELA_Case dataCase(source, buffer);
        for (double value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(), 2.0}) {
            dataCase.SetColumnValue(0, value);
            file.DataStore()->AddCase(dataCase);
        }
        source.CloseData();
    }
    // A lone empty cell is quoted so that the line is not taken for a blank one.
    EXPECT_EQ(readFile(target), "x\r\n\"\"\r\n\"\"\r\n\"\"\r\n2\r\n");
    const auto data = host::loadCsvDataSet(target, "");
    ASSERT_EQ(data->caseCount(), 4u);
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(data->numericValue(c, 0), kMissing);
    EXPECT_EQ(data->numericValue(3, 0), 2.0);
}

TEST_F(UserOutputCaseFileTest, DefaultNamesAndAddedExtension) {
    {
        UserOutputCaseFile file(specFor(folder.file("plain")));
        VELA_DataSource& source = *file.DataSource();
        unsigned index = 99;
        source.MakeVariable(0, &index);
        EXPECT_EQ(index, 0u);
        source.MakeVariable(3, &index);
        EXPECT_EQ(index, 1u);
        EXPECT_EQ(source.GetVariable(0).GetName(), "VAR00001");
        EXPECT_EQ(source.GetVariable(1).GetName(), "VAR00002");
        EXPECT_EQ(source.GetVariable(1).GetMeasurementLevel(), 1);
        EXPECT_EQ(source.GetVariable(0).GetMeasurementLevel(), 3);
        source.CloseData();  // ends the dictionary itself
    }
    EXPECT_EQ(listFolder(folder.path()), (Names{"plain.csv", "plain.schema.json"}));
    EXPECT_EQ(readFile(folder.file("plain.csv")), "VAR00001,VAR00002\r\n");
}

TEST_F(UserOutputCaseFileTest, NewFilesGetTheUsualPermissions) {
    writeDistanceFile(target);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    struct stat info {};
    ASSERT_EQ(::stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0666 & ~mask);
}

TEST_F(UserOutputCaseFileTest, ReplacesAnExistingFileWhenComplete) {
    writeOldFiles();
    writeDistanceFile(target);
    EXPECT_EQ(readFile(target).substr(0, 17), "VarName_,P1,P2,P3");
    EXPECT_EQ(listFolder(folder.path()), (Names{"out.csv", "out.schema.json"}));
}

TEST_F(UserOutputCaseFileTest, FileThatIsNotClosedLeavesNothingBehind) {
    writeOldFiles();
    {
        UserOutputCaseFile file(specFor(target));
        addVariable(*file.DataSource(), "x", 0);
        file.DataSource()->EndDictionary();
        EXPECT_EQ(listFolder(folder.path()).size(), 4u);  // the two temporary files
    }
    expectOldFilesUntouched();
}

// ---- failures: a clear error, the old file untouched, no stray file ----

TEST_F(UserOutputCaseFileTest, FolderWithTheTargetNameIsRefused) {
    ASSERT_EQ(::mkdir(target.c_str(), 0755), 0);
    try {
        UserOutputCaseFile file(specFor(target));
        FAIL() << "no error";
    } catch (const ErrorText& e) {
        EXPECT_EQ(e.GetText(), "Cannot write the data file \"" + target + "\": a folder of that name exists.");
    }
    EXPECT_EQ(datatest::errorTexts(),
              (Names{"Cannot write the data file \"" + target + "\": a folder of that name exists."}));
    EXPECT_EQ(listFolder(folder.path()), (Names{"out.csv"}));
    EXPECT_TRUE(listFolder(target).empty());
}

TEST_F(UserOutputCaseFileTest, FolderWithTheDictionaryNameIsRefused) {
    writeFile(target, oldData);
    ASSERT_EQ(::mkdir(schema.c_str(), 0755), 0);
    EXPECT_THROW(UserOutputCaseFile file(specFor(target)), ErrorText);
    EXPECT_EQ(datatest::errorTexts(), (Names{"Cannot write the dictionary \"" + schema + "\" of the data file \"" +
                                             target + "\": a folder of that name exists."}));
    EXPECT_EQ(readFile(target), oldData);
    EXPECT_EQ(listFolder(folder.path()), (Names{"out.csv", "out.schema.json"}));
}

TEST_F(UserOutputCaseFileTest, ParentThatIsAFileIsReported) {
    const std::string parent = folder.file("file.txt");
    writeFile(parent, "x");
    const std::string path = parent + "/out.csv";
    try {
        UserOutputCaseFile file(specFor(path));
        FAIL() << "no error";
    } catch (const ErrorText& e) {
        EXPECT_EQ(e.GetText(), "Cannot write the data file \"" + path + "\": cannot create a file in the folder \"" +
                                   parent + "\": Not a directory.");
    }
    EXPECT_EQ(readFile(parent), "x");
    EXPECT_EQ(listFolder(folder.path()), (Names{"file.txt"}));
}

TEST_F(UserOutputCaseFileTest, MissingFolderIsReported) {
    const std::string path = folder.file("nofolder/out.csv");
    try {
        UserOutputCaseFile file(specFor(path));
        FAIL() << "no error";
    } catch (const ErrorText& e) {
        EXPECT_EQ(e.GetText(), "Cannot write the data file \"" + path + "\": cannot create a file in the folder \"" +
                                   folder.file("nofolder") + "\": No such file or directory.");
    }
    EXPECT_TRUE(listFolder(folder.path()).empty());
}

TEST_F(UserOutputCaseFileTest, FolderWhereNothingCanBeCreatedIsReported) {
    const std::string path = "/proc/distcorr-data-test.csv";
    try {
        UserOutputCaseFile file(specFor(path));
        FAIL() << "no error";
    } catch (const ErrorText& e) {
        const std::string prefix =
            "Cannot write the data file \"" + path + "\": cannot create a file in the folder \"/proc\": ";
        EXPECT_EQ(e.GetText().substr(0, prefix.size()), prefix);
        EXPECT_GT(e.GetText().size(), prefix.size() + 1);
    }
    EXPECT_FALSE(datatest::pathExists(path));
}

TEST_F(UserOutputCaseFileTest, ReadOnlyFolderKeepsTheOldFile) {
    if (::geteuid() == 0) GTEST_SKIP() << "root writes into read-only folders; the other failure tests cover this";
    writeOldFiles();
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    EXPECT_THROW(writeDistanceFile(target), ErrorText);
    ::chmod(folder.path().c_str(), 0755);
    expectOldFilesUntouched();
    ASSERT_EQ(datatest::errorTexts().size(), 1u);
    EXPECT_NE(datatest::errorTexts()[0].find("Permission denied"), std::string::npos);
}

TEST_F(UserOutputCaseFileTest, FullDiskKeepsTheOldFileAndLeavesNoTemporaryFile) {
    writeOldFiles();
    std::string error;
    {
        FileSizeLimit limit(2000);
        if (!limit.active()) GTEST_SKIP() << "cannot lower the file size limit";
        try {
            UserOutputCaseFile file(specFor(target));
            VELA_DataSource& source = *file.DataSource();
            addVariable(source, "a", 0);
            addVariable(source, "b", 0);
            source.EndDictionary();
            OBS buffer[2];
            VELA_Case dataCase(source, buffer);
            for (int c = 0; c < 2000; ++c) {
                dataCase.SetColumnValue(0, 1.0 / (c + 3));
                dataCase.SetColumnValue(1, c * 1000.5);
                file.DataStore()->AddCase(dataCase);
            }
            source.CloseData();
        } catch (const ErrorText& e) {
            error = e.GetText();
        }
    }
    EXPECT_EQ(error, "Cannot write the data file \"" + target + "\": cannot write \"" + target + "\": File too large.");
    expectOldFilesUntouched();
}

TEST_F(UserOutputCaseFileTest, FailedDictionaryPlacementPutsTheOldDataBack) {
    writeFile(target, oldData);
    std::string error;
    try {
        UserOutputCaseFile file(specFor(target));
        VELA_DataSource& source = *file.DataSource();
        addVariable(source, "x", 0);
        source.EndDictionary();
        OBS value = 5.0;
        VELA_Case dataCase(source, &value);
        file.DataStore()->AddCase(dataCase);
        // Something takes the dictionary's name before the file is closed.
        ASSERT_EQ(::mkdir(schema.c_str(), 0755), 0);
        source.CloseData();
    } catch (const ErrorText& e) {
        error = e.GetText();
    }
    EXPECT_EQ(error,
              "Cannot write the dictionary \"" + schema + "\": cannot replace \"" + schema + "\": Is a directory.");
    EXPECT_EQ(readFile(target), oldData);
    EXPECT_EQ(listFolder(folder.path()), (Names{"out.csv", "out.schema.json"}));
}

TEST_F(UserOutputCaseFileTest, FailedPlacementWithoutOldFileLeavesNoData) {
    std::string error;
    try {
        UserOutputCaseFile file(specFor(target));
        VELA_DataSource& source = *file.DataSource();
        addVariable(source, "x", 0);
        ASSERT_EQ(::mkdir(schema.c_str(), 0755), 0);
        source.CloseData();
    } catch (const ErrorText& e) {
        error = e.GetText();
    }
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(listFolder(folder.path()), (Names{"out.schema.json"}));
}

TEST_F(UserOutputCaseFileTest, ExistingFileIsKeptWhenReplacingIsNotAllowed) {
    writeOldFiles();
    EXPECT_THROW(UserOutputCaseFile file(specFor(target, false)), ErrorText);
    EXPECT_EQ(datatest::errorTexts(), (Names{"The data file \"" + target + "\" already exists."}));
    expectOldFilesUntouched();
}

TEST_F(UserOutputCaseFileTest, UninitialisedSpecificationIsRefused) {
    UserCaseFileSpec spec;
    EXPECT_FALSE(spec.IsInit());
    EXPECT_THROW(UserOutputCaseFile file(spec), ErrorText);
    spec.Init("", true, true);
    EXPECT_FALSE(spec.IsInit());
    EXPECT_THROW(UserOutputCaseFile file(spec), ErrorText);
    EXPECT_EQ(datatest::errorTexts().at(0), "No file name was given for the new data file.");
}

TEST_F(UserOutputCaseFileTest, OperationsOutOfOrderAreRefused) {
    UserOutputCaseFile file(specFor(target));
    VELA_DataSource& source = *file.DataSource();
    VELA_Variable x = addVariable(source, "x", 0);
    OBS value = 1.0;
    VELA_Case dataCase(source, &value);
    EXPECT_THROW(file.DataStore()->AddCase(dataCase), ErrorText);
    source.EndDictionary();
    EXPECT_THROW(source.MakeVariable(0, nullptr), ErrorText);
    EXPECT_THROW(x.SetName("y"), ErrorText);
    EXPECT_THROW(source.SetLabel("late"), ErrorText);
    EXPECT_EQ(datatest::errorTexts().at(0),
              "Cannot add a case to the data file \"" + target + "\" before its dictionary is complete.");
    EXPECT_EQ(datatest::errorTexts().at(2),
              "Cannot change a variable of the data file \"" + target + "\": its dictionary is already complete.");
    file.DataStore()->AddCase(dataCase);
    source.CloseData();
    EXPECT_NO_THROW(source.CloseData());
    EXPECT_THROW(file.DataStore()->AddCase(dataCase), ErrorText);
    EXPECT_EQ(readFile(target), "x\r\n1\r\n");
}

TEST_F(UserOutputCaseFileTest, AfterAFailureEverythingIsRefused) {
    UserOutputCaseFile file(specFor(target));
    VELA_DataSource& source = *file.DataSource();
    addVariable(source, "x", 0);
    addVariable(source, "X", 0);
    EXPECT_THROW(source.EndDictionary(), ErrorText);
    EXPECT_EQ(datatest::errorTexts().at(0), "The data file \"" + target + "\" has two variables named \"X\".");
    EXPECT_THROW(source.CloseData(), ErrorText);
    EXPECT_EQ(datatest::errorTexts().at(1),
              "The data file \"" + target + "\" was not written because of an earlier error.");
    EXPECT_TRUE(listFolder(folder.path()).empty());
}

TEST_F(UserOutputCaseFileTest, CaseOfAnotherSourceIsRefused) {
    UserOutputCaseFile file(specFor(target));
    UserOutputCaseFile other(specFor(folder.file("other.csv")));
    addVariable(*file.DataSource(), "x", 0);
    addVariable(*other.DataSource(), "x", 0);
    file.DataSource()->EndDictionary();
    other.DataSource()->EndDictionary();
    OBS value = 1.0;
    VELA_Case foreign(*other.DataSource(), &value);
    EXPECT_THROW(file.DataStore()->AddCase(foreign), ErrorText);
}

TEST_F(UserOutputCaseFileTest, VariableSettersCheckTheirValues) {
    UserOutputCaseFile file(specFor(target));
    VELA_DataSource& source = *file.DataSource();
    VELA_Variable number = addVariable(source, "n", 0);
    VELA_Variable text = addVariable(source, "t", 4);
    EXPECT_THROW(number.SetName("two words"), ErrorText);
    EXPECT_THROW(number.SetFormat(VELA_Format::FormatString, 8, 0), ErrorText);
    EXPECT_THROW(number.SetFormat(VELA_Format::FormatNumeric, 8, 8), ErrorText);
    EXPECT_THROW(number.SetWriteFormat(VELA_Format::FormatNumeric, 0, 0), ErrorText);
    EXPECT_THROW(text.SetFormat(VELA_Format::FormatNumeric, 8, 2), ErrorText);
    EXPECT_THROW(text.SetMeasurementLevel(3), ErrorText);
    EXPECT_THROW(number.SetMeasurementLevel(4), ErrorText);
    EXPECT_THROW(number.SetValueLabels(VELA_ValueLabelMap(4)), ErrorText);
    VELA_ValueLabelMap tooLong(8);
    tooLong.AddPair(std::string("abcdefgh"), "x");
    EXPECT_THROW(text.SetValueLabels(tooLong), ErrorText);
    EXPECT_THROW(source.MakeVariable(-1, nullptr), ErrorText);
    EXPECT_EQ(datatest::errorTexts().at(0),
              "Cannot name a variable \"two words\": a variable name may hold only letters, digits, '.', '_', '$', "
              "'#' and '@'.");
    EXPECT_EQ(datatest::errorTexts().at(5), "Cannot make the text variable \"t\" a scale variable.");
    // Nothing was changed by the refused calls.
    EXPECT_EQ(number.GetName(), "n");
    EXPECT_EQ(number.GetFormat().width, 8);
    EXPECT_EQ(number.GetFormat().decimals, 2);
    EXPECT_EQ(text.GetMeasurementLevel(), 1);
    number.SetLabel("Number");
    EXPECT_STREQ(number.GetLabel(), "Number");
    number.SetLabel("");
    EXPECT_EQ(number.GetLabel(), nullptr);
}
