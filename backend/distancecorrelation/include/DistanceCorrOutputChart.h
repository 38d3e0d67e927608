#pragma once
#include <string>

#include <rapidjson/document.h>

#include "StatGPLGraph.h"

class StatJSONGenerator;

// The scatter plot of pairwise distances: writes the chart's graph-language
// statements; the data vectors are held by the base.
class DistanceCorrOutputChart : public StatGPLGraph {
public:
    DistanceCorrOutputChart(StatJSONGenerator* generator, const std::string& name);
    ~DistanceCorrOutputChart() override;

    // isX true sets the x-axis label, false the y-axis label.
    void setLabel(bool isX, const std::string& label);

    // Adds the statements as the array member "gpl" of value.
    void addGPLCommands(rapidjson::Value& value,
                        rapidjson::MemoryPoolAllocator<>& allocator) override;

private:
    std::string xAxisLabel_;
    std::string yAxisLabel_;
};
