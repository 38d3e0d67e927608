#pragma once
#include <cstddef>
#include <vector>

#include "DependenceSettings.h"
#include "PermutedCrossSums.h"

// The permuted statistic of two single variables (exponent 1) in O(n log n)
// per replicate without matrices: the centred inner product of the distance
// matrices, V- or U-centred, from the permuted sums S1 and S2. Each worker
// sweeps its own copy of the sums.
class DependencePairPermutation {
public:
    // x stays in place, y is shuffled.
    DependencePairPermutation(const std::vector<double>& x, const std::vector<double>& y, DependenceStatistic statistic,
                              unsigned workers);

    double statistic(const std::vector<std::size_t>& index, unsigned worker);

private:
    std::size_t n_;
    DependenceStatistic statistic_;
    std::vector<PermutedCrossSums> sums_;
};
