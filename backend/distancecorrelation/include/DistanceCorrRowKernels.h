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
    // Columns [begin, end) of groupRows rows added to their running sums and to the column sums.
    void (*sumRowGroup)(const double* const*, std::size_t, std::size_t, double*, double*);
    // Columns [begin, end) of one row added to the column sums and to a running sum, which is returned.
    double (*sumRow)(const double*, std::size_t, std::size_t, double, double*);
    double (*centreRow)(const double*, double, const double*, double, std::size_t, double*);
    double (*addRowProducts)(double, const double*, const double*, std::size_t);

    // The kernels for this processor.
    static const DistanceCorrRowKernels& instance();
};
