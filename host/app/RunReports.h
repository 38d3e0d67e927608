#pragma once
#include <memory>
#include <string>

#include "ReportFile.h"
#include "SpoolFile.h"
#include "output/HtmlReport.h"
#include "output/OutputDocumentWriter.h"
#include "output/Report.h"

class StandardOutput;

// The output document (--output) and the HTML report (--html) of a run,
// each optional. Every run is written as it ends and then let go, so that
// memory does not grow with the number of commands: the document goes to
// its report file as it is made, the HTML report's runs to a nameless
// temporary file, which is copied behind the page's head at the end.
class RunReports {
public:
    // Empty paths mean no such report.
    RunReports(std::string output, std::string html, StandardOutput& out);
    RunReports(const RunReports&) = delete;
    RunReports& operator=(const RunReports&) = delete;
    ~RunReports();

    // Starts the reports; before the first run.
    void open();
    void add(const host::RunRecord& run);
    // Completes the reports; false when one could not be written (said on
    // standard error).
    bool finish(const host::ReportContext& context);

private:
    std::string outputPath_;
    std::string htmlPath_;
    StandardOutput& out_;
    std::unique_ptr<ReportFile> document_;
    std::unique_ptr<host::OutputDocumentWriter> documentWriter_;
    std::unique_ptr<SpoolFile> htmlBody_;
    std::unique_ptr<host::HtmlReport> html_;
    std::string htmlProblem_;
};
