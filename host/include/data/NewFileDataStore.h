#pragma once
#include <memory>

#include "IndependentDataStore.h"
#include "VELA_DataSource.h"

namespace host {

// The data store of a new data file: passes each case's observations to the
// file's writer. Only cases laid over the file's own data source are taken.
class NewFileDataStore : public IndependentDataStore {
public:
    explicit NewFileDataStore(std::shared_ptr<VELA_DataSource::Impl> source) : source_(std::move(source)) {}
    void AddCase(const VELA_Case& dataCase) override;

private:
    std::shared_ptr<VELA_DataSource::Impl> source_;
};

}  // namespace host
