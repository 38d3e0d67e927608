#pragma once
#include <cstddef>

// The row kernels of the observed statistics, built for AVX2 and for plain
// SSE2 and chosen once at run time, so the plug-in runs on any x86-64. Each
// kernel performs the same floating-point operations in the same order as the
// step-by-step operations of DistanceCorrAlgo; vector lanes only hold sums
// that do not depend on one another, and no multiply is fused with an add.
struct DistanceCorrRowKernels {
    std::size_t groupRows;
    void (*distanceRow)(const double*, std::size_t, std::size_t, double*);
    // groupRows rows: their sums, and their elements added to the column sums.
    void (*sumRowGroup)(const double* const*, std::size_t, double*, double*);
    // groupRows rows: their sums only.
    void (*sumRows)(const double* const*, std::size_t, double*);
    // Columns [begin, end) of a number of rows added to the column sums in row order.
    void (*addColumns)(const double* const*, std::size_t, std::size_t, std::size_t, double*);
    double (*sumRow)(const double*, std::size_t, double*);
    double (*centreRow)(const double*, double, const double*, double, std::size_t, double*);
    double (*addRowProducts)(double, const double*, const double*, std::size_t);

    // The kernels for this processor.
    static const DistanceCorrRowKernels& instance();
};
