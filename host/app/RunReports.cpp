#include "RunReports.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

#include "StandardOutput.h"

namespace {

// Runs `step`; the reason when it throws, else "".
template <typename Step>
std::string problemOf(Step&& step) {
    try {
        step();
    } catch (const std::bad_alloc&) {
        return "there was not enough memory";
    } catch (const std::exception& e) {
        return e.what();
    }
    return "";
}

}  // namespace

RunReports::RunReports(std::string output, std::string html, StandardOutput& out)
    : outputPath_(std::move(output)), htmlPath_(std::move(html)), out_(out) {}

RunReports::~RunReports() = default;

void RunReports::open() {
    if (!outputPath_.empty()) {
        document_ = std::make_unique<ReportFile>(outputPath_, "output document", out_);
        const std::string problem =
            problemOf([this] { documentWriter_ = std::make_unique<host::OutputDocumentWriter>(document_->stream()); });
        if (!problem.empty()) document_->fail(problem);
    }
    if (!htmlPath_.empty()) {
        htmlBody_ = ReportFile::spoolFor(htmlPath_);
        html_ = std::make_unique<host::HtmlReport>(htmlBody_->stream());
    }
}

void RunReports::add(const host::RunRecord& run) {
    if (documentWriter_) {
        const std::string problem = problemOf([&] { documentWriter_->add(run); });
        if (!problem.empty()) {
            document_->fail(problem);
            documentWriter_.reset();
        }
    }
    if (html_ && htmlProblem_.empty()) htmlProblem_ = problemOf([&] { html_->add(run); });
}

bool RunReports::finish(const host::ReportContext& context) {
    bool written = true;
    if (document_) {
        if (documentWriter_) {
            const std::string problem = problemOf([this] { documentWriter_->finish(); });
            if (!problem.empty()) document_->fail(problem);
        }
        written &= document_->finish();
    }
    if (html_) {
        if (htmlProblem_.empty() && !htmlBody_->flush()) htmlProblem_ = htmlBody_->problem();
        if (!htmlProblem_.empty()) return ReportFile::notWritten("HTML report", htmlProblem_);
        written &= ReportFile::write(
            htmlPath_, "HTML report",
            [this, &context](std::ostream& page) {
                html_->finish(page, context, [this](std::ostream& body) {
                    if (!htmlBody_->copyTo(body)) throw std::runtime_error(htmlBody_->problem());
                });
            },
            out_);
    }
    return written;
}
