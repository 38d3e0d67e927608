// The whole engine run with the fast permuted statistics against the same run
// with the matrix recipe for every permutation, on a corpus of random data
// sets, seeds, sizes, significance levels and normalizations: the p-values and
// both 4-decimal bounds must be identical.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "DistanceCorrPermutationKernel.h"
#include "EngineTestSettings.h"
#include "PermutationRecipeRun.h"
#include "PermutationTestData.h"

namespace {

using permdata::Kind;

using CorpusCase = permrun::Case;

CorpusCase makeCase(std::uint64_t number) {
    std::mt19937_64 rng(1000 + number);
    const std::vector<Kind>& kinds = permdata::allKinds();
    const auto pick = [&](std::size_t count) { return static_cast<std::size_t>(rng() % count); };
    CorpusCase c;
    const std::size_t variables = number % 4 == 3 ? 3 : 2;
    // Many small samples (where whole tie classes are common) and some larger.
    const std::size_t cases = number % 3 == 0 ? 2 + pick(6) : 8 + pick(60);
    // Constant columns are rare; the rest of the kinds come equally often.
    const auto kind = [&]() {
        const Kind k = kinds[pick(kinds.size())];
        return k == Kind::Constant && pick(3) != 0 ? Kind::Normal : k;
    };
    c.columns.push_back(permdata::column(kind(), cases, rng));
    for (std::size_t v = 1; v < variables; ++v) {
        c.columns.push_back(pick(2) == 0 ? permdata::related(c.columns[0], kind(), rng)
                                         : permdata::column(kind(), cases, rng));
    }
    static const char* normalizations[] = {"NONE", "ZSCORE", "MINMAX", "ROBUST", "LOG"};
    c.normalization = normalizations[pick(5)];
    c.seed = static_cast<double>(rng() % (1ULL << 40));
    static const double iterationChoices[] = {1, 2, 37, 99, 250, 400};
    c.iterations = iterationChoices[pick(6)];
    static const double alphas[] = {0.05, 0.1, 0.01, 0.2};
    c.alpha = alphas[pick(4)];
    return c;
}

// Pairs of the case whose normalized columns the fast kernel accepts.
std::size_t pairsForTheKernel(const CorpusCase& c) {
    EngineRun engine(c.columns);
    engine.settings.criteria().set_normalization(c.normalization);
    std::vector<std::vector<double>> data = c.columns;
    engine.algo.performNormalization(data);
    std::size_t accepted = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        for (std::size_t j = i + 1; j < data.size(); ++j) {
            if (DistanceCorrPermutationKernel(data[i], data[j]).usable()) ++accepted;
        }
    }
    return accepted;
}

std::vector<DistanceCorrResult> run(const CorpusCase& c, DistanceCorrAlgo::PermutationStatistics how) {
    const permrun::EngineOutcome out = permrun::runEngine(c, how);
    EXPECT_EQ(out.status, 0);
    return out.results;
}

TEST(DistanceCorrPermutationCorpus, FastAndMatrixRecipeGiveIdenticalPValuesAndBounds) {
    const std::uint64_t corpusSize = 240;
    std::size_t pairs = 0;
    std::size_t informative = 0;  // p-value strictly between 0 and 1
    std::size_t fastPairs = 0;
    for (std::uint64_t number = 0; number < corpusSize; ++number) {
        const CorpusCase c = makeCase(number);
        const std::vector<DistanceCorrResult> fast = run(c, DistanceCorrAlgo::PermutationStatistics::Fast);
        const std::vector<DistanceCorrResult> recipe =
            run(c, DistanceCorrAlgo::PermutationStatistics::MatrixRecipe);
        ASSERT_EQ(fast.size(), recipe.size()) << "case " << number;
        fastPairs += pairsForTheKernel(c);
        for (std::size_t k = 0; k < fast.size(); ++k) {
            EXPECT_EQ(fast[k].pValue, recipe[k].pValue) << "case " << number << " pair " << k;
            EXPECT_EQ(fast[k].permLower, recipe[k].permLower) << "case " << number << " pair " << k;
            EXPECT_EQ(fast[k].permUpper, recipe[k].permUpper) << "case " << number << " pair " << k;
            EXPECT_EQ(fast[k].dCor, recipe[k].dCor) << "case " << number << " pair " << k;
            ++pairs;
            if (recipe[k].pValue > 0.0 && recipe[k].pValue < 1.0) ++informative;
        }
    }
    // Not vacuous: most pairs have a p-value that a wrong statistic would
    // move, and most run through the kernel (the others hold NaN from LOG).
    EXPECT_GE(pairs, corpusSize);
    EXPECT_GE(informative, pairs / 2);
    EXPECT_GE(fastPairs, pairs * 3 / 4);
    RecordProperty("pairs", std::to_string(pairs));
    RecordProperty("informative", std::to_string(informative));
    RecordProperty("fast_pairs", std::to_string(fastPairs));
}

}  // namespace
