#include "ACAProcDataSourceIter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>

#include "ACAInputAdapter.h"
#include "ACAVarValidSpecs.h"
#include "DataTestSupport.h"
#include "HostSession.h"
#include "ProcedureDataSource.h"
#include "Record.h"
#include "data/MemoryDataSet.h"

namespace {

const double kMissing = -std::numeric_limits<double>::max();

host::VariableInfo variable(const std::string& name, int type) {
    host::VariableInfo info;
    info.name = name;
    info.type = type;
    return info;
}

// a (numeric), t (text), b (numeric); three cases, one missing a.
std::shared_ptr<host::MemoryDataSet> smallDataSet() {
    auto data = std::make_shared<host::MemoryDataSet>();
    data->addVariable(variable("a", 0));
    data->addVariable(variable("t", 5));
    data->addVariable(variable("b", 0));
    data->addCase({1.5, 0.0, 10.0}, {"", "one", ""});
    data->addCase({kMissing, 0.0, 20.0}, {"", "two", ""});
    data->addCase({3.5, 0.0, -30.0}, {"", "three", ""});
    return data;
}

std::vector<std::vector<double>> readAll(const MultiPassRecordIter& it) {
    std::vector<std::vector<double>> rows;
    while (it.Next()) {
        const Record* record = it.GetCurrentRecord();
        EXPECT_NE(record, nullptr);
        if (record == nullptr) break;
        rows.emplace_back(record->GetAll(), record->GetAll() + record->Size());
    }
    return rows;
}

class ACAProcDataSourceIterTest : public ::testing::Test {
protected:
    void SetUp() override { host::HostSession::instance().setActiveDataSet(smallDataSet()); }
    void TearDown() override { host::HostSession::instance().setActiveDataSet(nullptr); }
};

}  // namespace

TEST_F(ACAProcDataSourceIterTest, DeliversAllCasesInOrderWithVariablesInTheOrderAdded) {
    ProcedureDataSource source;
    ACAVarValidSpecs specs(true, true, true);
    specs.AddVariable(2, false, true, true, true);
    specs.AddVariable(0, false, true, true, true);
    ACAInputAdapter adapter(&specs, source);
    ACAProcDataSourceIter it(adapter, true);
    EXPECT_EQ(it.GetCurrentRecord(), nullptr);
    const auto rows = readAll(it);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], (std::vector<double>{10.0, 1.5}));
    EXPECT_EQ(rows[1], (std::vector<double>{20.0, kMissing}));
    EXPECT_EQ(rows[2], (std::vector<double>{-30.0, 3.5}));
    EXPECT_FALSE(it.Next());
    EXPECT_EQ(it.GetCurrentRecord(), nullptr);
}

TEST_F(ACAProcDataSourceIterTest, MissingIsExactlyTheMostNegativeFiniteDouble) {
    ProcedureDataSource source;
    ACAVarValidSpecs specs(true, true, true);
    specs.AddVariable(0, false, true, true, true);
    ACAInputAdapter adapter(&specs, source);
    ACAProcDataSourceIter it(adapter, true);
    ASSERT_TRUE(it.Next());
    ASSERT_TRUE(it.Next());
    const double delivered = it.GetCurrentRecord()->GetAll()[0];
    const double expected = -1.7976931348623157e308;
    EXPECT_EQ(std::memcmp(&delivered, &expected, sizeof(double)), 0);
}

TEST_F(ACAProcDataSourceIterTest, TextVariablesDeliverMissing) {
    ProcedureDataSource source;
    ACAVarValidSpecs specs(true, true, true);
    specs.AddVariable(1, false, true, true, true);
    ACAInputAdapter adapter(&specs, source);
    ACAProcDataSourceIter it(adapter, true);
    const auto rows = readAll(it);
    ASSERT_EQ(rows.size(), 3u);
    for (const auto& row : rows) EXPECT_EQ(row, (std::vector<double>{kMissing}));
}

TEST_F(ACAProcDataSourceIterTest, ResetReadsTheSameCasesAgain) {
    ProcedureDataSource source;
    ACAVarValidSpecs specs(true, true, true);
    specs.AddVariable(0, false, true, true, true);
    specs.AddVariable(2, false, true, true, true);
    ACAInputAdapter adapter(&specs, source);
    ACAProcDataSourceIter it(adapter, true);
    const auto first = readAll(it);
    it.Reset();
    EXPECT_EQ(it.GetCurrentRecord(), nullptr);
    EXPECT_EQ(readAll(it), first);
}

TEST_F(ACAProcDataSourceIterTest, TwoIteratorsOverOneSourceSeeTheSameCases) {
    ProcedureDataSource source;
    ACAVarValidSpecs specsA(true, true, true);
    specsA.AddVariable(0, false, true, true, true);
    ACAVarValidSpecs specsB(true, true, true);
    specsB.AddVariable(2, false, true, true, true);
    ACAInputAdapter adapterA(&specsA, source);
    ACAInputAdapter adapterB(&specsB, source);
    ACAProcDataSourceIter a(adapterA, true);
    ACAProcDataSourceIter b(adapterB, true);
    // Case by case the two deliver the same rows of the data set.
    using Rows = std::vector<std::vector<double>>;
    EXPECT_EQ(readAll(a), (Rows{{1.5}, {kMissing}, {3.5}}));
    EXPECT_EQ(readAll(b), (Rows{{10.0}, {20.0}, {-30.0}}));
}

TEST_F(ACAProcDataSourceIterTest, NoVariablesGivesEmptyRecords) {
    ProcedureDataSource source;
    ACAVarValidSpecs specs(true, true, true);
    ACAInputAdapter adapter(&specs, source);
    ACAProcDataSourceIter it(adapter, true);
    ASSERT_TRUE(it.Next());
    EXPECT_EQ(it.GetCurrentRecord()->Size(), 0u);
    EXPECT_EQ(it.GetCurrentRecord()->GetAll(), nullptr);
}

TEST_F(ACAProcDataSourceIterTest, EmptyDataSetHasNoCases) {
    host::HostSession::instance().setActiveDataSet(nullptr);
    ProcedureDataSource source;
    ACAVarValidSpecs specs(true, true, true);
    ACAInputAdapter adapter(&specs, source);
    ACAProcDataSourceIter it(adapter, true);
    EXPECT_FALSE(it.Next());
    EXPECT_EQ(it.GetCurrentRecord(), nullptr);
}

TEST_F(ACAProcDataSourceIterTest, VariableOutsideTheDataSetIsRefused) {
    ProcedureDataSource source;
    ACAVarValidSpecs specs(true, true, true);
    specs.AddVariable(3, false, true, true, true);
    ACAInputAdapter adapter(&specs, source);
    EXPECT_THROW(ACAProcDataSourceIter(adapter, true), std::out_of_range);
}

TEST_F(ACAProcDataSourceIterTest, SpecsKeepTheVariablesInOrder) {
    ACAVarValidSpecs specs(true, true, true);
    specs.AddVariable(4, false, true, true, true);
    specs.AddVariable(1, false, true, true, true);
    EXPECT_EQ(specs.GetVariables(), (std::vector<int>{4, 1}));
    ProcedureDataSource source;
    ACAInputAdapter adapter(&specs, source);
    EXPECT_EQ(adapter.GetSpecs(), &specs);
    EXPECT_EQ(&adapter.GetSource(), &source);
}
