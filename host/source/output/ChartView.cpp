#include "output/ChartView.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace host {

namespace {

std::string trim(const std::string& s) {
    const auto first = s.find_first_not_of(" \t");
    if (first == std::string::npos) return "";
    return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

// The text between `open` and the last `close` of the statement. Inserted
// texts are not escaped in the statements, so the last closing is the one.
bool quoted(const std::string& statement, const std::string& open, const std::string& close, std::string& text,
            std::size_t& openAt) {
    openAt = statement.find(open);
    if (openAt == std::string::npos) return false;
    const std::size_t start = openAt + open.size();
    std::size_t end = statement.rfind(close);
    if (end == std::string::npos || end < start) end = statement.size();
    text = statement.substr(start, end - start);
    return true;
}

}  // namespace

ChartView::ChartView(const rapidjson::Value& item, const ChartDataMap& charts) {
    if (item.IsObject() && item.HasMember("name") && item["name"].IsString()) title_ = item["name"].GetString();
    std::map<std::string, std::string> variables;  // GPL variable -> data column
    std::string xVariable = "xdata";
    std::string yVariable = "ydata";
    if (item.IsObject() && item.HasMember("gpl") && item["gpl"].IsArray()) {
        for (const auto& s : item["gpl"].GetArray()) {
            if (!s.IsString()) continue;
            const std::string statement = trim(std::string(s.GetString(), s.GetStringLength()));
            std::string text;
            std::size_t at = 0;
            if (statement.rfind("GUIDE:", 0) == 0 && quoted(statement, "label(\"", "\")", text, at)) {
                const std::string head = statement.substr(0, at);
                if (head.find("text.title") != std::string::npos) title_ = text;
                else if (head.find("dim(1)") != std::string::npos) xLabel_ = text;
                else if (head.find("dim(2)") != std::string::npos) yLabel_ = text;
            } else if (statement.rfind("DATA:", 0) == 0 && quoted(statement, "name(\"", "\")", text, at)) {
                const std::size_t eq = statement.find('=');
                if (eq != std::string::npos) variables[trim(statement.substr(5, eq - 5))] = text;
            } else if (statement.rfind("ELEMENT:", 0) == 0) {
                const std::size_t open = statement.find("position(");
                const std::size_t star = statement.find('*', open);
                const std::size_t close = statement.find(')', open);
                if (open != std::string::npos && star != std::string::npos && close != std::string::npos &&
                    star < close) {
                    xVariable = trim(statement.substr(open + 9, star - open - 9));
                    yVariable = trim(statement.substr(star + 1, close - star - 1));
                }
            }
        }
    }
    const ChartData* data = nullptr;
    if (item.IsObject() && item.HasMember("data") && item["data"].IsObject()) {
        const auto& d = item["data"];
        if (d.HasMember("id") && d["id"].IsString()) {
            auto it = charts.find(d["id"].GetString());
            if (it != charts.end()) data = it->second.get();
        }
    }
    auto columnName = [&](const std::string& variable) {
        auto it = variables.find(variable);
        return it != variables.end() ? it->second : variable;
    };
    x_ = column(columnName(xVariable), item, data, copyX_);
    y_ = column(columnName(yVariable), item, data, copyY_);
}

const std::vector<double>* ChartView::column(const std::string& name, const rapidjson::Value& item,
                                             const ChartData* data, std::vector<double>& copy) const {
    if (data != nullptr) {
        if (name == "xdata") return &data->x;
        if (name == "ydata") return &data->y;
    }
    // A chart whose columns were written into the document itself.
    if (item.IsObject() && item.HasMember("data") && item["data"].IsObject()) {
        const auto& d = item["data"];
        auto it = d.FindMember(name.c_str());
        if (it != d.MemberEnd() && it->value.IsArray()) {
            for (const auto& v : it->value.GetArray()) copy.push_back(v.IsNumber() ? v.GetDouble() : NAN);
        }
    }
    return &copy;
}

bool ChartView::range(double& xMin, double& xMax, double& yMin, double& yMax, std::size_t& finitePairs) const {
    finitePairs = 0;
    const std::size_t n = pairCount();
    for (std::size_t i = 0; i < n; ++i) {
        const double px = (*x_)[i];
        const double py = (*y_)[i];
        if (!std::isfinite(px) || !std::isfinite(py)) continue;
        if (finitePairs == 0) {
            xMin = xMax = px;
            yMin = yMax = py;
        } else {
            xMin = std::min(xMin, px);
            xMax = std::max(xMax, px);
            yMin = std::min(yMin, py);
            yMax = std::max(yMax, py);
        }
        ++finitePairs;
    }
    return finitePairs > 0;
}

}  // namespace host
