#include "StatJSONConverter.h"

#include <memory>

#include "BpProcedure.h"
#include "output/BpProcedureImpl.h"
#include "output/StatJSONGeneratorImpl.h"

StatJSONConverter::StatJSONConverter(BpProcedure& procedure) : procedure_(procedure) {}

StatJSONConverter::~StatJSONConverter() = default;

void StatJSONConverter::generateOutput(rapidjson::Document& document) {
    auto output = std::make_unique<rapidjson::Document>();
    output->Swap(document);
    host::ChartDataMap charts;
    if (StatJSONGenerator::Impl* generator = StatJSONGenerator::Impl::owning(document)) {
        charts = std::move(generator->charts);
        // The generator goes on with an empty document of its procedure.
        generator->reset();
    }
    procedure_.impl().setOutput(std::move(output), std::move(charts));
}
