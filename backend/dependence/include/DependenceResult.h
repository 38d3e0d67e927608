#pragma once
#include <cstddef>
#include <limits>
#include <string>

// One row of the output: a compared pair (or pair of sets) and its results.
// Values that do not apply, or could not be computed, are NaN.
struct DependenceResult {
    std::string label;  // "a vs. b", "(a, b) vs. (c, d)"
    std::size_t n = 0;  // cases used
    bool computed = false;
    double correlation = std::numeric_limits<double>::quiet_NaN();
    double covariance = std::numeric_limits<double>::quiet_NaN();
    double tStatistic = std::numeric_limits<double>::quiet_NaN();
    double df = std::numeric_limits<double>::quiet_NaN();
    double pValue = std::numeric_limits<double>::quiet_NaN();
};
