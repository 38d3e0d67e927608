#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "DependenceResult.h"
#include "DependenceSettings.h"
#include "ParserMessage.h"

// The engine: for every comparison of the settings it selects the cases
// (listwise or pairwise), computes the estimates, the test, and appends one
// result. Pairs of single variables with exponent 1 take the O(n log n) path
// (no matrices); everything else sums the distances in O(n^2) without
// storing them, except a permutation test there, whose matrices are checked
// against the memory available before anything is computed.
class DependenceAnalysis {
public:
    DependenceAnalysis(const DependenceSettings& settings, std::vector<DependenceResult>& results);

    // 0 when there are results to show; 1 after a reported problem.
    unsigned start();

    // What one row compares: the variables of each side.
    struct Comparison {
        std::string label;
        std::vector<const DependenceVariable*> x;
        std::vector<const DependenceVariable*> y;
    };
    std::vector<Comparison> comparisons() const;
    // The cases a comparison uses: listwise over every named variable, or
    // pairwise over its own and the control variables.
    std::vector<std::size_t> casesOf(const Comparison& comparison) const;
    // The fewest cases the chosen statistic needs.
    std::size_t minimumCases() const;

private:
    bool matricesNeeded(const Comparison& comparison) const;
    bool memoryFits(const std::vector<Comparison>& comparisons) const;
    DependenceResult analyse(const Comparison& comparison) const;

    const DependenceSettings& settings_;
    std::vector<DependenceResult>& results_;
    ParserMessage message_;
};
