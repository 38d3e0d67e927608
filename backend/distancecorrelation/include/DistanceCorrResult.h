#pragma once
#include <string>

// Statistics of one variable pair, each number rounded to 4 decimals.
struct DistanceCorrResult {
    double pValue = 0.0;
    double dCor = 0.0;
    double dCov = 0.0;
    double permLower = 0.0;
    double permUpper = 0.0;
    double ciLower = 0.0;
    double ciUpper = 0.0;
    std::string varName1;
    std::string varName2;
};
