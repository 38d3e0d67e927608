#pragma once
#include <memory>
#include <string>
#include <vector>

#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "VELA_Variable.h"

class UserCaseFileSpec;
class UserOutputCaseFile;
class VELA_DataSource;

// Writes the distance matrices of the CONFIGURE variables to a new data file:
// a row-name column "VarName_" and one numeric column per case, one block of
// rows per saved variable with a blank case between blocks.
class DistanceCorrSaveOutFile {
public:
    enum WriterState : unsigned {
        FileReady = 0,       // constructed, or file created and data source obtained
        DictionaryDone = 1,  // variables, file label and value labels defined
        DataWritten = 2,     // all cases added
        FileClosed = 3,      // file closed and released
        FileFailed = 4       // a step failed; nothing further is attempted
    };

    DistanceCorrSaveOutFile(const DistanceCorrInputSettings& settings,
                            std::vector<DistanceCorrDescriptiveResult>& descriptives);
    DistanceCorrSaveOutFile(const DistanceCorrSaveOutFile&) = delete;
    DistanceCorrSaveOutFile& operator=(const DistanceCorrSaveOutFile&) = delete;
    ~DistanceCorrSaveOutFile();

    // 0 when the file was written or nothing is to be saved, 1 on failure.
    unsigned start();

    WriterState PrepareDataOutFile();
    WriterState PrepareNewFile(const UserCaseFileSpec& spec);
    WriterState NewFileDictionary();
    // Width 0 makes a numeric distance column, a positive width a text column.
    VELA_Variable AddVariable(std::string& name, std::string& label, int width);
    WriterState WriteDataOutFile();
    WriterState AddDataToFile();
    WriterState CloseDataOutFile();
    WriterState Close();

    WriterState state() const { return state_; }
    const std::vector<std::string>& rowNames() const { return rowNames_; }

private:
    const DistanceCorrInputSettings& settings_;
    std::vector<DistanceCorrDescriptiveResult>& descriptives_;
    std::unique_ptr<UserOutputCaseFile> outFile_;
    VELA_DataSource* dataSource_ = nullptr;  // belongs to outFile_
    std::vector<std::string> rowNames_;
    WriterState state_ = FileReady;
};
