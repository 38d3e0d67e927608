#include "data/NewCaseFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unordered_set>
#include <vector>

#include "UserCaseFileSpec.h"
#include "data/CsvDataLoader.h"
#include "data/FolderLock.h"
#include "data/HostError.h"
#include "data/NumberText.h"
#include "data/TableSchemaWriter.h"
#include "data/TemporaryFileRegistry.h"
#include "output/OrderedTextPipeline.h"
#include "syntax/MessageText.h"

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

using syntax::quotedText;

// Text of batches of cases: rows of CSV cells, each row ended by CRLF. It
// replaces what the text holds; the text's memory is reused, and only its
// growth is cleared.
class RowFormatter {
public:
    explicit RowFormatter(std::string& text) : text_(text) {}

    void row(const double* observations, const std::vector<NewCaseFile::Column>& columns) {
        const std::size_t start = used_;
        for (std::size_t v = 0; v < columns.size(); ++v) {
            if (v > 0) put(',');
            const double* cell = observations + columns[v].first;
            const int type = columns[v].type;
            if (type == 0) {
                // Missing and non-finite numbers are written as empty cells.
                if (!isSystemMissing(*cell) && std::isfinite(*cell)) {
                    reserve(kNumberTextCapacity);
                    used_ = static_cast<std::size_t>(writeNumber(&text_[used_], *cell) - text_.data());
                }
                continue;
            }
            const char* bytes = reinterpret_cast<const char*>(cell);
            std::size_t length = ::strnlen(bytes, static_cast<std::size_t>(type));
            while (length > 0 && bytes[length - 1] == ' ') --length;  // text is padded with blanks
            textCell(bytes, length);
        }
        // A lone empty cell is quoted: a blank line would read as no case at all.
        if (used_ == start) {
            put('"');
            put('"');
        }
        put('\r');
        put('\n');
    }

    void end() { text_.resize(used_); }

private:
    void reserve(std::size_t count) {
        if (used_ + count > text_.size()) text_.resize(std::max(2 * text_.size(), used_ + count + 4096));
    }
    void put(char c) {
        reserve(1);
        text_[used_++] = c;
    }

    // A CSV cell: quoted when it holds a comma, a quote, a line break or
    // blanks at its ends, so that it reads back unchanged.
    void textCell(const char* text, std::size_t length) {
        bool needsQuotes =
            length > 0 && (text[0] == ' ' || text[0] == '\t' || text[length - 1] == ' ' || text[length - 1] == '\t');
        for (std::size_t i = 0; i < length && !needsQuotes; ++i)
            needsQuotes = text[i] == ',' || text[i] == '"' || text[i] == '\n' || text[i] == '\r';
        reserve(2 * length + 2);
        if (!needsQuotes) {
            std::memcpy(&text_[used_], text, length);
            used_ += length;
            return;
        }
        text_[used_++] = '"';
        for (std::size_t i = 0; i < length; ++i) {
            if (text[i] == '"') text_[used_++] = '"';
            text_[used_++] = text[i];
        }
        text_[used_++] = '"';
    }

    std::string& text_;
    std::size_t used_ = 0;
};

