#pragma once
#include <functional>
#include <ostream>
#include <string>

class StandardOutput;

// Where --output and --html write: "-" is standard output; an existing
// device or pipe (/dev/null, a FIFO) and any name under /dev or /proc are
// written in place; anything else is
// written to a temporary file beside the target and renamed over it only
// when complete, so a failure never damages an existing file. A link is
// followed and the file it names is replaced, not the link.
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

    // Writes the report; on failure reports "Error: the <what> was not
    // written: <reason>." on standard error and returns false.
    static bool write(const std::string& path, const std::string& what, const Writer& writer, StandardOutput& out);
};
