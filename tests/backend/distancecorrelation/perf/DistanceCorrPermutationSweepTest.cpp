// A sweep over many small random data sets: the whole engine's unrounded
// p-values and bounds against the literal recipe of the permutation test,
// bit for bit, with the default way of computing permuted statistics and with
// the O(n log n) kernel forced on however few cases there are. Small integers
// and binary data make exact and near ties common; scaled data make the
// recipe's double sums overflow or underflow; LOG of negative values gives
// NaN and infinite values; some columns are constant.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "DistanceCorrPermutationKernel.h"
#include "DistanceCorrPermutationPair.h"
#include "PermutationRecipeRun.h"

namespace {

using How = DistanceCorrAlgo::PermutationStatistics;

std::vector<double> smallColumn(std::size_t n, std::mt19937_64& rng) {
    std::vector<double> v(n);
    const unsigned kind = rng() % 10;
    for (double& x : v) {
        if (kind < 4) {
            x = static_cast<double>(static_cast<int>(rng() % 7) - 3);  // -3 .. 3
        } else if (kind < 7) {
            x = static_cast<double>(rng() % 2);  // binary
        } else if (kind < 9) {
            x = static_cast<double>(rng() % 10);  // 0 .. 9
        } else {
            x = 2.0;  // constant
        }
    }
    return v;
}

permrun::Case makeCase(std::uint64_t number) {
    std::mt19937_64 rng(0x5eed0000 + number);
    permrun::Case c;
    const std::size_t variables = 2 + rng() % 2;
    const std::size_t n = 2 + rng() % 11;
    for (std::size_t v = 0; v < variables; ++v) c.columns.push_back(smallColumn(n, rng));
    const unsigned scenario = rng() % 100;
    if (scenario < 12) {
        // Scaled columns: 1e60 .. 1e120, or 1e-120.
        for (auto& column : c.columns) {
            if (rng() % 3 == 0) continue;
            const double scale = rng() % 5 == 0 ? 1e-120 : std::pow(10.0, 60 + static_cast<int>(rng() % 61));
            for (double& x : column) x *= scale;
        }
    } else if (scenario < 22) {
        c.normalization = "LOG";  // values -3 .. -1 give NaN and -infinity
    } else if (scenario < 30) {
        static const char* others[] = {"ZSCORE", "MINMAX", "ROBUST"};
        c.normalization = others[rng() % 3];
    }
    c.seed = static_cast<double>(rng() % (std::uint64_t{1} << 36));
    c.iterations = static_cast<double>(1 + rng() % 50);
    c.alpha = 0.01 + 0.89 * static_cast<double>(rng() % 1000) / 999.0;
    return c;
}

std::string describe(const permrun::Case& c) {
    std::ostringstream out;
    out.precision(17);
    out << c.normalization << " seed=" << c.seed << " N=" << c.iterations << " alpha=" << c.alpha << " data:";
    for (const auto& column : c.columns) {
        out << " (";
        for (double x : column) out << x << ",";
        out << ")";
    }
    return out.str();
}

TEST(DistanceCorrPermutationSweep, TwentyThousandSmallCasesMatchTheRecipeBitForBit) {
    const std::uint64_t cases = 20000;
    std::size_t pairs = 0;
    std::size_t informative = 0;   // p-value strictly between 0 and 1
    std::size_t interpolated = 0;  // bounds that differ from each other
    std::size_t kernelPairs = 0;   // pairs the kernel computes when forced
    std::size_t mismatches = 0;
    for (std::uint64_t number = 0; number < cases; ++number) {
        const permrun::Case c = makeCase(number);
        const std::vector<literal::Outcome> recipe = permrun::runRecipe(c);
        for (How how : {How::Fast, How::Kernel}) {
            const permrun::EngineOutcome engine = permrun::runEngine(c, how);
            ASSERT_EQ(engine.status, 0) << describe(c);
            if (!permrun::identical(engine, recipe)) {
                if (++mismatches <= 5) ADD_FAILURE() << "way " << static_cast<int>(how) << ": " << describe(c);
            }
        }
        for (const literal::Outcome& o : recipe) {
            ++pairs;
            if (o.pValue > 0.0 && o.pValue < 1.0) ++informative;
            if (o.lower != o.upper) ++interpolated;
        }
        EngineRun normalizer(c.columns);
        normalizer.settings.criteria().set_normalization(c.normalization);
        permrun::Matrix data = c.columns;
        normalizer.algo.performNormalization(data);
        for (std::size_t i = 0; i < data.size(); ++i) {
            for (std::size_t j = i + 1; j < data.size(); ++j) {
                DistanceCorrPermutationKernel kernel(data[i], data[j]);
                if (kernel.usable() && !kernel.alwaysZero()) ++kernelPairs;
            }
        }
    }
    EXPECT_EQ(mismatches, 0u);
    // Not vacuous: most pairs have a p-value and an interval that a wrong
    // statistic or order would move, and most go through the kernel.
    EXPECT_GE(pairs, cases);
    EXPECT_GE(informative, pairs / 3);
    EXPECT_GE(interpolated, pairs / 3);
    EXPECT_GE(kernelPairs, pairs / 2);
    RecordProperty("pairs", std::to_string(pairs));
    RecordProperty("informative", std::to_string(informative));
    RecordProperty("interpolated", std::to_string(interpolated));
    RecordProperty("kernel_pairs", std::to_string(kernelPairs));
}

// Larger samples, where the default way takes the kernel: discrete and
// continuous data, dependent and independent, up to 300 permutations.
TEST(DistanceCorrPermutationSweep, KernelSizedCasesMatchTheRecipeBitForBit) {
    std::size_t mismatches = 0;
    std::size_t informative = 0;
    const int cases = 240;
    for (int number = 0; number < cases; ++number) {
        std::mt19937_64 rng(0xbeef00 + static_cast<std::uint64_t>(number));
        permrun::Case c;
        const std::size_t n = DistanceCorrPermutationPair::kKernelFromCases + rng() % 50;
        std::normal_distribution<double> normal(0.0, 1.0);
        c.columns.assign(2, std::vector<double>(n));
        const unsigned kind = rng() % 4;
        for (std::size_t i = 0; i < n; ++i) {
            const double z = normal(rng);
            switch (kind) {
                case 0:
                    c.columns[0][i] = z;
                    c.columns[1][i] = z * z + normal(rng);
                    break;
                case 1:
                    c.columns[0][i] = std::round(z);
                    c.columns[1][i] = std::round(z * z + normal(rng));
                    break;
                case 2:
                    c.columns[0][i] = z > 0.3;
                    c.columns[1][i] = (z + normal(rng)) > 0;
                    break;
                default:
                    c.columns[0][i] = static_cast<double>(rng() % 3);
                    c.columns[1][i] = normal(rng);
                    break;
            }
        }
        c.seed = static_cast<double>(rng() % 100000);
        c.iterations = static_cast<double>(1 + rng() % 300);
        c.alpha = 0.01 + 0.89 * static_cast<double>(rng() % 100) / 99.0;
        const std::vector<literal::Outcome> recipe = permrun::runRecipe(c);
        const permrun::EngineOutcome engine = permrun::runEngine(c, How::Fast);
        ASSERT_EQ(engine.status, 0);
        if (!permrun::identical(engine, recipe) && ++mismatches <= 5) ADD_FAILURE() << describe(c);
        if (recipe[0].pValue > 0.0 && recipe[0].pValue < 1.0) ++informative;
    }
    EXPECT_EQ(mismatches, 0u);
    EXPECT_GE(informative, static_cast<std::size_t>(cases / 4));
}

}  // namespace
