#pragma once
#include <cstddef>
#include <vector>

#include "DistanceSums.h"

class DependenceDistanceSource;

// The distance sums (S1, S2, S3) of every pair of the given sources,
// themselves included, in one pass over the case pairs i < j: O(n^2) time,
// O(n) memory, no matrix. Used where no O(n log n) form exists (sets of
// variables, an exponent other than 1). Each row's sums run in double over
// blocks of 256 and add up in long double; the column halves of the row sums
// are compensated.
class DependenceMatrixFreeSums {
public:
    explicit DependenceMatrixFreeSums(const std::vector<const DependenceDistanceSource*>& sources);

    // The sums of sources a and b (in either order).
    const DistanceSums& sums(std::size_t a, std::size_t b) const;

private:
    std::size_t count_;
    std::vector<DistanceSums> sums_;  // a * count + b, a <= b
};
