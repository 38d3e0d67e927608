#pragma once
#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "SinkStreamBuffer.h"
#include "SpoolFile.h"
#include "data/ReplacingFile.h"

class StandardOutput;

// Where --output and --html write: "-" is standard output; an existing
// device or pipe (/dev/null, a FIFO) and any name under /dev or /proc are
// written in place; anything else is written to a temporary file beside the
// target and renamed over it only when complete, so a failure never damages
// an existing file. A link is followed and the file it names is replaced,
// not the link.
//
// A ReportFile object is a report written while the commands run: standard
// output takes the bytes at once (it carries nothing else then), a replaced
// file gets them in its temporary file, and a target written in place gets
// them at the end, from a nameless temporary file, after the tables that
// may go to the same place.
class ReportFile {
public:
    using Writer = std::function<void(std::ostream&)>;

    // Why `path` cannot take a report ("" when it can): a folder, an input
    // file of this run, a folder in which no file can be created. Checked
    // before any command runs.
    static std::string problemWith(const std::string& path);

    // Whether two report paths name one file (by device and inode when it
    // exists, otherwise by the name with links resolved).
    static bool sameTarget(const std::string& a, const std::string& b);

    // A nameless temporary file for text of the report until the end: beside
    // a replaced file, so that the text stays on that file system and its
    // failures are the report's, else in the folder for temporary files.
    static std::unique_ptr<SpoolFile> spoolFor(const std::string& path);

    // Writes the report at once; on failure reports "Error: the <what> was
    // not written: <reason>." on standard error and returns false. An
    // exception from the writer is such a failure, its text the reason.
    static bool write(const std::string& path, const std::string& what, const Writer& writer, StandardOutput& out);

    // Says on standard error that the report was not written, and why;
    // always false.
    static bool notWritten(const std::string& what, const std::string& problem);

    // Starts a report written as it goes (the `what` as for write()).
    ReportFile(const std::string& path, std::string what, StandardOutput& out);
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;
    ~ReportFile();  // an unfinished report is discarded

    std::ostream& stream();
    // Gives up the report for this reason, reported by finish().
    void fail(const std::string& problem);
    // Puts the complete report in place; reports a failure like write().
    bool finish();

private:
    enum class Target { StandardOutput, InPlace, Replaced };

    std::string path_;
    std::string what_;
    StandardOutput& out_;
    Target target_;
    std::string problem_;
    std::unique_ptr<host::ReplacingFile> file_;
    std::unique_ptr<SinkStreamBuffer> buffer_;
    std::unique_ptr<std::ostream> stream_;
    std::unique_ptr<SpoolFile> spool_;
};
