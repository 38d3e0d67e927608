#include "output/SessionChartData.h"

#include <utility>

namespace host {

namespace {

ChartDataMap& sessionCharts() {
    static ChartDataMap charts;
    return charts;
}

}  // namespace

void setSessionChartData(ChartDataMap charts) { sessionCharts() = std::move(charts); }

ChartDataMap takeSessionChartData() {
    ChartDataMap charts = std::move(sessionCharts());
    sessionCharts().clear();
    return charts;
}

const ChartData* findSessionChartData(const std::string& id) {
    auto it = sessionCharts().find(id);
    return it == sessionCharts().end() ? nullptr : it->second.get();
}

}  // namespace host
