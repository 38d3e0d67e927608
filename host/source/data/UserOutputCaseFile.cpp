#include "UserOutputCaseFile.h"

#include "HostSession.h"
#include "UserCaseFileSpec.h"
#include "VELA_DataSource.h"
#include "data/CsvDataLoader.h"
#include "data/DataSourceImpl.h"
#include "data/HostError.h"
#include "data/NewCaseFile.h"
#include "data/NewFileDataStore.h"
#include "syntax/MessageText.h"

namespace {

using host::syntax::quotedText;

std::string sameFileText(const host::InputFile& input) {
    return "it is the same file as " + input.role + " \"" + input.path + "\"; an output never replaces an input.";
}

// A new data file must never replace a file the program reads: refuses the
// data file or the dictionary whose name (after links) is one of them.
void refuseInputFiles(const UserCaseFileSpec& spec) {
    const std::string dataPath = host::NewCaseFile::dataPathFor(spec.GetPath());
    const std::string schemaPath = host::schemaPathFor(dataPath);
    const host::HostSession& session = host::HostSession::instance();
    if (const host::InputFile* input = session.inputFileAt(dataPath))
        host::raiseHostError("Cannot write the data file " + quotedText(dataPath) + ": " + sameFileText(*input));
    if (const host::InputFile* input = session.inputFileAt(schemaPath))
        host::raiseHostError("Cannot write the dictionary " + quotedText(schemaPath) + " of the data file " +
                             quotedText(dataPath) + ": " + sameFileText(*input));
}

}  // namespace

struct UserOutputCaseFile::Impl {
    std::shared_ptr<host::NewCaseFile> file;
    std::unique_ptr<VELA_DataSource> source;
    std::unique_ptr<host::NewFileDataStore> store;
};

UserOutputCaseFile::UserOutputCaseFile(const UserCaseFileSpec& spec) : impl_(std::make_unique<Impl>()) {
    refuseInputFiles(spec);
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
