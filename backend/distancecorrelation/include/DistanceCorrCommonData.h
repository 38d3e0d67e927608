#pragma once
#include <vector>

// Run-wide results: the ID values of the cases kept.
struct DistanceCorrCommonData {
    std::vector<double> idValues;
};
