#include "output/Report.h"

#include "output/SessionChartData.h"

namespace host {

namespace {

// Chart ids the document refers to, so that stale chart data is dropped.
void collectChartIds(const rapidjson::Value& output, std::vector<std::string>& ids) {
    if (!output.IsObject() || !output.HasMember("items") || !output["items"].IsArray()) return;
    for (const auto& item : output["items"].GetArray()) {
        if (!item.IsObject() || !item.HasMember("data")) continue;
        const rapidjson::Value& data = item["data"];
        if (data.IsObject() && data.HasMember("id") && data["id"].IsString())
            ids.emplace_back(data["id"].GetString(), data["id"].GetStringLength());
    }
}

}  // namespace

const char* messageLevelName(MessageLevel level) {
    switch (level) {
    case MessageLevel::Error: return "error";
    case MessageLevel::Warning: return "warning";
    case MessageLevel::Note: return "note";
    }
    return "note";
}

RunRecord takeRunRecord(const std::string& command) {
    HostSession& session = HostSession::instance();
    RunRecord record;
    record.command = command;
    record.messages = session.messages();
    record.output = session.takeOutputDocument();
    ChartDataMap charts = takeSessionChartData();
    if (record.output) {
        std::vector<std::string> ids;
        collectChartIds(*record.output, ids);
        for (const std::string& id : ids) {
            auto it = charts.find(id);
            if (it != charts.end()) record.charts.insert(*it);
        }
    }
    return record;
}

}  // namespace host
