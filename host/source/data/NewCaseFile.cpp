#include "data/NewCaseFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "UserCaseFileSpec.h"
#include "data/CsvDataLoader.h"
#include "data/FolderLock.h"
#include "data/HostError.h"
#include "data/NumberText.h"
#include "data/TableSchemaWriter.h"
#include "data/TemporaryFileRegistry.h"
#include "data/VariableName.h"

namespace host {

namespace {

constexpr int kMaxTextWidth = 32767;

bool isFolder(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool exists(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

std::string quoted(const std::string& path) { return "\"" + path + "\""; }

// A CSV cell: quoted when it holds a comma, a quote, a line break or blanks
// at its ends, so that it reads back unchanged.
void appendCell(std::string& row, const char* text, std::size_t length) {
    bool needsQuotes = length > 0 && (text[0] == ' ' || text[0] == '\t' || text[length - 1] == ' ' ||
                                      text[length - 1] == '\t');
    for (std::size_t i = 0; i < length && !needsQuotes; ++i)
        needsQuotes = text[i] == ',' || text[i] == '"' || text[i] == '\n' || text[i] == '\r';
    if (!needsQuotes) {
        row.append(text, length);
        return;
    }
    row += '"';
    for (std::size_t i = 0; i < length; ++i) {
        if (text[i] == '"') row += '"';
        row += text[i];
    }
    row += '"';
}

}  // namespace

std::string NewCaseFile::dataPathFor(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.find_last_of('.');
    if (!name.empty() && (dot == std::string::npos || dot == 0)) return path + ".csv";
    return path;
}

NewCaseFile::NewCaseFile(const UserCaseFileSpec& spec)
    : dataPath_(dataPathFor(spec.GetPath())),
      schemaPath_(schemaPathFor(dataPath_)),
      dictionary_(std::make_shared<MemoryDataSet>()),
      data_(dataPath_),
      schema_(schemaPath_) {
    if (!spec.IsInit() || spec.GetPath().empty())
        raiseHostError("No file name was given for the new data file.");
    if (!spec.IsForWriting())
        raiseHostError("The data file " + quoted(dataPath_) + " was not named for writing.");
    if (isFolder(dataPath_))
        raiseHostError("Cannot write the data file " + quoted(dataPath_) + ": a folder of that name exists.");
    if (isFolder(schemaPath_))
        raiseHostError("Cannot write the dictionary " + quoted(schemaPath_) + " of the data file " +
                       quoted(dataPath_) + ": a folder of that name exists.");
    if (!spec.MayReplace() && exists(dataPath_))
        raiseHostError("The data file " + quoted(dataPath_) + " already exists.");
    if (!data_.open()) raiseHostError("Cannot write the data file " + quoted(dataPath_) + ": " + data_.problem() + ".");
    if (!schema_.open()) {
        data_.discard();
        raiseHostError("Cannot write the dictionary " + quoted(schemaPath_) + ": " + schema_.problem() + ".");
    }
}

NewCaseFile::~NewCaseFile() { abandon(); }

void NewCaseFile::abandon() {
    if (state_ == State::Closed) return;
    data_.discard();
    schema_.discard();
    state_ = State::Failed;
}

void NewCaseFile::fail(const std::string& text) {
    abandon();
    raiseHostError(text);
}

void NewCaseFile::requireOpen(const char* action) {
    if (state_ == State::Failed)
        raiseHostError("The data file " + quoted(dataPath_) + " was not written because of an earlier error.");
    if (state_ != State::Dictionary)
        raiseHostError(std::string("Cannot ") + action + " of the data file " + quoted(dataPath_) +
                       ": its dictionary is already complete.");
}

void NewCaseFile::setLabel(const std::string& label) {
    requireOpen("set the label");
    dictionary_->setLabel(label);
}

int NewCaseFile::makeVariable(int width) {
    requireOpen("add a variable to the dictionary");
    if (width < 0 || width > kMaxTextWidth)
        raiseHostError("Cannot add a variable of width " + std::to_string(width) + " to the data file " +
                       quoted(dataPath_) + ": the width must be 0 (numeric) or 1 to " +
                       std::to_string(kMaxTextWidth) + " (text).");
    VariableInfo info;
    char name[32];
    std::snprintf(name, sizeof name, "VAR%05d", dictionary_->variableCount() + 1);
    info.name = name;
    info.type = width;
    if (width > 0) {
        info.measurementLevel = 1;
        info.format = VELA_Format(VELA_Format::FormatString, width, 0);
        info.writeFormat = info.format;
    }
    return dictionary_->addVariable(std::move(info));
}

VariableInfo& NewCaseFile::editVariable(int index) {
    requireOpen("change a variable");
    if (index < 0 || index >= dictionary_->variableCount())
        raiseHostError("Variable " + std::to_string(index) + " is not in the dictionary of " + quoted(dataPath_) + ".");
    return dictionary_->editVariable(index);
}

void NewCaseFile::endDictionary() {
    requireOpen("end the dictionary");
    const int count = dictionary_->variableCount();
    if (count == 0) fail("The data file " + quoted(dataPath_) + " has no variables.");
    std::string header;
    for (int v = 0; v < count; ++v) {
        const std::string& name = dictionary_->variable(v).name;
        for (int w = 0; w < v; ++w)
            if (sameVariableName(dictionary_->variable(w).name, name))
                fail("The data file " + quoted(dataPath_) + " has two variables named \"" + name + "\".");
        if (v > 0) header += ',';
        header += name;
    }
    layout_ = std::make_unique<ColumnLayout>(*dictionary_);
    state_ = State::Cases;
    writeRow(header);
}

void NewCaseFile::writeRow(const std::string& row) {
    if (!data_.write(row) || !data_.write("\r\n"))
        fail("Cannot write the data file " + quoted(dataPath_) + ": " + data_.problem() + ".");
}

void NewCaseFile::addCase(const double* observations) {
    if (state_ == State::Failed)
        raiseHostError("The data file " + quoted(dataPath_) + " was not written because of an earlier error.");
    if (state_ == State::Dictionary)
        raiseHostError("Cannot add a case to the data file " + quoted(dataPath_) +
                       " before its dictionary is complete.");
    if (state_ == State::Closed)
        raiseHostError("Cannot add a case to the data file " + quoted(dataPath_) + ": it is already closed.");
    row_.clear();
    for (int v = 0; v < layout_->variableCount(); ++v) {
        if (v > 0) row_ += ',';
        const double* cell = observations + layout_->firstColumn(v);
        const int type = dictionary_->variable(v).type;
        if (type == 0) {
            // Missing and non-finite numbers are written as empty cells.
            if (!isSystemMissing(*cell) && std::isfinite(*cell)) row_ += formatNumber(*cell);
            continue;
        }
        const char* bytes = reinterpret_cast<const char*>(cell);
        std::size_t length = ::strnlen(bytes, static_cast<std::size_t>(type));
        while (length > 0 && bytes[length - 1] == ' ') --length;  // text is padded with blanks
        appendCell(row_, bytes, length);
    }
    // A lone empty cell is quoted: a blank line would read as no case at all.
    if (row_.empty()) row_ = "\"\"";
    writeRow(row_);
}

void NewCaseFile::close() {
    if (state_ == State::Closed) return;
    if (state_ == State::Failed)
        raiseHostError("The data file " + quoted(dataPath_) + " was not written because of an earlier error.");
    if (state_ == State::Dictionary) endDictionary();
    if (!schema_.write(writeTableSchema(*dictionary_)))
        fail("Cannot write the dictionary " + quoted(schemaPath_) + ": " + schema_.problem() + ".");
    if (!data_.finish()) fail("Cannot write the data file " + quoted(dataPath_) + ": " + data_.problem() + ".");
    if (!schema_.finish())
        fail("Cannot write the dictionary " + quoted(schemaPath_) + ": " + schema_.problem() + ".");
    putFilesInPlace();
    state_ = State::Closed;
}

void NewCaseFile::putFilesInPlace() {
    // Another process saving to the same name waits, and a signal waits, so
    // the two files always come from one run.
    const FolderLock lock(folderOf(dataPath_));
    const temporaryFiles::Uninterrupted uninterrupted;
    // Keep the old data file reachable under a second name until the new
    // dictionary is in place too, so that a failure can put it back.
    std::string backup;
    if (exists(dataPath_)) {
        std::string pattern = dataPath_ + ".old-XXXXXX";
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        const int fd = ::mkstemp(name.data());
        if (fd >= 0) {
            ::close(fd);
            ::unlink(name.data());
            if (::link(dataPath_.c_str(), name.data()) == 0) backup = name.data();
        }
    }
    if (!data_.replaceTarget()) {
        if (!backup.empty()) ::unlink(backup.c_str());
        fail("Cannot write the data file " + quoted(dataPath_) + ": " + data_.problem() + ".");
    }
    if (!schema_.replaceTarget()) {
        const std::string problem = schema_.problem();
        if (!backup.empty())
            ::rename(backup.c_str(), dataPath_.c_str());
        else
            ::unlink(dataPath_.c_str());
        fail("Cannot write the dictionary " + quoted(schemaPath_) + ": " + problem + ".");
    }
    if (!backup.empty()) ::unlink(backup.c_str());
}

}  // namespace host
