#pragma once
#include <memory>

class IndependentDataStore;
class UserCaseFileSpec;
class VELA_DataSource;

// A new data file. Its data source takes the dictionary and, through the data
// store, the cases; closing the data source writes the file. Raises ErrorText.
class UserOutputCaseFile {
public:
    explicit UserOutputCaseFile(const UserCaseFileSpec& spec);
    UserOutputCaseFile(const UserOutputCaseFile&) = delete;
    UserOutputCaseFile& operator=(const UserOutputCaseFile&) = delete;
    virtual ~UserOutputCaseFile();

    VELA_DataSource* DataSource();
    IndependentDataStore* DataStore();

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
};
