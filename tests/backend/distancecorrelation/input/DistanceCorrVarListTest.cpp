// The variable list, the data-access object and the factory that builds the
// host chain behind them.
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DistanceCorrVarList.h"
#include "InputStageRun.h"
#include "MultiPassRecordIter.h"
#include "Record.h"

using ::testing::ElementsAre;

TEST(AlgorithmVarListTest, StartsEmptyWithoutWeight) {
    AlgorithmVarList list;
    EXPECT_EQ(list.Size(), 0);
    EXPECT_EQ(list.GetFreqWeightIndex(), -1);
}

TEST(AlgorithmVarListTest, AddReturnsPositionsAndKeepsKinds) {
    AlgorithmVarList list;
    EXPECT_EQ(list.AddContVar("x", "Height"), 0);
    EXPECT_EQ(list.AddCatVar("group", "Group", 2, true), 1);
    EXPECT_EQ(list.AddCatVar("grade", "School grade", 3, false), 2);
    EXPECT_EQ(list.Size(), 3);

    EXPECT_EQ(list.GetMeasLevel(0), 0);
    EXPECT_EQ(list.GetMeasLevel(1), 1);
    EXPECT_EQ(list.GetMeasLevel(2), 2);
    EXPECT_FALSE(list.IsCatVar(0));
    EXPECT_TRUE(list.IsCatVar(1));
    EXPECT_TRUE(list.IsCatVar(2));
    EXPECT_EQ(list.GetNumCatLevels(0), 0);
    EXPECT_EQ(list.GetNumCatLevels(1), 2);
    EXPECT_EQ(list.GetNumCatLevels(2), 3);
    EXPECT_EQ(list.GetVariableName(2), "grade");
    EXPECT_EQ(list.GetVariableLabel(2), "School grade");
}

TEST(AlgorithmVarListTest, FindVariableMatchesTheExactName) {
    AlgorithmVarList list;
    list.AddContVar("x", "x");
    list.AddContVar("y", "y");
    EXPECT_EQ(list.FindVariable("y"), 1);
    EXPECT_EQ(list.FindVariable("X"), -1);
    EXPECT_EQ(list.FindVariable("w"), -1);
}

TEST(AlgorithmVarListTest, WeightVariableIsAddedOnceThenOverwritten) {
    AlgorithmVarList list;
    list.AddContVar("x", "x");
    EXPECT_EQ(list.SetWeightVar("w", "Weight"), 1);
    EXPECT_EQ(list.GetFreqWeightIndex(), 1);
    EXPECT_EQ(list.SetWeightVar("v", "Other weight"), 1);
    EXPECT_EQ(list.Size(), 2);
    EXPECT_EQ(list.GetVariableName(1), "v");
    EXPECT_EQ(list.GetVariableLabel(1), "Other weight");
    EXPECT_EQ(list.GetMeasLevel(1), 0);
}

TEST(AlgorithmVarListTest, CopiesCarryVariablesAndWeight) {
    AlgorithmVarList list;
    list.AddCatVar("g", "G", 4, true);
    list.SetWeightVar("w", "W");
    AlgorithmVarList copy(list);
    AlgorithmVarList assigned;
    assigned = list;
    for (const AlgorithmVarList* l : {&copy, &assigned}) {
        EXPECT_EQ(l->Size(), 2);
        EXPECT_EQ(l->GetFreqWeightIndex(), 1);
        EXPECT_EQ(l->GetNumCatLevels(0), 4);
    }
}

TEST(AlgorithmVarListTest, DisplayShowsEveryKindAndTheWeight) {
    AlgorithmVarList list;
    list.AddContVar("x", "Height");
    list.AddCatVar("group", "Group", 2, true);
    list.AddCatVar("grade", "School grade", 3, false);
    list.SetWeightVar("w", "Weight");
    std::ostringstream out;
    list.Display(out);
    // A nominal variable also shows the ordinal and continuous words, an
    // ordinal one the continuous word.
    EXPECT_EQ(out.str(),
              "Start Variable List Display\n\n"
              "Variable 0, name x, label Height, continuous\n"
              "Variable 1, name group, label Group, nominal, 2 levels, ordinal, 2 levels, continuous\n"
              "Variable 2, name grade, label School grade, ordinal, 3 levels, continuous\n"
              "Variable 3, name w, label Weight, continuous, Frequency Weight\n"
              "Frequency Weight Variable Index = 3\n"
              "\nEnd Variable List Display\n");
}

TEST(AlgorithmVarListTest, DisplayWithoutWeight) {
    AlgorithmVarList list;
    list.AddContVar("a", "A");
    std::ostringstream out;
    list.Display(out);
    EXPECT_EQ(out.str(),
              "Start Variable List Display\n\n"
              "Variable 0, name a, label A, continuous\n"
              "Frequency Weight is not defined\n"
              "\nEnd Variable List Display\n");
}

TEST(AlgorithmVarListDeathTest, EmptyNameEndsTheProcess) {
    AlgorithmVarList list;
    EXPECT_DEATH(list.AddContVar("", "label"),
                 "Assertion failed in AddContVar \\(backend/distancecorrelation/source/"
                 "DistanceCorrVarList\\): false");
    EXPECT_DEATH(list.AddCatVar("", "label", 2, true),
                 "Assertion failed in AddCatVar \\(backend/distancecorrelation/source/"
                 "DistanceCorrVarList\\): false");
}

