#pragma once
#include <iosfwd>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class ACAVarValidSpecs;
class ACAInputAdapter;
class ACAProcDataSourceIter;
class MultiPassRecordIter;
class ProcedureDataSource;

// The variables an algorithm reads, in the order they were added; the index
// of an element is the variable's position in the list.
class AlgorithmVarList {
public:
    struct VarInfoElem {
        std::string name;
        std::string label;       // the name when the variable has no label
        int measLevel = 0;       // 0 continuous, 1 nominal, 2 ordinal
        int numCategories = 0;   // value labels of a categorical variable
    };

    AlgorithmVarList();
    AlgorithmVarList(const AlgorithmVarList& other);
    AlgorithmVarList& operator=(const AlgorithmVarList& other);
    virtual ~AlgorithmVarList();

    // Each returns the new variable's index.
    int AddContVar(const std::string& name, const std::string& label);
    int AddCatVar(const std::string& name, const std::string& label, int numCategories, bool nominal);
    // Defines (or redefines) the frequency-weight variable; returns its index.
    int SetWeightVar(const std::string& name, const std::string& label);

    // Index of the variable with exactly this name, -1 if none.
    int FindVariable(const std::string& varName) const;
    int GetMeasLevel(int varIndex) const;
    bool IsCatVar(int varIndex) const;
    int GetNumCatLevels(int varIndex) const;
    std::string GetVariableName(int varIndex) const;
    std::string GetVariableLabel(int varIndex) const;
    int Size() const;
    int GetFreqWeightIndex() const;

    // Diagnostic dump of the list.
    void Display(std::ostream& out) const;

private:
    const VarInfoElem& element(const char* function, int varIndex) const;
    // Makes the element at index hold var, keeping the name index right.
    void place(int index, const VarInfoElem& var);

    std::vector<VarInfoElem> vars_;
    int freqWeightIndex_;
    // Name -> index of the first element of that name, so that a list of
    // many variables is built in linear time.
    std::unordered_map<std::string, int> firstIndex_;
};

// What an algorithm reads case data through: the record iterator and the
// description of the variables it delivers. Owns neither.
class AlgoDataAccess {
public:
    AlgoDataAccess(const MultiPassRecordIter* iterator, const AlgorithmVarList* dataModel);
    virtual ~AlgoDataAccess();

    const MultiPassRecordIter* GetRecordIterator() const { return iterator_; }
    const AlgorithmVarList* GetDataModel() const { return dataModel_; }

private:
    const MultiPassRecordIter* iterator_;
    const AlgorithmVarList* dataModel_;
};

// Builds and owns the host chain that delivers case data of chosen variables:
// validity specification, input adapter, record iterator, the access object
// handed out and the variable list.
class AlgoDataAccessFactory {
public:
    AlgoDataAccessFactory();
    AlgoDataAccessFactory(const AlgoDataAccessFactory&) = delete;
    AlgoDataAccessFactory& operator=(const AlgoDataAccessFactory&) = delete;
    ~AlgoDataAccessFactory();

    // Built on the first call; later calls return that same object whatever
    // their arguments. Indices at or beyond the source's column count are skipped.
    AlgoDataAccess* getAlgoDataAccess(std::vector<int>& indices, ProcedureDataSource* source,
                                      bool flag1, bool flag2, bool flag3);

private:
    std::unique_ptr<ACAVarValidSpecs> validSpecs_;
    std::unique_ptr<ACAInputAdapter> inputAdapter_;
    std::unique_ptr<ACAProcDataSourceIter> recordIter_;
    std::unique_ptr<AlgoDataAccess> dataAccess_;
    std::unique_ptr<AlgorithmVarList> varList_;
};
