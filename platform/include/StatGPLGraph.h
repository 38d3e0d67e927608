#pragma once
#include <memory>
#include <string>
#include <vector>

#include <rapidjson/document.h>

class StatJSONGenerator;

// A chart described in the graph language. The host calls addGPLCommands while
// addGPLGraphToProcedureJSON runs; the derived class adds the "gpl" member.
class StatGPLGraph {
public:
    StatGPLGraph(StatJSONGenerator* generator, const std::string& name);
    StatGPLGraph(const StatGPLGraph&) = delete;
    StatGPLGraph& operator=(const StatGPLGraph&) = delete;
    virtual ~StatGPLGraph();

    virtual void addGPLCommands(rapidjson::Value& value,
                                rapidjson::MemoryPoolAllocator<>& allocator) = 0;

    // The x data (isX true) or the y data (isX false) of the chart.
    void setDataVector(std::vector<double> data, bool isX);
    void addGPLGraphToProcedureJSON();
    // Identifier of the data source that carries the chart's columns.
    std::string getProcedureName() const;
    std::string getName() const;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
};
