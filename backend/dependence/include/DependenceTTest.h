#pragma once
#include <cstddef>

// The t-test of independence for the bias-corrected distance correlation R
// (energy's dcorT.test): with M = n(n - 3)/2,
//     T = sqrt(M - 1) R / sqrt(1 - R^2),  df = M - 1,
// and p the upper tail of Student's t with df degrees of freedom (one-sided:
// dependence makes R positive). Needs n > 3.
struct DependenceTTest {
    double statistic;
    double df;
    double pValue;

    // R is NaN when a variable has no variance: T and p are then NaN.
    static DependenceTTest compute(double ratio, std::size_t n);
};
