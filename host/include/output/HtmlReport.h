#pragma once
#include <cstddef>
#include <functional>
#include <ostream>
#include <set>

#include "output/Report.h"

namespace host {

// Builds the HTML report one run at a time. The page's style sheet, in its
// head, holds the rule of every table's minimum column width, which is known
// only when every run is in; so the runs go to a body stream as they end,
// and finish() writes the head, the header and then the body, which the
// caller hands back (from memory or from a temporary file). The bytes are
// those of writeHtmlReport for the same runs.
class HtmlReport {
public:
    // Writes the body of every run to `body`.
    using BodyCopier = std::function<void(std::ostream&)>;

    explicit HtmlReport(std::ostream& body) : body_(body) {}
    HtmlReport(const HtmlReport&) = delete;
    HtmlReport& operator=(const HtmlReport&) = delete;

    void add(const RunRecord& run);
    // The whole page: the head, the header of the context's facts, the body
    // (copied by `copyBody`) and the end.
    void finish(std::ostream& out, const ReportContext& context, const BodyCopier& copyBody) const;

private:
    std::ostream& body_;
    std::set<int> minWidths_;
    std::size_t runs_ = 0;
};

}  // namespace host
