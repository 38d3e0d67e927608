// Fuzz target: the syntax text, run on a small fixed data set with scale,
// nominal, ordinal and text variables and a missing value.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "FuzzPipeline.h"

namespace {

const char* const kData =
    "id,x1,x2,x3,x4,grp,lvl,name\n"
    "1,3.2,2.0,8.4,1,1,1,ann\n"
    "2,1.5,1.1,2.6,2,1,2,bob\n"
    "3,4.8,3.9,,3,2,3,cy\n"
    "4,2.2,2.5,5.1,5,2,1,dee\n"
    "5,5.0,4.1,9.7,8,1,2,eve\n"
    "6,0.7,0.9,1.2,13,2,3,flo\n";

const char* const kSchema =
    R"({"title": "Fuzz data", "fields": [
  {"name": "id", "type": "integer"},
  {"name": "x1", "type": "number", "title": "First"},
  {"name": "x2", "type": "number"},
  {"name": "x3", "type": "number"},
  {"name": "x4", "type": "number", "missingValues": ["13"]},
  {"name": "grp", "type": "integer", "measurementLevel": "nominal", "categories": [{"value": 1, "label": "A"}, 2]},
  {"name": "lvl", "type": "integer", "measurementLevel": "ordinal"},
  {"name": "name", "type": "string"}]})";

std::string csvPath;
std::string schemaPath;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    csvPath = fuzz::pipeline().writeFile("data.csv", kData);
    schemaPath = fuzz::pipeline().writeFile("data.schema.json", kSchema);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view syntax(reinterpret_cast<const char*>(bytes), size);
    if (fuzz::outsideTheSandbox(syntax)) return -1;
    fuzz::pipeline().run(csvPath, schemaPath, syntax);
    fuzz::pipeline().cleanUp({"data.csv", "data.schema.json"});
    return 0;
}
