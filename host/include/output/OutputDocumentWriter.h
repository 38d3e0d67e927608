#pragma once
#include <ostream>

#include "output/JsonStreamWriter.h"
#include "output/Report.h"

namespace host {

// Writes the output document one run at a time, as the runs end, so that no
// run needs to be kept until the end:
// {"runs": [{"command", "messages": [{"level", "text"}], "output"}]}.
// The bytes are those of writeOutputDocument for the same runs.
class OutputDocumentWriter {
public:
    // Writes the start of the document.
    explicit OutputDocumentWriter(std::ostream& out);
    OutputDocumentWriter(const OutputDocumentWriter&) = delete;
    OutputDocumentWriter& operator=(const OutputDocumentWriter&) = delete;

    void add(const RunRecord& run);
    // Ends the document and writes out what is buffered.
    void finish();

private:
    JsonStreamWriter writer_;
};

}  // namespace host
