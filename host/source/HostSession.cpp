#include "HostSession.h"

#include <sys/stat.h>

#include <iostream>

namespace host {

struct HostSession::Impl {
    std::shared_ptr<DataSet> data;
    std::vector<InputFile> inputs;
    CommandText command;
    std::string commandName;
    std::vector<HostMessage> messages;
    std::unique_ptr<rapidjson::Document> output;
    bool quiet = false;
    std::ostream* err = &std::cerr;
    std::string language;
    std::string resourceDir;
};

HostSession::HostSession() : impl_(std::make_unique<Impl>()) {}

HostSession& HostSession::instance() {
    static HostSession session;
    return session;
}

void HostSession::setActiveDataSet(std::shared_ptr<DataSet> data) { impl_->data = std::move(data); }
std::shared_ptr<DataSet> HostSession::activeDataSet() const { return impl_->data; }

void HostSession::addInputFile(const std::string& path, const std::string& role) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return;
    impl_->inputs.push_back(
        {path, role, static_cast<unsigned long long>(info.st_dev), static_cast<unsigned long long>(info.st_ino)});
}

const InputFile* HostSession::inputFileAt(const std::string& path) const {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return nullptr;
    for (const InputFile& input : impl_->inputs)
        if (input.device == static_cast<unsigned long long>(info.st_dev) &&
            input.inode == static_cast<unsigned long long>(info.st_ino))
            return &input;
    return nullptr;
}

void HostSession::beginCommand(CommandText command) {
    impl_->command = std::move(command);
    impl_->commandName.clear();
    impl_->messages.clear();
    impl_->output.reset();
}

const CommandText& HostSession::command() const { return impl_->command; }

void HostSession::setCommandName(const std::string& name) { impl_->commandName = name; }
const std::string& HostSession::commandName() const { return impl_->commandName; }

void HostSession::addMessage(MessageLevel level, const std::string& commandName, const std::string& text) {
    impl_->messages.push_back({level, text});
    if (impl_->quiet || impl_->err == nullptr) return;
    const char* prefix = level == MessageLevel::Error     ? "Error: "
                         : level == MessageLevel::Warning ? "Warning: "
                                                          : "Note: ";
    *impl_->err << prefix;
    const std::string& name = commandName.empty() ? impl_->commandName : commandName;
    // A text that starts with the command's name does not repeat it.
    if (!name.empty() && text.compare(0, name.size(), name) != 0) *impl_->err << name << ": ";
    *impl_->err << text << '\n';
}

const std::vector<HostMessage>& HostSession::messages() const { return impl_->messages; }

bool HostSession::hasErrors() const {
    for (const auto& m : impl_->messages)
        if (m.level == MessageLevel::Error) return true;
    return false;
}

void HostSession::setOutputDocument(std::unique_ptr<rapidjson::Document> document) {
    impl_->output = std::move(document);
}
rapidjson::Document* HostSession::outputDocument() const { return impl_->output.get(); }
std::unique_ptr<rapidjson::Document> HostSession::takeOutputDocument() { return std::move(impl_->output); }

void HostSession::setQuiet(bool quiet) { impl_->quiet = quiet; }
bool HostSession::quiet() const { return impl_->quiet; }
void HostSession::setErrorStream(std::ostream* stream) { impl_->err = stream; }

void HostSession::setLanguage(const std::string& language) { impl_->language = language; }
const std::string& HostSession::language() const { return impl_->language; }
void HostSession::setResourceDir(const std::string& dir) { impl_->resourceDir = dir; }
const std::string& HostSession::resourceDir() const { return impl_->resourceDir; }

}  // namespace host
