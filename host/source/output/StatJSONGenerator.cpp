#include "StatJSONGenerator.h"

#include <map>

#include "output/StatJSONGeneratorImpl.h"

namespace {

// Lets the converter, which receives only a document, find its generator
// and with it the chart data kept outside the document.
std::map<const rapidjson::Document*, StatJSONGenerator::Impl*>& registry() {
    static std::map<const rapidjson::Document*, StatJSONGenerator::Impl*> map;
    return map;
}

}  // namespace

StatJSONGenerator::Impl::Impl(std::string name, std::string sub)
    : procedureName(std::move(name)), subtitle(std::move(sub)) {
    reset();
    registry()[&document] = this;
}

StatJSONGenerator::Impl::~Impl() { registry().erase(&document); }

void StatJSONGenerator::Impl::reset() {
    rapidjson::Document fresh;
    fresh.SetObject();
    auto& a = fresh.GetAllocator();
    fresh.AddMember("procedure", rapidjson::Value(procedureName.c_str(), a), a);
    if (!subtitle.empty()) fresh.AddMember("subtitle", rapidjson::Value(subtitle.c_str(), a), a);
    fresh.AddMember("items", rapidjson::Value(rapidjson::kArrayType), a);
    document.Swap(fresh);
    charts.clear();
}

void StatJSONGenerator::Impl::addItem(rapidjson::Value& item) {
    if (!document.IsObject() || !document.HasMember("items") || !document["items"].IsArray()) reset();
    document["items"].PushBack(item, allocator());
}

std::string StatJSONGenerator::Impl::newChartId() {
    return procedureName + "/chart" + std::to_string(++chartsCreated);
}

StatJSONGenerator::Impl* StatJSONGenerator::Impl::owning(const rapidjson::Document& document) {
    auto it = registry().find(&document);
    return it == registry().end() ? nullptr : it->second;
}

StatJSONGenerator::StatJSONGenerator(const std::string& procedureName, const std::string& subtitle)
    : impl_(std::make_unique<Impl>(procedureName, subtitle)) {}

StatJSONGenerator::~StatJSONGenerator() = default;

rapidjson::Document& StatJSONGenerator::getProcedureStatJSON() { return impl_->document; }

std::string StatJSONGenerator::getProcedureName() const { return impl_->procedureName; }

StatJSONGenerator::Impl& StatJSONGenerator::impl() { return *impl_; }
