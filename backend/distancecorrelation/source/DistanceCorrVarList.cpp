#include "DistanceCorrVarList.h"

#include <cstdlib>
#include <iostream>

#include "ACAInputAdapter.h"
#include "ACAProcDataSourceIter.h"
#include "ACAVarValidSpecs.h"
#include "ProcedureDataSource.h"
#include "VELA_Variable.h"

namespace {

// A broken variable list is a programming error: say where and stop.
[[noreturn]] void varListAssertFailed(const char* function, const char* expression) {
    std::cerr << "Assertion failed in " << function
              << " (backend/distancecorrelation/source/DistanceCorrVarList): " << expression
              << std::endl;
    std::abort();
}

}  // namespace

#define VARLIST_ASSERT(function, expression) \
    ((expression) ? static_cast<void>(0) : varListAssertFailed(function, #expression))

AlgorithmVarList::AlgorithmVarList() : freqWeightIndex_(-1) {}

AlgorithmVarList::AlgorithmVarList(const AlgorithmVarList& other) = default;

AlgorithmVarList& AlgorithmVarList::operator=(const AlgorithmVarList& other) = default;

AlgorithmVarList::~AlgorithmVarList() = default;

int AlgorithmVarList::AddContVar(const std::string& name, const std::string& label) {
    const int index = Size();
    if (name.empty()) VARLIST_ASSERT("AddContVar", false);
    if (FindVariable(name) >= 0) VARLIST_ASSERT("AddContVar", false);
    place(index, {name, label, 0, 0});
    return index;
}

int AlgorithmVarList::AddCatVar(const std::string& name, const std::string& label,
                                int numCategories, bool nominal) {
    const int index = Size();
    if (name.empty()) VARLIST_ASSERT("AddCatVar", false);
    if (FindVariable(name) >= 0) VARLIST_ASSERT("AddCatVar", false);
    place(index, {name, label, 2 - static_cast<int>(nominal), numCategories});
    return index;
}

int AlgorithmVarList::SetWeightVar(const std::string& name, const std::string& label) {
    if (freqWeightIndex_ < 0) freqWeightIndex_ = Size();
    place(freqWeightIndex_, {name, label, 0, 0});
    return freqWeightIndex_;
}

void AlgorithmVarList::place(int index, const VarInfoElem& var) {
    if (index == Size()) {
        vars_.push_back(var);
    } else {
        // The old name may now first occur further on (only the weight
        // variable is ever replaced, and it may repeat a name).
        const std::string old = vars_[index].name;
        vars_[index] = var;
        const auto entry = firstIndex_.find(old);
        if (entry != firstIndex_.end() && entry->second == index) {
            firstIndex_.erase(entry);
            for (int i = index + 1; i < Size(); ++i)
                if (vars_[i].name == old) {
                    firstIndex_.emplace(old, i);
                    break;
                }
        }
    }
    const auto entry = firstIndex_.emplace(var.name, index).first;
    if (entry->second > index) entry->second = index;
}

int AlgorithmVarList::FindVariable(const std::string& varName) const {
    VARLIST_ASSERT("FindVariable", varName.length()>0);
    // The first element of that exact name.
    const auto entry = firstIndex_.find(varName);
    return entry == firstIndex_.end() ? -1 : entry->second;
}

const AlgorithmVarList::VarInfoElem& AlgorithmVarList::element(const char* function,
                                                               int varIndex) const {
    VARLIST_ASSERT(function, varIndex>=0 && varIndex<Size());
    return vars_[varIndex];
}

int AlgorithmVarList::GetMeasLevel(int varIndex) const {
    return element("GetMeasLevel", varIndex).measLevel;
}

bool AlgorithmVarList::IsCatVar(int varIndex) const {
    return element("IsCatVar", varIndex).measLevel != 0;
}

int AlgorithmVarList::GetNumCatLevels(int varIndex) const {
    return element("GetNumCatLevels", varIndex).numCategories;
}

std::string AlgorithmVarList::GetVariableName(int varIndex) const {
    return element("GetVariableName", varIndex).name;
}

std::string AlgorithmVarList::GetVariableLabel(int varIndex) const {
    return element("GetVariableLabel", varIndex).label;
}

int AlgorithmVarList::Size() const { return static_cast<int>(vars_.size()); }

int AlgorithmVarList::GetFreqWeightIndex() const { return freqWeightIndex_; }

void AlgorithmVarList::Display(std::ostream& out) const {
    out << "Start Variable List Display\n\n";
    for (int i = 0; i < Size(); ++i) {
        const VarInfoElem& var = vars_[i];
        out << "Variable " << i << ", name " << var.name << ", label " << var.label;
        // Each kind also prints the words of the kinds after it.
        switch (var.measLevel) {
            case 1:
                out << ", nominal, " << var.numCategories << " levels";
                [[fallthrough]];
            case 2:
                out << ", ordinal, " << var.numCategories << " levels";
                [[fallthrough]];
            default:
                out << ", continuous";
        }
        if (i == freqWeightIndex_) out << ", Frequency Weight";
        out << '\n';
    }
    if (freqWeightIndex_ >= 0)
        out << "Frequency Weight Variable Index = " << freqWeightIndex_;
    else
        out << "Frequency Weight is not defined";
    out << '\n';
    out << "\nEnd Variable List Display\n";
}

AlgoDataAccess::AlgoDataAccess(const MultiPassRecordIter* iterator,
                               const AlgorithmVarList* dataModel)
    : iterator_(iterator), dataModel_(dataModel) {}

AlgoDataAccess::~AlgoDataAccess() = default;

AlgoDataAccessFactory::AlgoDataAccessFactory() = default;

AlgoDataAccessFactory::~AlgoDataAccessFactory() {
    // The access object and the iterator refer to what is released after them.
    dataAccess_.reset();
    recordIter_.reset();
    inputAdapter_.reset();
    validSpecs_.reset();
    varList_.reset();
}

AlgoDataAccess* AlgoDataAccessFactory::getAlgoDataAccess(std::vector<int>& indices,
                                                         ProcedureDataSource* source, bool flag1,
                                                         bool flag2, bool flag3) {
    if (dataAccess_) return dataAccess_.get();
    if (source == nullptr) return nullptr;

    // Built in locals and stored only when complete, so a failure leaves the
    // factory empty.
    auto specs = std::make_unique<ACAVarValidSpecs>(true, true, true);
    const int columnCount = source->ColumnCount();
    auto varList = std::make_unique<AlgorithmVarList>();
    for (int index : indices) {
        if (index >= columnCount) continue;
        const VELA_Variable variable = source->GetVariable(index);
        const int level = variable.GetMeasurementLevel();
        const std::string name = variable.GetName();
        const char* label = variable.GetLabel();
        const std::string shownLabel = label != nullptr ? label : name;
        if (level == 1 || level == 2)
            varList->AddCatVar(name, shownLabel, variable.GetValueLabels().Size(), level == 1);
        else
            varList->AddContVar(name, shownLabel);
        specs->AddVariable(index, false, flag1, flag2, flag3);
    }
    auto adapter = std::make_unique<ACAInputAdapter>(specs.get(), *source);
    auto iterator = std::make_unique<ACAProcDataSourceIter>(*adapter, true);
    auto access = std::make_unique<AlgoDataAccess>(iterator.get(), varList.get());

    validSpecs_ = std::move(specs);
    varList_ = std::move(varList);
    inputAdapter_ = std::move(adapter);
    recordIter_ = std::move(iterator);
    dataAccess_ = std::move(access);
    return dataAccess_.get();
}
