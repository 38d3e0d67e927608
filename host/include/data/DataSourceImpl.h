#pragma once
#include <memory>

#include "DataSet.h"
#include "VELA_DataSource.h"
#include "VELA_Variable.h"
#include "data/ColumnLayout.h"

namespace host {
class NewCaseFile;
}

// What a VELA_DataSource refers to: a data set to read (the active data set,
// or the dictionary of a new file) and, for a new file, its writer.
struct VELA_DataSource::Impl {
    explicit Impl(std::shared_ptr<host::DataSet> dataSet, std::shared_ptr<host::NewCaseFile> file = nullptr);

    std::shared_ptr<host::DataSet> data;
    std::shared_ptr<host::NewCaseFile> newFile;

    // The case layout of the current dictionary, rebuilt when it has grown.
    const host::ColumnLayout& layout();

private:
    std::unique_ptr<host::ColumnLayout> layout_;
};

// A variable handle: the data source and the variable's index in it.
struct VELA_Variable::Impl {
    std::shared_ptr<VELA_DataSource::Impl> source;
    int index = -1;
};
