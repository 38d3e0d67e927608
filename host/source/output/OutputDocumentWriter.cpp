#include "output/OutputDocumentWriter.h"

#include <ostream>

#include "output/OrderedTextPipeline.h"

namespace host {

namespace {

std::string text(const rapidjson::Value& v) { return std::string(v.GetString(), v.GetStringLength()); }

// A chart's "data" member: its DOM members, then the columns kept outside
// the DOM, streamed.
void writeChartData(JsonStreamWriter& w, const rapidjson::Value& data, const ChartDataMap& charts) {
    const ChartData* columns = nullptr;
    if (data.IsObject() && data.HasMember("id") && data["id"].IsString() && !data.HasMember("xdata")) {
        auto it = charts.find(text(data["id"]));
        if (it != charts.end()) columns = it->second.get();
    }
    if (columns == nullptr) {
        w.value(data);
        return;
    }
    w.beginObject();
    for (const auto& member : data.GetObject()) {
        w.key(text(member.name));
        w.value(member.value);
    }
    w.key("xdata");
    w.numberArray(columns->x);
    w.key("ydata");
    w.numberArray(columns->y);
    w.endObject();
}

void writeItem(JsonStreamWriter& w, const rapidjson::Value& item, const ChartDataMap& charts) {
    if (!item.IsObject()) {
        w.value(item);
        return;
    }
    w.beginObject();
    for (const auto& member : item.GetObject()) {
        const std::string name = text(member.name);
        w.key(name);
        if (name == "data")
            writeChartData(w, member.value, charts);
        else
            w.value(member.value);
    }
    w.endObject();
}

void writeOutput(JsonStreamWriter& w, const rapidjson::Value& output, const ChartDataMap& charts) {
    if (!output.IsObject()) {
        w.value(output);
        return;
    }
    w.beginObject();
    for (const auto& member : output.GetObject()) {
        const std::string name = text(member.name);
        w.key(name);
        if (name == "items" && member.value.IsArray()) {
            w.beginArray(member.value.Empty());
            for (const auto& item : member.value.GetArray()) writeItem(w, item, charts);
            w.endArray();
        } else {
            w.value(member.value);
        }
    }
    w.endObject();
}

}  // namespace

OutputDocumentWriter::OutputDocumentWriter(std::ostream& out) : writer_(out, OrderedTextPipeline::defaultThreads()) {
    writer_.beginObject();
    writer_.key("runs");
    // An array of objects, one per line; an empty one is "[]" all the same.
    writer_.beginArray(false);
}

void OutputDocumentWriter::add(const RunRecord& run) {
    JsonStreamWriter& w = writer_;
    w.beginObject();
    w.key("command");
    w.string(run.command);
    w.key("messages");
    w.beginArray(run.messages.empty());
    for (const HostMessage& m : run.messages) {
        w.beginObject();
        w.key("level");
        w.string(messageLevelName(m.level));
        w.key("text");
        w.string(m.text);
        w.endObject();
    }
    w.endArray();
    if (run.output) {
        w.key("output");
        writeOutput(w, *run.output, run.charts);
    }
    w.endObject();
}

void OutputDocumentWriter::finish() {
    writer_.endArray();
    writer_.endObject();
    writer_.finish();
}

void writeOutputDocument(std::ostream& out, const std::vector<RunRecord>& runs) {
    OutputDocumentWriter writer(out);
    for (const RunRecord& run : runs) writer.add(run);
    writer.finish();
}

}  // namespace host
