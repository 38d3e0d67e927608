#pragma once
#include <ctime>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <rapidjson/document.h>

#include "HostSession.h"
#include "output/ChartData.h"

namespace host {

// What one command left behind: its text, its messages and the output
// document its procedure handed over (null if none), with the data of the
// document's charts, which is kept outside the document.
struct RunRecord {
    std::string command;
    std::vector<HostMessage> messages;
    std::unique_ptr<rapidjson::Document> output;
    ChartDataMap charts;
};

// The level as the reports write it: "error", "warning" or "note".
const char* messageLevelName(MessageLevel level);

// Takes the session's output document and its chart data, and copies the
// session's messages, into a record of the command.
RunRecord takeRunRecord(const std::string& command);

// The output document of the runs, as JSON:
// {"runs": [{"command", "messages": [{"level", "text"}], "output"}]}.
// OutputDocumentWriter writes the same bytes one run at a time.
void writeOutputDocument(std::ostream& out, const std::vector<RunRecord>& runs);

// The run's output as text: tables laid out as pivot tables, charts as a note
// with a small sketch. Messages are not repeated (the session shows them on
// standard error as they arise). Nothing when the run has no output.
void renderText(std::ostream& out, const RunRecord& run);

// What the HTML report's header tells about the session, from the caller.
struct ReportContext {
    std::string dataFile;     // the data file as the user named it
    std::size_t cases = 0;    // cases loaded
    int variables = 0;        // variables loaded
    std::string language;     // language of the output labels, "" for English
    std::time_t created = 0;  // when the report was made, shown in local time
};

// One self-contained HTML page (no external resources, styles in its head)
// with a header of the context's facts and the distcorr version, then every
// run's command, messages, tables and charts. HtmlReport builds the same
// page one run at a time.
void writeHtmlReport(std::ostream& out, const std::vector<RunRecord>& runs, const ReportContext& context);

// Charts with more points than this are drawn as a density image.
constexpr std::size_t kHtmlPointLimit = 20000;

}  // namespace host
