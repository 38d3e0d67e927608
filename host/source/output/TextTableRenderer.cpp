#include "output/TextTableRenderer.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "output/Utf8Text.h"

namespace host {

namespace {

constexpr std::size_t kGap = 2;  // blanks between columns

enum class Align { Left, Right, Centre };

// A line assembled left to right from texts placed at display positions.
class Line {
public:
    void place(std::size_t position, std::size_t width, const std::string& text, Align align) {
        const std::size_t w = displayWidth(text);
        std::size_t start = position;
        if (w < width) {
            if (align == Align::Right) start += width - w;
            if (align == Align::Centre) start += (width - w) / 2;
        }
        if (start > used_) text_.append(start - used_, ' ');
        text_ += text;
        used_ = std::max(used_, start) + w;
    }
    void fill(std::size_t position, std::size_t width, char c) { place(position, width, std::string(width, c), Align::Left); }
    std::string str() const {
        std::string s = text_;
        s.erase(s.find_last_not_of(' ') + 1);
        return s;
    }

private:
    std::string text_;
    std::size_t used_ = 0;
};

std::size_t spanWidth(const std::vector<std::size_t>& widths, std::size_t first, std::size_t count) {
    std::size_t w = 0;
    for (std::size_t i = first; i < first + count && i < widths.size(); ++i) w += widths[i];
    return w + kGap * (count > 0 ? count - 1 : 0);
}

}  // namespace

void TextTableRenderer::render(std::ostream& out, const PivotLayout& t) {
    // Column widths: the widest text of each column, then widened so that
    // every header fits over the columns it spans.
    std::vector<std::size_t> stubWidths(t.stubColumns, 0);
    stubWidths[0] = displayWidth(t.stubHeader);
    for (const auto& row : t.stub)
        for (std::size_t k = 0; k < t.stubColumns; ++k) stubWidths[k] = std::max(stubWidths[k], displayWidth(row[k]));
    std::vector<std::size_t> widths(t.columns, 1);
    for (const auto& row : t.data)
        for (std::size_t c = 0; c < t.columns; ++c) widths[c] = std::max(widths[c], displayWidth(row[c].text));
    std::vector<const PivotLayout::HeaderCell*> bySpan;
    for (const auto& h : t.headers) bySpan.push_back(&h);
    std::stable_sort(bySpan.begin(), bySpan.end(),
                     [](const auto* a, const auto* b) { return a->columnSpan < b->columnSpan; });
    for (const auto* h : bySpan) {
        const std::size_t need = displayWidth(h->text);
        const std::size_t have = spanWidth(widths, h->column, h->columnSpan);
        if (need <= have) continue;
        const std::size_t extra = need - have;
        for (std::size_t i = 0; i < h->columnSpan; ++i)
            widths[h->column + i] += extra / h->columnSpan + (i >= h->columnSpan - extra % h->columnSpan ? 1 : 0);
    }

    const std::size_t stubWidth = spanWidth(stubWidths, 0, t.stubColumns);
    std::vector<std::size_t> position(t.columns);
    std::size_t x = stubWidth + kGap;
    for (std::size_t c = 0; c < t.columns; ++c) {
        position[c] = x;
        x += widths[c] + kGap;
    }
    const std::size_t total = t.columns == 0 ? stubWidth : x - kGap;

    if (t.showTitle) {
        out << t.title;
        if (!t.titleMarkers.empty()) out << " [" << t.titleMarkers << "]";
        out << '\n';
    }
    out << std::string(total, '=') << '\n';
    for (std::size_t r = 0; r < t.headerRows; ++r) {
        Line line;
        Line rule;
        bool underline = false;
        if (r + 1 == t.headerRows) line.place(0, stubWidth, t.stubHeader, Align::Left);
        // A leaf stands in the bottom row of the rows it spans; the cells of
        // a line are placed left to right.
        std::vector<const PivotLayout::HeaderCell*> shown;
        for (const auto& h : t.headers)
            if ((h.isGroup ? h.row : h.row + h.rowSpan - 1) == r) shown.push_back(&h);
        std::sort(shown.begin(), shown.end(), [](const auto* a, const auto* b) { return a->column < b->column; });
        for (const auto* cell : shown) {
            const PivotLayout::HeaderCell& h = *cell;
            const std::size_t width = spanWidth(widths, h.column, h.columnSpan);
            const Align align = h.isGroup ? Align::Centre : (t.numericColumn[h.column] ? Align::Right : Align::Left);
            line.place(position[h.column], width, h.text, align);
            if (h.isGroup && !h.text.empty()) {
                rule.fill(position[h.column], width, '-');
                underline = true;
            }
        }
        out << line.str() << '\n';
        if (underline) out << rule.str() << '\n';
    }
    if (t.headerRows > 0) out << std::string(total, '-') << '\n';
    for (std::size_t r = 0; r < t.data.size(); ++r) {
        Line line;
        std::size_t sx = 0;
        for (std::size_t k = 0; k < t.stubColumns; ++k) {
            line.place(sx, stubWidths[k], t.stub[r][k], Align::Left);
            sx += stubWidths[k] + kGap;
        }
        for (std::size_t c = 0; c < t.columns; ++c)
            line.place(position[c], widths[c], t.data[r][c].text, t.data[r][c].numeric ? Align::Right : Align::Left);
        out << line.str() << '\n';
    }
    out << std::string(total, '=') << '\n';
    for (const auto& [marker, text] : t.footnotes) out << marker << ". " << text << '\n';
}

}  // namespace host
