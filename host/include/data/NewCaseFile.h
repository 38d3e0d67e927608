#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "data/ColumnLayout.h"
#include "data/MemoryDataSet.h"
#include "data/ReplacingFile.h"

class UserCaseFileSpec;

namespace host {

class OrderedTextPipeline;

// A new data file being written: a CSV file and its Table Schema dictionary
// beside it. The dictionary is built first; then cases are streamed to a
// temporary file; close() writes the dictionary and only then puts both
// files in place, so a failure never damages an existing file and leaves no
// temporary file behind. Every failure is reported to the session and raised
// as ErrorText naming the path and the system error.
//
// Cases are gathered into batches whose text is formatted on worker threads
// and written in case order, so the file's bytes do not depend on the thread
// count. A write failure is therefore raised by a later addCase() or by
// close().
class NewCaseFile {
public:
    // Where a variable's cells sit in a case, and its type (0 numeric, else
    // the text width).
    struct Column {
        int first;
        int type;
    };

    explicit NewCaseFile(const UserCaseFileSpec& spec);
    NewCaseFile(const NewCaseFile&) = delete;
    NewCaseFile& operator=(const NewCaseFile&) = delete;
    ~NewCaseFile();

    // The data path for a name given by the user: ".csv" is added when the
    // file name has no extension.
    static std::string dataPathFor(const std::string& path);

    const std::string& dataPath() const { return dataPath_; }
    const std::string& schemaPath() const { return schemaPath_; }
    const std::shared_ptr<MemoryDataSet>& dictionary() const { return dictionary_; }

    void setLabel(const std::string& label);
    // Width 0 makes a numeric variable, a positive width a text variable.
    int makeVariable(int width);
    // The variable for changing; only while the dictionary is open.
    VariableInfo& editVariable(int index);
    void endDictionary();
    // One case: the OBS of every column, laid out as ColumnLayout says.
    void addCase(const double* observations);
    void close();
    // Gives up the file: removes the temporary files unless already closed.
    void abandon();

private:
    enum class State { Dictionary, Cases, Closed, Failed };

    void requireOpen(const char* action);
    void writeRow(const std::string& row);
    void submitBatch();
    void putFilesInPlace();
    [[noreturn]] void fail(const std::string& text);

    std::string dataPath_;
    std::string schemaPath_;
    std::shared_ptr<MemoryDataSet> dictionary_;
    std::unique_ptr<ColumnLayout> layout_;
    ReplacingFile data_;
    ReplacingFile schema_;
    State state_ = State::Dictionary;
    std::vector<Column> columns_;
    int caseColumns_ = 0;        // OBS per case
    std::vector<double> batch_;  // cases not yet formatted, one after another
    std::unique_ptr<OrderedTextPipeline> writer_;
};

}  // namespace host
