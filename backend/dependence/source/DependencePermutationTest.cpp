#include "DependencePermutationTest.h"

#include <algorithm>

#include "HostServices.h"
#include "PermutationStream.h"

DependencePermutationTest::DependencePermutationTest(std::uint64_t seed, std::uint64_t replicates)
    : seed_(seed), replicates_(replicates) {}

unsigned DependencePermutationTest::workers() { return HostServices::workerCount(); }

std::uint64_t DependencePermutationTest::blockSize(std::uint64_t replicates) {
    // At most 4,096 blocks, so that their saved states stay small.
    return std::max<std::uint64_t>(64, (replicates + 4095) / 4096);
}

double DependencePermutationTest::pValue(std::size_t n, double observed, double tolerance,
                                         const Statistic& statistic) const {
    const std::uint64_t size = blockSize(replicates_);
    const std::uint64_t blocks = (replicates_ + size - 1) / size;
    std::vector<PermutationStream> starts;
    starts.reserve(blocks);
    PermutationStream stream(seed_);
    for (std::uint64_t b = 0; b < blocks; ++b) {
        starts.push_back(stream);
        if (b + 1 < blocks) stream.skip(size, n);
    }

    const double threshold = observed - tolerance;
    std::vector<std::uint64_t> atLeast(blocks, 0);
    const auto block = [&](std::size_t b, unsigned worker) {
        PermutationStream own = starts[b];
        std::vector<std::size_t> index(n);
        const std::uint64_t first = b * size;
        const std::uint64_t last = std::min(replicates_, first + size);
        std::uint64_t count = 0;
        for (std::uint64_t t = first; t < last; ++t) {
            own.shuffle(index);
            if (statistic(index, worker) >= threshold) ++count;
        }
        atLeast[b] = count;
    };

    HostServices::run(HostServices::workerPool(), blocks, block);
    std::uint64_t k = 0;
    for (std::uint64_t c : atLeast) k += c;
    return (static_cast<double>(k) + 1.0) / (static_cast<double>(replicates_) + 1.0);
}
