#include "VELA_Case.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "DataTestSupport.h"
#include "ErrorText.h"
#include "IndependentDataStore.h"
#include "UserCaseFileSpec.h"
#include "UserOutputCaseFile.h"
#include "VELA_DataSource.h"
#include "data/CsvDataLoader.h"

namespace {

const double kMissing = -std::numeric_limits<double>::max();

std::string bytesAt(const OBS* buffer, int column, std::size_t count) {
    return std::string(reinterpret_cast<const char*>(buffer + column), count);
}

// Columns: 0 text(8), 1 numeric, 2-3 text(12), 4 numeric.
class VELA_CaseTest : public ::testing::Test {
protected:
    void SetUp() override {
        datatest::quietSession();
        UserCaseFileSpec spec;
        spec.Init(folder.file("case.csv"), true, true);
        file = std::make_unique<UserOutputCaseFile>(spec);
        VELA_DataSource& source = *file->DataSource();
        unsigned index = 0;
        source.MakeVariable(8, &index).SetName("name");
        source.MakeVariable(0, &index).SetName("x");
        source.MakeVariable(12, &index).SetName("long_text");
        source.MakeVariable(0, &index).SetName("y");
        source.EndDictionary();
    }

    datatest::ScratchFolder folder;
    std::unique_ptr<UserOutputCaseFile> file;
    OBS buffer[5] = {1, 2, 3, 4, 5};
};

}  // namespace

TEST_F(VELA_CaseTest, TextWiderThanEightBytesTakesMoreColumns) { EXPECT_EQ(file->DataSource()->ColumnCount(), 5); }

TEST_F(VELA_CaseTest, InitCaseBlanksEveryColumn) {
    VELA_Case dataCase(*file->DataSource(), buffer);
    dataCase.InitCase();
    EXPECT_EQ(bytesAt(buffer, 0, 8), std::string(8, ' '));
    EXPECT_EQ(buffer[1], kMissing);
    EXPECT_EQ(bytesAt(buffer, 2, 16), std::string(16, ' '));
    EXPECT_EQ(buffer[4], kMissing);
    EXPECT_EQ(dataCase.GetObsPointer(), buffer);
}

TEST_F(VELA_CaseTest, TextIsPaddedCutAndEndsAtNul) {
    VELA_Case dataCase(*file->DataSource(), buffer);
    dataCase.InitCase();
    dataCase.SetColumnValue(0, "P1", 8);
    EXPECT_EQ(bytesAt(buffer, 0, 8), "P1      ");
    dataCase.SetColumnValue(0, "ABCDEFGHIJ", 10);
    EXPECT_EQ(bytesAt(buffer, 0, 8), "ABCDEFGH");
    dataCase.SetColumnValue(0, "xyz", 2);
    EXPECT_EQ(bytesAt(buffer, 0, 8), "xy      ");
    dataCase.SetColumnValue(2, "hello world!", 12);
    EXPECT_EQ(bytesAt(buffer, 2, 16), "hello world!    ");
    dataCase.SetColumnValue(0, nullptr, 5);
    EXPECT_EQ(bytesAt(buffer, 0, 8), std::string(8, ' '));
}

TEST_F(VELA_CaseTest, NumbersGoToTheirColumn) {
    VELA_Case dataCase(*file->DataSource(), buffer);
    dataCase.SetColumnValue(1, 2.5);
    dataCase.SetColumnValue(4, -7.0);
    EXPECT_EQ(buffer[1], 2.5);
    EXPECT_EQ(buffer[4], -7.0);
}

TEST_F(VELA_CaseTest, WrongColumnsAreRefused) {
    VELA_Case dataCase(*file->DataSource(), buffer);
    EXPECT_THROW(dataCase.SetColumnValue(3, "x", 1), ErrorText);  // inside the long text
    EXPECT_THROW(dataCase.SetColumnValue(1, "x", 1), ErrorText);
    EXPECT_THROW(dataCase.SetColumnValue(0, 1.0), ErrorText);
    EXPECT_THROW(dataCase.SetColumnValue(5, 1.0), ErrorText);
    EXPECT_THROW(dataCase.SetColumnValue(-1, 1.0), ErrorText);
    EXPECT_EQ(datatest::errorTexts().at(0), "Cannot set column 3 of a case: no variable starts there.");
    EXPECT_EQ(buffer[1], 2.0);
}

TEST_F(VELA_CaseTest, CasesReachTheFile) {
    VELA_Case dataCase(*file->DataSource(), buffer);
    dataCase.InitCase();
    dataCase.SetColumnValue(0, "P1", 8);
    dataCase.SetColumnValue(1, 0.25);
    dataCase.SetColumnValue(2, "a, \"quoted\"", 11);
    file->DataStore()->AddCase(dataCase);
    dataCase.InitCase();
    file->DataStore()->AddCase(dataCase);
    file->DataSource()->CloseData();
    EXPECT_EQ(datatest::readFile(folder.file("case.csv")),
              "name,x,long_text,y\r\nP1,0.25,\"a, \"\"quoted\"\"\",\r\n,,,\r\n");
    const auto data = host::loadCsvDataSet(folder.file("case.csv"), "");
    EXPECT_EQ(data->textValue(0, 2), "a, \"quoted\"");
    EXPECT_EQ(data->numericValue(1, 1), kMissing);
    EXPECT_EQ(data->variable(2).type, 12);
}
