#pragma once
#include <string>

#include <rapidjson/document.h>

#include "StatJSONGenerator.h"
#include "output/ChartData.h"

// The procedure's output document under construction:
// {"procedure": name, ["subtitle": text,] "items": [...]}, and the data of
// its charts, which stays outside the DOM.
struct StatJSONGenerator::Impl {
    std::string procedureName;
    std::string subtitle;
    rapidjson::Document document;
    host::ChartDataMap charts;
    int chartsCreated = 0;

    Impl(std::string name, std::string sub);
    ~Impl();
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    rapidjson::MemoryPoolAllocator<>& allocator() { return document.GetAllocator(); }
    // Starts an empty document (also after it was handed over).
    void reset();
    // Appends an item (moved out of value) to "items".
    void addItem(rapidjson::Value& item);
    // Identifier of the next chart's data: "<procedure name>/chart<k>".
    std::string newChartId();

    // The generator whose document this is, or null.
    static Impl* owning(const rapidjson::Document& document);
};