// Cases per batch: about this many OBS, and at least one case.
constexpr std::size_t kBatchObservations = 32768;

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
    if (!spec.IsInit() || spec.GetPath().empty()) raiseHostError("No file name was given for the new data file.");
    if (!spec.IsForWriting()) raiseHostError("The data file " + quotedText(dataPath_) + " was not named for writing.");
    if (isFolder(dataPath_))
        raiseHostError("Cannot write the data file " + quotedText(dataPath_) + ": a folder of that name exists.");
    if (isFolder(schemaPath_))
        raiseHostError("Cannot write the dictionary " + quotedText(schemaPath_) + " of the data file " +
                       quotedText(dataPath_) + ": a folder of that name exists.");
    if (!spec.MayReplace() && exists(dataPath_))
        raiseHostError("The data file " + quotedText(dataPath_) + " already exists.");
    if (!data_.open())
        raiseHostError("Cannot write the data file " + quotedText(dataPath_) + ": " + data_.problem() + ".");
    if (!schema_.open()) {
        data_.discard();
        raiseHostError("Cannot write the dictionary " + quotedText(schemaPath_) + ": " + schema_.problem() + ".");
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
        raiseHostError("The data file " + quotedText(dataPath_) + " was not written because of an earlier error.");
    if (state_ != State::Dictionary)
        raiseHostError(std::string("Cannot ") + action + " of the data file " + quotedText(dataPath_) +
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
                       quotedText(dataPath_) + ": the width must be 0 (numeric) or 1 to " +
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
        raiseHostError("Variable " + std::to_string(index) + " is not in the dictionary of " + quotedText(dataPath_) +
                       ".");
    return dictionary_->editVariable(index);
}

void NewCaseFile::endDictionary() {
    requireOpen("end the dictionary");
    const int count = dictionary_->variableCount();
    if (count == 0) fail("The data file " + quotedText(dataPath_) + " has no variables.");
    std::string header;
    // Names as they are matched (ASCII letters in upper case), so that a file
    // of many columns is checked in linear time.
    std::unordered_set<std::string> matched;
    for (int v = 0; v < count; ++v) {
        const std::string& name = dictionary_->variable(v).name;
        std::string key = name;
        for (char& c : key)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        if (!matched.insert(std::move(key)).second)
            fail("The data file " + quotedText(dataPath_) + " has two variables named " + quotedText(name) + ".");
        if (v > 0) header += ',';
        header += name;
    }
    layout_ = std::make_unique<ColumnLayout>(*dictionary_);
    for (int v = 0; v < count; ++v) columns_.push_back({layout_->firstColumn(v), dictionary_->variable(v).type});
    caseColumns_ = layout_->columnCount();
    state_ = State::Cases;
    writeRow(header);
    writer_ =
        std::make_unique<OrderedTextPipeline>(OrderedTextPipeline::defaultThreads(), [this](const std::string& text) {
            if (!data_.write(text))
                fail("Cannot write the data file " + quotedText(dataPath_) + ": " + data_.problem() + ".");
        });
}

void NewCaseFile::writeRow(const std::string& row) {
    if (!data_.write(row) || !data_.write("\r\n"))
        fail("Cannot write the data file " + quotedText(dataPath_) + ": " + data_.problem() + ".");
}

void NewCaseFile::addCase(const double* observations) {
    if (state_ == State::Failed)
        raiseHostError("The data file " + quotedText(dataPath_) + " was not written because of an earlier error.");
    if (state_ == State::Dictionary)
        raiseHostError("Cannot add a case to the data file " + quotedText(dataPath_) +
                       " before its dictionary is complete.");
    if (state_ == State::Closed)
        raiseHostError("Cannot add a case to the data file " + quotedText(dataPath_) + ": it is already closed.");
    batch_.insert(batch_.end(), observations, observations + caseColumns_);
    if (batch_.size() >= kBatchObservations) submitBatch();
}

void NewCaseFile::submitBatch() {
    if (batch_.empty()) return;
    auto cases = std::make_shared<std::vector<double>>(std::move(batch_));
    const std::vector<Column>* columns = &columns_;
    const std::size_t width = static_cast<std::size_t>(caseColumns_);
    batch_.clear();
    batch_.reserve(std::max(kBatchObservations, width) + width);
    writer_->submit([cases, columns, width](std::string& text) {
        RowFormatter rows(text);
        for (std::size_t at = 0; at < cases->size(); at += width) rows.row(cases->data() + at, *columns);
        rows.end();
    });
}

void NewCaseFile::close() {
    if (state_ == State::Closed) return;
    if (state_ == State::Failed)
        raiseHostError("The data file " + quotedText(dataPath_) + " was not written because of an earlier error.");
    if (state_ == State::Dictionary) endDictionary();
    submitBatch();
    writer_->finish();
    if (!schema_.write(writeTableSchema(*dictionary_)))
        fail("Cannot write the dictionary " + quotedText(schemaPath_) + ": " + schema_.problem() + ".");
    if (!data_.finish()) fail("Cannot write the data file " + quotedText(dataPath_) + ": " + data_.problem() + ".");
    if (!schema_.finish())
        fail("Cannot write the dictionary " + quotedText(schemaPath_) + ": " + schema_.problem() + ".");
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
        fail("Cannot write the data file " + quotedText(dataPath_) + ": " + data_.problem() + ".");
    }
    if (!schema_.replaceTarget()) {
        const std::string problem = schema_.problem();
        if (!backup.empty())
            ::rename(backup.c_str(), dataPath_.c_str());
        else
            ::unlink(dataPath_.c_str());
        fail("Cannot write the dictionary " + quotedText(schemaPath_) + ": " + problem + ".");
    }
    if (!backup.empty()) ::unlink(backup.c_str());
}

}  // namespace host
