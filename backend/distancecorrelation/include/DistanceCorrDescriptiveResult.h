#pragma once
#include <cstdint>
#include <string>
#include <vector>

// Statistics and distances of one analysis variable.
struct DistanceCorrDescriptiveResult {
    std::uint64_t n = 0;
    double mean = 0.0;
    double stdDev = 0.0;
    double minimum = 0.0;
    double maximum = 0.0;
    double distVariance = 0.0;
    std::string varName;
    std::string varLabel;
    std::vector<std::vector<double>> distanceMatrix;
    std::vector<double> values;
};
