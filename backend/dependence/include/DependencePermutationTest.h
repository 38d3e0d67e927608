#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

// The seeded permutation test of one comparison. Replicate t shuffles the
// cases with the t-th permutation of the shared stream (PermutationStream),
// so the p-value depends only on the seed, the replicates and the data: the
// replicates are cut into fixed blocks that run on the host's workers where
// it offers them, each block starting from its own saved state of the stream.
//
// p = (k + 1) / (R + 1), k the replicates whose statistic is at least the
// observed one. Statistics within the tolerance below the observed count as
// equal to it, so that mathematically equal values (ties, the identity
// permutation) are not decided by rounding.
class DependencePermutationTest {
public:
    // statistic(index, worker): the statistic with case u taking the shuffled
    // side's values of case index[u]; worker < workers() owns its scratch.
    using Statistic = std::function<double(const std::vector<std::size_t>& index, unsigned worker)>;

    DependencePermutationTest(std::uint64_t seed, std::uint64_t replicates);

    // Workers the statistic may be called from (1 without a host pool).
    static unsigned workers();
    // Replicates per block: fixed by the replicates alone.
    static std::uint64_t blockSize(std::uint64_t replicates);

    double pValue(std::size_t n, double observed, double tolerance, const Statistic& statistic) const;

private:
    std::uint64_t seed_;
    std::uint64_t replicates_;
};
