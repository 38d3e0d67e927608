// Fuzz target: the Table Schema dictionary of a small fixed CSV file, then a
// command over the first numeric variables that asks for every output.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "FuzzPipeline.h"

namespace {

// Names and values the seed schemas describe; a schema may make any of them
// text, nominal, ordinal or missing.
const char* const kData =
    "id,x,y,z,grp,lvl,label\n"
    "1,3.2,2.0,8.4,1,1,a\n"
    "2,1.5,-9,2.6,1,2,b\n"
    "3,4.8,3.9,,2,3,c\n"
    "4,2.2,2.5,5.1,2,1,\n"
    "5,5.0,4.1,9.7,1,2,e\n";

std::string csvPath;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    csvPath = fuzz::pipeline().writeFile("data.csv", kData);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const std::string schema = fuzz::pipeline().writeFile("data.schema.json", text);
    fuzz::pipeline().runEveryOutput(csvPath, schema, static_cast<unsigned>(size));
    fuzz::pipeline().cleanUp({"data.csv"});
    return 0;
}
