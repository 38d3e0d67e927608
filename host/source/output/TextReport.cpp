#include <ostream>

#include "output/ChartView.h"
#include "output/PivotLayout.h"
#include "output/Report.h"
#include "output/TextChartRenderer.h"
#include "output/TextTableRenderer.h"

namespace host {

namespace {

std::string stringMember(const rapidjson::Value& object, const char* name) {
    if (!object.IsObject()) return "";
    auto it = object.FindMember(name);
    return it != object.MemberEnd() && it->value.IsString() ? it->value.GetString() : "";
}

}  // namespace

void renderText(std::ostream& out, const RunRecord& run) {
    if (!run.output || !run.output->IsObject()) return;
    const rapidjson::Value& output = *run.output;
    out << stringMember(output, "procedure") << '\n';
    const std::string subtitle = stringMember(output, "subtitle");
    if (!subtitle.empty()) out << subtitle << '\n';
    auto items = output.FindMember("items");
    if (items != output.MemberEnd() && items->value.IsArray()) {
        for (const auto& item : items->value.GetArray()) {
            const std::string type = stringMember(item, "type");
            if (type == "table") {
                out << '\n';
                TextTableRenderer::render(out, PivotLayout(item));
            } else if (type == "chart") {
                out << '\n';
                TextChartRenderer::render(out, ChartView(item, run.charts));
            }
        }
    }
    out << '\n';
}

}  // namespace host
