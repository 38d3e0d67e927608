#pragma once
// One data set through the whole engine (start()) with a chosen way of
// computing the permuted statistics, and through the literal recipe of the
// permutation test, so that their unrounded p-values and bounds can be
// compared bit for bit.
#include <cstring>
#include <string>
#include <vector>

#include "EngineTestSettings.h"
#include "LiteralPermutationRecipe.h"

namespace permrun {

using Matrix = DistanceCorrAlgo::Matrix;

struct Case {
    Matrix columns;
    std::string normalization = "NONE";
    double seed = 1;
    double iterations = 10;
    double alpha = 0.05;
};

struct EngineOutcome {
    int status = -1;
    std::vector<DistanceCorrResult> results;
    std::vector<DistanceCorrAlgo::PermutationOutcome> raw;
};

inline EngineOutcome runEngine(const Case& c, DistanceCorrAlgo::PermutationStatistics how) {
    EngineRun run(c.columns);
    auto& criteria = run.settings.criteria();
    criteria.set_normalization(c.normalization);
    criteria.set_permEnabled(true);
    criteria.set_permSeed(c.seed);
    criteria.set_permMaxIterations(c.iterations);
    criteria.set_permSigLevel(c.alpha);
    run.algo.setPermutationStatistics(how);
    EngineOutcome out;
    out.status = run.algo.start();
    out.results = run.results;
    out.raw = run.algo.permutationOutcomes();
    return out;
}

// The centred matrices and the unrounded dCor of every pair of some columns,
// from the engine's step-by-step operations (proved against their own
// transcription elsewhere).
inline void observe(const DistanceCorrAlgo& algo, const Matrix& data, std::vector<Matrix>& centred,
                    std::vector<double>& dCor) {
    std::vector<Matrix> distances;
    algo.performEuclideanDistanceAnalysis(data, distances);
    Matrix rowMeans;
    Matrix colMeans;
    std::vector<double> grand;
    std::vector<double> dCov;
    std::vector<double> dVar;
    algo.calculateRowMean(distances, rowMeans);
    algo.calculateColumnMean(distances, colMeans);
    algo.calculateGlobalMean(distances, grand);
    algo.calculateCenteredMatrix(distances, rowMeans, colMeans, grand, centred);
    algo.calculateDistanceCovariance(centred, dCov);
    algo.calculateDistanceVariance(centred, dVar);
    algo.calculateDistanceCorrelation(dCov, dVar, dCor);
}

// The normalized columns and their observed dCor, then the literal
// permutation test.
inline std::vector<literal::Outcome> runRecipe(const Case& c) {
    EngineRun run(c.columns);
    run.settings.criteria().set_normalization(c.normalization);
    Matrix data = c.columns;
    run.algo.performNormalization(data);
    std::vector<Matrix> centred;
    std::vector<double> dCor;
    observe(run.algo, data, centred, dCor);
    return literal::permutationTest(data, dCor, static_cast<std::uint64_t>(c.seed),
                                    static_cast<std::uint64_t>(c.iterations), c.alpha);
}

inline bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// True when every pair's unrounded p-value and bounds are the recipe's.
inline bool identical(const EngineOutcome& engine, const std::vector<literal::Outcome>& recipe) {
    if (engine.raw.size() != recipe.size()) return false;
    for (std::size_t k = 0; k < recipe.size(); ++k) {
        if (!sameBits(engine.raw[k].pValue, recipe[k].pValue) || !sameBits(engine.raw[k].lower, recipe[k].lower) ||
            !sameBits(engine.raw[k].upper, recipe[k].upper)) {
            return false;
        }
    }
    return true;
}

}  // namespace permrun
