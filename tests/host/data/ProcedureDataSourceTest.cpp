#include "ProcedureDataSource.h"

#include <gtest/gtest.h>

#include <cstring>

#include "DataTestSupport.h"
#include "ErrorText.h"
#include "HostSession.h"
#include "data/CsvDataLoader.h"
#include "data/MemoryDataSet.h"

namespace {

class ProcedureDataSourceTest : public ::testing::Test {
protected:
    void SetUp() override { datatest::quietSession(); }
    void TearDown() override { host::HostSession::instance().setActiveDataSet(nullptr); }

    void activate(const std::string& fixtureName) {
        host::HostSession::instance().setActiveDataSet(host::loadCsvDataSet(datatest::fixture(fixtureName), ""));
    }
};

}  // namespace

TEST_F(ProcedureDataSourceTest, WithoutActiveDataSetItIsEmpty) {
    host::HostSession::instance().setActiveDataSet(nullptr);
    ProcedureDataSource source;
    EXPECT_EQ(source.ColumnCount(), 0);
    EXPECT_EQ(source.VariableCount(), 0);
    EXPECT_FALSE(source.GetVariable(0));
    ASSERT_NE(host::dataSetOf(source), nullptr);
    EXPECT_EQ(host::dataSetOf(source)->caseCount(), 0u);
}

TEST_F(ProcedureDataSourceTest, SeesTheActiveDataSet) {
    activate("airquality.csv");
    ProcedureDataSource source;
    EXPECT_EQ(host::dataSetOf(source), host::HostSession::instance().activeDataSet());
    EXPECT_EQ(source.VariableCount(), 6);
    EXPECT_EQ(source.ColumnCount(), 6);
    EXPECT_EQ(source.GetLabel(), "New York air quality, May 1973 (first days)");
    const VELA_Variable solar = source.GetVariable(1);
    ASSERT_TRUE(solar);
    EXPECT_EQ(solar.GetName(), "Solar.R");
    ASSERT_NE(solar.GetLabel(), nullptr);
    EXPECT_STREQ(solar.GetLabel(), "Solar radiation (lang)");
    EXPECT_EQ(solar.GetMeasurementLevel(), 3);
    EXPECT_EQ(solar.GetType(), 0);
    const VELA_Variable month = source.GetVariable(4);
    EXPECT_EQ(month.GetLabel(), nullptr);  // no title in the schema
    EXPECT_EQ(month.GetMeasurementLevel(), 2);
    EXPECT_EQ(month.GetFormat().decimals, 0);
}

TEST_F(ProcedureDataSourceTest, OutOfRangeVariableRefersToNone) {
    activate("airquality.csv");
    ProcedureDataSource source;
    for (int index : {-1, 6, 1000}) {
        const VELA_Variable none = source.GetVariable(index);
        EXPECT_FALSE(none);
        EXPECT_EQ(none.GetName(), "");
        EXPECT_EQ(none.GetLabel(), nullptr);
        EXPECT_EQ(none.GetValueLabels().Size(), 0);
    }
}

TEST_F(ProcedureDataSourceTest, ValueLabelsAndTextVariables) {
    host::HostSession::instance().setActiveDataSet(host::loadCsvDataSet(datatest::example("study.csv"), ""));
    ProcedureDataSource source;
    const VELA_Variable year = source.GetVariable(3);
    EXPECT_EQ(year.GetName(), "year");
    EXPECT_EQ(year.GetMeasurementLevel(), 2);
    const VELA_ValueLabelMap labels = year.GetValueLabels();
    EXPECT_EQ(labels.GetType(), 0);
    ASSERT_EQ(labels.Size(), 4);
    EXPECT_EQ(labels.GetPairs()[0], (std::pair<std::string, std::string>("1", "First year")));
    const VELA_Variable major = source.GetVariable(1);
    EXPECT_EQ(major.GetType(), 16);  // "Computer Science"
    EXPECT_EQ(major.GetMeasurementLevel(), 1);
    // 8 numeric variables and a 16-byte text variable in two columns.
    EXPECT_EQ(source.ColumnCount(), 10);
}

TEST_F(ProcedureDataSourceTest, CopiesShareTheDataSet) {
    activate("airquality.csv");
    ProcedureDataSource source;
    const VELA_DataSource copy = source;
    EXPECT_EQ(host::dataSetOf(copy), host::dataSetOf(source));
    const VELA_Variable variable = copy.GetVariable(0);
    const VELA_Variable again = variable;
    EXPECT_EQ(again.GetName(), "Ozone");
}

TEST_F(ProcedureDataSourceTest, KeepsItsDataSetWhenTheActiveOneChanges) {
    activate("airquality.csv");
    ProcedureDataSource source;
    activate("inferred.csv");
    EXPECT_EQ(source.VariableCount(), 6);
    EXPECT_EQ(ProcedureDataSource().VariableCount(), 3);
}

TEST_F(ProcedureDataSourceTest, ActiveDataSetCannotBeChanged) {
    activate("airquality.csv");
    ProcedureDataSource source;
    VELA_Variable ozone = source.GetVariable(0);
    EXPECT_THROW(ozone.SetName("O3"), ErrorText);
    EXPECT_THROW(ozone.SetMeasurementLevel(1), ErrorText);
    EXPECT_THROW(source.SetLabel("x"), ErrorText);
    EXPECT_THROW(source.MakeVariable(0, nullptr), ErrorText);
    EXPECT_THROW(source.EndDictionary(), ErrorText);
    EXPECT_NO_THROW(source.CloseData());
    EXPECT_EQ(ozone.GetName(), "Ozone");
    const auto errors = datatest::errorTexts();
    ASSERT_EQ(errors.size(), 5u);
    EXPECT_EQ(errors[0], "Cannot rename variable \"Ozone\": the active data set cannot be changed.");
    EXPECT_EQ(errors[3], "Cannot add a variable: the active data set cannot be changed.");
}
