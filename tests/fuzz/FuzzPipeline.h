#pragma once
// The whole distcorr pipeline in one process, for the fuzz targets: load a
// data set, split and parse the syntax, run each command through the
// procedure found by its manifest, and render the text, JSON and HTML
// reports in memory.
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "DataSet.h"

#include "runner/ProcedureRegistry.h"

namespace fuzz {

class FuzzPipeline {
public:
    // Runs commands in a fresh folder of its own, so that saved files stay
    // there, with the messages of the host kept quiet. Build it from
    // LLVMFuzzerInitialize: it loads the procedures.
    FuzzPipeline();

    // A file in the pipeline's folder holding exactly these bytes; its path.
    std::string writeFile(const std::string& name, std::string_view bytes) const;

    // Loads the data set (an empty schemaPath looks for NAME.schema.json) and
    // runs the syntax on it. A data set that cannot be loaded is refused the
    // way distcorr refuses it; everything else must neither crash nor throw.
    void run(const std::string& csvPath, const std::string& schemaPath, std::string_view syntax);

    // The same with a command over the first numeric variables of the data
    // set that asks for every table, the chart, the permutation test and a
    // saved file. The rescaling is chosen by the seed.
    void runEveryOutput(const std::string& csvPath, const std::string& schemaPath, unsigned seed);

    // Removes every file the commands left in the folder except those named.
    void cleanUp(std::initializer_list<std::string> keep) const;

private:
    std::shared_ptr<host::DataSet> load(const std::string& csvPath, const std::string& schemaPath) const;
    void runSyntax(std::shared_ptr<host::DataSet> data, std::string_view syntax);

    std::string folder_;
    host::ProcedureRegistry registry_;
};

// True when the syntax could write outside the pipeline's folder (a quoted
// file name with a folder or a home folder in it) or asks for more than
// 2,000 permutations, which only costs time.
bool outsideTheSandbox(std::string_view syntax);

// The one pipeline of a fuzz target.
FuzzPipeline& pipeline();

}  // namespace fuzz
