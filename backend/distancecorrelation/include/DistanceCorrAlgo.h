#pragma once
#include <vector>

#include "DistanceCorrCommonData.h"
#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"
#include "DistanceCorrResult.h"
#include "ParserMessage.h"

// The computation engine (placeholder interface; the engine fills it in).
class DistanceCorrAlgo {
public:
    DistanceCorrAlgo(const DistanceCorrInputSettings& settings, std::vector<DistanceCorrResult>& results,
                     std::vector<DistanceCorrDescriptiveResult>& descriptives,
                     DistanceCorrCommonData& common);
    int start();

private:
    const DistanceCorrInputSettings& settings_;
    std::vector<DistanceCorrResult>& results_;
    std::vector<DistanceCorrDescriptiveResult>& descriptives_;
    DistanceCorrCommonData& common_;
    ParserMessage message_;
};
