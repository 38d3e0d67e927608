#include "UserOutputCaseFile.h"

#include "VELA_DataSource.h"
#include "data/DataSourceImpl.h"
#include "data/NewCaseFile.h"
#include "data/NewFileDataStore.h"

struct UserOutputCaseFile::Impl {
    std::shared_ptr<host::NewCaseFile> file;
    std::unique_ptr<VELA_DataSource> source;
    std::unique_ptr<host::NewFileDataStore> store;
};

UserOutputCaseFile::UserOutputCaseFile(const UserCaseFileSpec& spec) : impl_(std::make_unique<Impl>()) {
    impl_->file = std::make_shared<host::NewCaseFile>(spec);
    auto sourceImpl = std::make_shared<VELA_DataSource::Impl>(impl_->file->dictionary(), impl_->file);
    impl_->source = std::make_unique<VELA_DataSource>(sourceImpl);
    impl_->store = std::make_unique<host::NewFileDataStore>(sourceImpl);
}

// A file that was not closed is given up: its temporary files go now, even
// if variable handles still refer to its dictionary.
UserOutputCaseFile::~UserOutputCaseFile() { impl_->file->abandon(); }

VELA_DataSource* UserOutputCaseFile::DataSource() { return impl_->source.get(); }

IndependentDataStore* UserOutputCaseFile::DataStore() { return impl_->store.get(); }
