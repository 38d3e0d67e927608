// One pair's permutation test cut into blocks of permutations: the blocks may
// run in any order and with different scratch spaces (as on different
// threads), each from the stream's state at its first permutation, and the
// outcome is the recipe's bit for bit. A pair whose kernel statistics cannot
// be settled runs its blocks again with the recipe, from the saved states.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "DistanceCorrPermutationPair.h"
#include "DistanceCorrPermutationProgress.h"
#include "PermutationRecipeRun.h"
#include "PermutationStream.h"
#include "PermutationTestData.h"

namespace {

using Pair = DistanceCorrPermutationPair;
using permrun::Matrix;

struct Result {
    Pair::Outcome outcome;
    int rounds = 0;  // 2 when the blocks ran again with the recipe
};

// Blocks in the given order, two scratch spaces taking turns; each block
// starts from the seed's stream advanced past the blocks before it.
Result runBlocks(const Matrix& columns, double observed, const Matrix& centred, std::uint64_t seed,
                 std::uint64_t permutations, Pair::Method method, const std::vector<std::uint64_t>& order,
                 std::uint64_t blocks = Pair::kCheckpoints) {
    Pair pair(centred, columns[0], columns[1], permutations, 0.05, method, blocks);
    const std::size_t n = columns[0].size();
    PermutationStream stream(seed);
    std::vector<PermutationStream> starts;
    for (std::uint64_t b = 0; b < pair.blockCount(); ++b) {
        starts.push_back(stream);
        stream.skip(pair.blockLength(b), n);
    }
    Pair::Scratch scratches[2];
    DistanceCorrPermutationProgress silent(0, nullptr);
    pair.prepare();
    Result result;
    for (;;) {
        ++result.rounds;
        for (std::size_t m = 0; m < order.size(); ++m) {
            PermutationStream at = result.rounds == 1 ? starts[order[m]] : pair.savedStart(order[m]);
            pair.runBlock(order[m], at, scratches[m % 2], silent);
        }
        if (pair.finish(observed, scratches[1], result.outcome)) return result;
    }
}

std::vector<std::uint64_t> orderOf(std::uint64_t count, int kind, std::mt19937_64& rng) {
    std::vector<std::uint64_t> order(count);
    std::iota(order.begin(), order.end(), std::uint64_t{0});
    if (kind == 1) std::reverse(order.begin(), order.end());
    if (kind == 2) std::shuffle(order.begin(), order.end(), rng);
    return order;
}

TEST(DistanceCorrPermutationPair, BlocksInAnyOrderGiveTheRecipesOutcome) {
    using permdata::Kind;
    std::mt19937_64 rng(77);
    const std::vector<std::pair<Kind, Kind>> kinds{{Kind::Normal, Kind::Normal},
                                                   {Kind::Tied, Kind::ThreeLevels},
                                                   {Kind::Binary, Kind::Binary},
                                                   {Kind::Normal, Kind::Constant},
                                                   {Kind::Outliers, Kind::Cauchy}};
    int fellBack = 0;
    int compared = 0;
    for (const auto& [kx, ky] : kinds) {
        for (std::size_t n : {9u, 70u, 130u}) {
            Matrix columns{permdata::column(kx, n, rng), permdata::column(ky, n, rng)};
            if (ky != Kind::Constant) {
                for (std::size_t i = 0; i < n; ++i) columns[1][i] += 0.2 * columns[0][i] * columns[0][i];
            }
            EngineRun run;
            std::vector<Matrix> centred;
            std::vector<double> dCor;
            permrun::observe(run.algo, columns, centred, dCor);
            const std::uint64_t seed = rng();
            const std::uint64_t permutations = 150 + rng() % 150;
            const literal::Outcome recipe = literal::permutationTest(columns, dCor, seed, permutations, 0.05)[0];
            for (Pair::Method method : {Pair::Method::Automatic, Pair::Method::Kernel, Pair::Method::Recipe}) {
                const Pair probe(centred[0], columns[0], columns[1], permutations, 0.05, method);
                for (int kind = 0; kind < 3; ++kind) {
                    const Result r = runBlocks(columns, dCor[0], centred[0], seed, permutations, method,
                                               orderOf(probe.blockCount(), kind, rng));
                    fellBack += r.rounds == 2 ? 1 : 0;
                    ++compared;
                    EXPECT_TRUE(permrun::sameBits(r.outcome.pValue, recipe.pValue) &&
                                permrun::sameBits(r.outcome.lower, recipe.lower) &&
                                permrun::sameBits(r.outcome.upper, recipe.upper))
                        << permdata::name(kx) << "/" << permdata::name(ky) << " n=" << n << " method "
                        << static_cast<int>(method) << " order " << kind << ": " << r.outcome.pValue << " "
                        << r.outcome.lower << " " << r.outcome.upper << " against " << recipe.pValue << " "
                        << recipe.lower << " " << recipe.upper;
                }
            }
        }
    }
    EXPECT_EQ(compared, 135);
    // Binary data leave most statistics in doubt: the recipe's second round ran.
    EXPECT_GT(fellBack, 0);
}

TEST(DistanceCorrPermutationPair, BlocksCoverThePermutationsInWholeBatches) {
    const Matrix centred(3, std::vector<double>(3, 0.0));
    const std::vector<double> x{1, 2, 3};
    for (std::uint64_t permutations : {1ull, 3ull, 4ull, 5ull, 127ull, 128ull, 999ull, 1000ull, 100001ull}) {
        for (std::uint64_t blocks : {32ull, 100ull, 256ull}) {
            const Pair pair(centred, x, x, permutations, 0.05, Pair::Method::Automatic, blocks);
            ASSERT_GE(pair.blockCount(), 1u);
            EXPECT_LE(pair.blockCount(), blocks);
            std::uint64_t covered = 0;
            for (std::uint64_t b = 0; b < pair.blockCount(); ++b) {
                const std::uint64_t length = pair.blockLength(b);
                EXPECT_GT(length, 0u);
                // Whole batches of the recipe's four lanes but for the last block.
                if (b + 1 < pair.blockCount()) {
                    EXPECT_EQ(length % 4, 0u);
                }
                covered += length;
            }
            EXPECT_EQ(covered, permutations);
            EXPECT_EQ(pair.blockLength(pair.blockCount()), 0u);
            // Enough blocks to share among threads once there are permutations to share.
            if (permutations >= 4 * blocks) {
                EXPECT_GE(pair.blockCount(), blocks / 2);
            }
        }
    }
    const Pair none(centred, x, x, 0, 0.05, Pair::Method::Automatic);
    EXPECT_EQ(none.blockCount(), 0u);
}

}  // namespace
