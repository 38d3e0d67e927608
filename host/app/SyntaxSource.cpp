#include "SyntaxSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "UsageError.h"
#include "data/TextFile.h"
#include "syntax/MessageText.h"

const std::string SyntaxSource::kNone;

namespace {

const char kStandardInput[] = "standard input";

[[noreturn]] void cannotRead(const std::string& source, const std::string& reason) {
    throw UsageError("cannot read the syntax from " + source + ": " + reason);
}

// Reads a whole descriptor: a folder, a read error, a text beyond the limit
// or a lack of memory is a usage error naming the source.
std::string readAll(int fd, const std::string& source) {
    struct stat info {};
    if (::fstat(fd, &info) != 0) cannotRead(source, std::strerror(errno));
    if (S_ISDIR(info.st_mode)) cannotRead(source, "it is a folder");
    std::string text;
    int error = 0;
    try {
        error = host::readDescriptor(fd, text, SyntaxSource::kMaxBytes);
    } catch (const std::bad_alloc&) {
        text = std::string();  // the message needs memory too
        cannotRead(source, "there is not enough memory to hold it");
    }
    if (error == EFBIG)
        cannotRead(source, "it is larger than " + std::to_string(SyntaxSource::kMaxBytes >> 20) +
                               " MiB, the most distcorr reads as syntax");
    if (error != 0) cannotRead(source, std::strerror(error));
    return text;
}

std::string readFile(const std::string& path) {
    const std::string source = host::syntax::quotedText(path);
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) cannotRead(source, std::strerror(errno));
    try {
        std::string text = readAll(fd, source);
        ::close(fd);
        return text;
    } catch (...) {
        ::close(fd);
        throw;
    }
}

}  // namespace

std::vector<SyntaxText> SyntaxSource::read() const {
    std::vector<SyntaxText> texts;
    if (!executeTexts_.empty()) {
        // One -e keeps the plain name; several are told apart by their number.
        for (std::size_t i = 0; i < executeTexts_.size(); ++i)
            texts.push_back({executeTexts_[i],
                             executeTexts_.size() == 1 ? "command line" : "command line -e " + std::to_string(i + 1)});
        return texts;
    }
    if (!syntaxFile_.empty() && syntaxFile_ != "-") {
        texts.push_back({readFile(syntaxFile_), syntaxFile_});
        return texts;
    }
    const bool explicitStandardInput = syntaxFile_ == "-";
    if (dataFromStandardInput_)
        throw UsageError(explicitStandardInput
                             ? "standard input cannot hold both the data (--data -) and the commands (-)"
                             : "no commands were given; the data comes from standard input (--data -), so give "
                               "the commands as a syntax file or with -e");
    if (!explicitStandardInput && ::isatty(STDIN_FILENO))
        throw UsageError(
            "no commands were given.\n"
            "Give a syntax file (distcorr --data FILE job.sps), commands with -e 'TEXT' (repeatable), or pipe them "
            "in (distcorr --data FILE < job.sps); - reads them from the terminal until Ctrl-D, and -e '' lists the "
            "data set's variables. distcorr --help explains every option.");
    texts.push_back({readAll(STDIN_FILENO, kStandardInput), kStandardInput});
    return texts;
}
