#pragma once
#include <ostream>
#include <string>

#include "SinkStreamBuffer.h"

// A temporary file without a name: what is written to it can be read back
// at the end, and nothing is left behind however the program ends. It holds
// a report's text while the commands run, so that the text never has to sit
// in memory. Every failure leaves its reason in problem(), naming the folder
// and the system error.
class SpoolFile {
public:
    // Creates the file in `folder`; "" means the folder for temporary files
    // ($TMPDIR, else /tmp). A failing write is said to be one of `shownAs`
    // (a report beside which the file lies), or else of a temporary file in
    // that folder.
    explicit SpoolFile(const std::string& folder, const std::string& shownAs = "");
    SpoolFile(const SpoolFile&) = delete;
    SpoolFile& operator=(const SpoolFile&) = delete;
    ~SpoolFile();

    // Where the text goes; after a failure it takes and drops everything.
    std::ostream& stream() { return stream_; }
    // Sends what is buffered to the file; false when any of the text could
    // not be written.
    bool flush();
    // Writes everything written so far to `out`; false when the text could
    // not be written or read back.
    bool copyTo(std::ostream& out);
    const std::string& problem() const { return problem_; }

private:
    bool fail(const std::string& what, int error);

    std::string folder_;
    std::string shownAs_;
    int fd_ = -1;
    int writeError_ = 0;
    std::string problem_;
    SinkStreamBuffer buffer_;
    std::ostream stream_;
};

// The folder for temporary files: $TMPDIR when set, else /tmp.
std::string temporaryFolder();
