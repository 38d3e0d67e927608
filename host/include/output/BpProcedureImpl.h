#pragma once
#include <memory>
#include <string>

#include <rapidjson/document.h>

#include "BpProcedure.h"
#include "output/ChartData.h"

struct BpProcedure::Impl {
    std::string title;
    int kind = 0;
    bool outputHandedOver = false;

    // Stores the run's output document (and its chart data) as the session's output.
    void setOutput(std::unique_ptr<rapidjson::Document> document, host::ChartDataMap charts);
};
