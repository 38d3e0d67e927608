#include "VELA_DataSource.h"

#include <utility>

#include "data/DataSourceImpl.h"
#include "data/HostError.h"
#include "data/MemoryDataSet.h"
#include "data/NewCaseFile.h"

VELA_DataSource::Impl::Impl(std::shared_ptr<host::DataSet> dataSet, std::shared_ptr<host::NewCaseFile> file)
    : data(dataSet ? std::move(dataSet) : std::make_shared<host::MemoryDataSet>()), newFile(std::move(file)) {}

const host::ColumnLayout& VELA_DataSource::Impl::layout() {
    if (!layout_ || layout_->variableCount() != data->variableCount())
        layout_ = std::make_unique<host::ColumnLayout>(*data);
    return *layout_;
}

namespace {

host::NewCaseFile& newFileOf(const std::shared_ptr<VELA_DataSource::Impl>& impl, const char* action) {
    if (!impl->newFile)
        host::raiseHostError(std::string("Cannot ") + action + ": the active data set cannot be changed.");
    return *impl->newFile;
}

}  // namespace

VELA_DataSource::VELA_DataSource() : impl_(std::make_shared<Impl>(nullptr)) {}
VELA_DataSource::VELA_DataSource(std::shared_ptr<Impl> impl)
    : impl_(impl ? std::move(impl) : std::make_shared<Impl>(nullptr)) {}
VELA_DataSource::VELA_DataSource(const VELA_DataSource& other) = default;
VELA_DataSource& VELA_DataSource::operator=(const VELA_DataSource& other) = default;
VELA_DataSource::~VELA_DataSource() = default;

const std::shared_ptr<VELA_DataSource::Impl>& VELA_DataSource::impl() const { return impl_; }

int VELA_DataSource::ColumnCount() const { return impl_->layout().columnCount(); }

int VELA_DataSource::VariableCount() const { return impl_->data->variableCount(); }

VELA_Variable VELA_DataSource::GetVariable(int index) const {
    if (index < 0 || index >= impl_->data->variableCount()) return VELA_Variable();
    auto handle = std::make_shared<VELA_Variable::Impl>();
    handle->source = impl_;
    handle->index = index;
    return VELA_Variable(std::move(handle));
}

std::string VELA_DataSource::GetLabel() const { return impl_->data->label(); }

void VELA_DataSource::SetLabel(const char* label) {
    newFileOf(impl_, "set the file label").setLabel(label != nullptr ? label : "");
}

VELA_Variable VELA_DataSource::MakeVariable(int width, unsigned int* index) {
    const int made = newFileOf(impl_, "add a variable").makeVariable(width);
    if (index != nullptr) *index = static_cast<unsigned int>(made);
    return GetVariable(made);
}

void VELA_DataSource::EndDictionary() { newFileOf(impl_, "end the dictionary").endDictionary(); }

void VELA_DataSource::CloseData() {
    // Closing the active data set has nothing to write.
    if (impl_->newFile) impl_->newFile->close();
}
