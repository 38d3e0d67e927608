#include "StatGPLGraph.h"

#include <utility>

#include "StatJSONGenerator.h"
#include "output/ChartData.h"
#include "output/StatJSONGeneratorImpl.h"

struct StatGPLGraph::Impl {
    StatJSONGenerator* generator = nullptr;
    std::string name;
    std::string dataId;
    // Shared with the generator once the chart was added; changed data after
    // that goes to a new copy so that the added chart keeps its points.
    std::shared_ptr<host::ChartData> data = std::make_shared<host::ChartData>();
};

StatGPLGraph::StatGPLGraph(StatJSONGenerator* generator, const std::string& name)
    : impl_(std::make_unique<Impl>()) {
    impl_->generator = generator;
    impl_->name = name;
    impl_->dataId = generator != nullptr ? generator->impl().newChartId() : "chart";
}

StatGPLGraph::~StatGPLGraph() = default;

void StatGPLGraph::setDataVector(std::vector<double> data, bool isX) {
    if (impl_->data.use_count() > 1) impl_->data = std::make_shared<host::ChartData>(*impl_->data);
    (isX ? impl_->data->x : impl_->data->y) = std::move(data);
}

void StatGPLGraph::addGPLGraphToProcedureJSON() {
    if (impl_->generator == nullptr) return;
    StatJSONGenerator::Impl& generator = impl_->generator->impl();
    auto& a = generator.allocator();
    rapidjson::Value item(rapidjson::kObjectType);
    item.AddMember("type", "chart", a);
    item.AddMember("name", rapidjson::Value(impl_->name.c_str(), a), a);
    addGPLCommands(item, a);
    // The columns themselves stay outside the document; the writer streams
    // them into "data" as "xdata" and "ydata".
    rapidjson::Value data(rapidjson::kObjectType);
    data.AddMember("id", rapidjson::Value(impl_->dataId.c_str(), a), a);
    if (item.HasMember("data")) item.RemoveMember("data");
    item.AddMember("data", data, a);
    generator.charts[impl_->dataId] = impl_->data;
    generator.addItem(item);
}

std::string StatGPLGraph::getProcedureName() const { return impl_->dataId; }

std::string StatGPLGraph::getName() const { return impl_->name; }
