#pragma once
#include <vector>

#include "DistanceCorrCommonData.h"
#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "DistanceCorrResult.h"

class BpProcedure;
class ProcedureDataSource;

// The output stage (placeholder interface; the output stage fills it in).
class DistanceCorrOutputGen {
public:
    DistanceCorrOutputGen(BpProcedure& procedure, ProcedureDataSource& source,
                          const DistanceCorrInputSettings& settings,
                          std::vector<DistanceCorrResult>& results,
                          std::vector<DistanceCorrDescriptiveResult>& descriptives,
                          DistanceCorrCommonData& common);
    int start();
};
