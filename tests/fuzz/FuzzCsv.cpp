// Fuzz target: the CSV file (without a dictionary), then a command over its
// first numeric variables that asks for every output.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "FuzzPipeline.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::pipeline();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const std::string csv = fuzz::pipeline().writeFile("data.csv", text);
    fuzz::pipeline().runEveryOutput(csv, "", static_cast<unsigned>(size));
    fuzz::pipeline().cleanUp({});
    return 0;
}
