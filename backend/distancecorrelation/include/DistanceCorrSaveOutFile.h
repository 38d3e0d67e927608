#pragma once
#include <vector>

#include "DistanceCorrDescriptiveResult.h"
#include "DistanceCorrInputSettings.h"

// The saved distance file (placeholder interface; the save stage fills it in).
class DistanceCorrSaveOutFile {
public:
    DistanceCorrSaveOutFile(const DistanceCorrInputSettings& settings,
                            std::vector<DistanceCorrDescriptiveResult>& descriptives);
    unsigned start();
};