TEST(AlgorithmVarListDeathTest, RepeatedNameEndsTheProcess) {
    AlgorithmVarList list;
    list.AddContVar("x", "x");
    EXPECT_DEATH(list.AddContVar("x", "again"), "Assertion failed in AddContVar .*: false");
    EXPECT_DEATH(list.AddCatVar("x", "again", 2, false), "Assertion failed in AddCatVar .*: false");
}

TEST(AlgorithmVarListDeathTest, FindingAnEmptyNameEndsTheProcess) {
    AlgorithmVarList list;
    EXPECT_DEATH(list.FindVariable(""),
                 "Assertion failed in FindVariable \\(backend/distancecorrelation/source/"
                 "DistanceCorrVarList\\): varName.length\\(\\)>0");
}

class AlgoDataAccessFactoryTest : public ::testing::Test {
protected:
    void SetUp() override {
        useDataSet("mixed");
        host::HostSession::instance().beginCommand(host::CommandText{"", "test", 1});
    }
};

TEST_F(AlgoDataAccessFactoryTest, DescribesTheRequestedVariablesFromTheDictionary) {
    ProcedureDataSource source;
    AlgoDataAccessFactory factory;
    // x, grade, group, z; index 99 lies beyond the data set and is skipped.
    std::vector<int> indices{0, 3, 4, 99, 2};
    AlgoDataAccess* access = factory.getAlgoDataAccess(indices, &source, true, true, true);
    ASSERT_NE(access, nullptr);
    const AlgorithmVarList* vars = access->GetDataModel();
    ASSERT_NE(vars, nullptr);
    ASSERT_EQ(vars->Size(), 4);
    EXPECT_EQ(vars->GetVariableName(0), "x");
    EXPECT_EQ(vars->GetVariableLabel(0), "Height (cm)");
    EXPECT_EQ(vars->GetMeasLevel(0), 0);
    EXPECT_EQ(vars->GetVariableName(1), "grade");
    EXPECT_EQ(vars->GetMeasLevel(1), 2);
    EXPECT_EQ(vars->GetNumCatLevels(1), 3);
    EXPECT_EQ(vars->GetVariableName(2), "group");
    EXPECT_EQ(vars->GetMeasLevel(2), 1);
    EXPECT_EQ(vars->GetNumCatLevels(2), 2);
    EXPECT_EQ(vars->GetVariableLabel(3), "z");  // no label: the name
    EXPECT_EQ(vars->GetFreqWeightIndex(), -1);
}

TEST_F(AlgoDataAccessFactoryTest, IteratorDeliversTheRequestedValuesCaseByCase) {
    ProcedureDataSource source;
    AlgoDataAccessFactory factory;
    std::vector<int> indices{5, 1};
    AlgoDataAccess* access = factory.getAlgoDataAccess(indices, &source, true, true, true);
    ASSERT_NE(access, nullptr);
    const MultiPassRecordIter* it = access->GetRecordIterator();
    ASSERT_NE(it, nullptr);
    std::vector<std::vector<double>> rows;
    while (it->Next()) {
        const Record* r = it->GetCurrentRecord();
        ASSERT_NE(r, nullptr);
        rows.emplace_back(r->GetAll(), r->GetAll() + r->Size());
    }
    EXPECT_THAT(rows, ElementsAre(ElementsAre(101.0, 10.0), ElementsAre(102.0, kMissing),
                                  ElementsAre(103.0, 30.0), ElementsAre(104.0, kMissing),
                                  ElementsAre(105.0, 50.0)));
}

TEST_F(AlgoDataAccessFactoryTest, SecondRequestReturnsTheFirstAccessObject) {
    ProcedureDataSource source;
    AlgoDataAccessFactory factory;
    std::vector<int> first{0, 1};
    std::vector<int> second{2};
    AlgoDataAccess* a = factory.getAlgoDataAccess(first, &source, true, true, true);
    AlgoDataAccess* b = factory.getAlgoDataAccess(second, &source, false, false, false);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a, b);
    EXPECT_EQ(b->GetDataModel()->Size(), 2);
    EXPECT_EQ(b->GetDataModel()->GetVariableName(1), "y");
}

TEST_F(AlgoDataAccessFactoryTest, NoSourceGivesNoAccess) {
    AlgoDataAccessFactory factory;
    std::vector<int> indices{0};
    EXPECT_EQ(factory.getAlgoDataAccess(indices, nullptr, true, true, true), nullptr);
}

TEST(AlgorithmVarListTest, FindVariableGivesTheFirstElementAfterTheWeightIsReplaced) {
    AlgorithmVarList list;
    EXPECT_EQ(list.AddContVar("a", "A"), 0);
    EXPECT_EQ(list.SetWeightVar("x", "X"), 1);
    EXPECT_EQ(list.AddContVar("y", "Y"), 2);
    // The weight may take a name that is already in the list: the first one counts.
    list.SetWeightVar("y", "Y");
    EXPECT_EQ(list.FindVariable("y"), 1);
    EXPECT_EQ(list.FindVariable("x"), -1);
    list.SetWeightVar("z", "Z");
    EXPECT_EQ(list.FindVariable("y"), 2);
    EXPECT_EQ(list.FindVariable("z"), 1);
    EXPECT_EQ(list.FindVariable("a"), 0);
    const AlgorithmVarList copy(list);
    EXPECT_EQ(copy.FindVariable("y"), 2);
}
