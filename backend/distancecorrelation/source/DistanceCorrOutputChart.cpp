#include "DistanceCorrOutputChart.h"

#include <vector>

DistanceCorrOutputChart::DistanceCorrOutputChart(StatJSONGenerator* generator,
                                                 const std::string& name)
    : StatGPLGraph(generator, name) {}

DistanceCorrOutputChart::~DistanceCorrOutputChart() = default;

void DistanceCorrOutputChart::setLabel(bool isX, const std::string& label) {
    if (isX)
        xAxisLabel_ = label;
    else
        yAxisLabel_ = label;
}

void DistanceCorrOutputChart::addGPLCommands(rapidjson::Value& value,
                                             rapidjson::MemoryPoolAllocator<>& allocator) {
    // Names are inserted as they are; the column names match the data
    // vectors handed over for the x axis (xdata) and the y axis (ydata).
    const std::string close = "\"))";
    const std::vector<std::string> statements{
        "SOURCE: s = userSource(id(\"" + getProcedureName() + close,
        "DATA: xdata  = col(source(s), name(\"xdata\"))",
        "DATA: ydata  = col(source(s), name(\"ydata\"))",
        "GRAPH: begin()",
        // The y-axis guide precedes the x-axis guide.
        "GUIDE: axis(dim(2),label(\"" + yAxisLabel_ + close,
        "GUIDE: axis(dim(1),label(\"" + xAxisLabel_ + close,
        "GUIDE: text.title(label(\"" + getName() + close,
        "ELEMENT: point(position(xdata*ydata))",
        "GRAPH: end()"};

    rapidjson::Value gpl(rapidjson::kArrayType);
    for (const std::string& statement : statements) {
        rapidjson::Value text(statement.c_str(),
                              static_cast<rapidjson::SizeType>(statement.size()), allocator);
        gpl.PushBack(text, allocator);
    }
    if (!value.IsObject()) value.SetObject();
    value.RemoveMember("gpl");
    value.AddMember("gpl", gpl, allocator);
}
