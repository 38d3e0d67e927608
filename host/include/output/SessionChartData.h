#pragma once
#include <string>

#include "output/ChartData.h"

namespace host {

// The chart data of the session's output document. The procedure frame sets
// it together with the document; takeRunRecord takes both.
void setSessionChartData(ChartDataMap charts);
ChartDataMap takeSessionChartData();
// Null when the session's output has no chart data of this id.
const ChartData* findSessionChartData(const std::string& id);

}  // namespace host
