#pragma once
#include <cstddef>

#include "DistanceSums.h"

// One comparison's estimates, as energy reports them.
struct DependenceEstimate {
    double correlation = 0;  // dcor (V, root scale), bcdcor or pdcor (U, squared scale)
    double covariance = 0;   // dcov (V, root scale), dcovU or pdcov (U, squared scale)
    // The bias-corrected correlation without the zero threshold, NaN when a
    // variance is zero: the R of the t-test.
    double ratio = 0;
};

// From distance sums to estimates. xy are the sums of the two compared
// sides, xx and yy each side's own.
class DependenceEstimates {
public:
    // dcov = sqrt(V^2_xy), dcor = dcov / sqrt(dVar_x dVar_y) with the dVar on
    // the root scale; a negative V^2 (rounding) counts as 0, and dcor is 0
    // unless dVar_x dVar_y > DBL_EPSILON.
    static DependenceEstimate vStatistic(std::size_t n, const DistanceSums& xy, const DistanceSums& xx,
                                         const DistanceSums& yy);
    // dcovU = U_xy, bcdcor = U_xy / sqrt(U_xx U_yy), 0 unless
    // U_xx U_yy > DBL_EPSILON.
    static DependenceEstimate uStatistic(std::size_t n, const DistanceSums& xy, const DistanceSums& xx,
                                         const DistanceSums& yy);
    // Partial distance correlation of x and y given z from the bias-corrected
    // correlations: (r_xy - r_xz r_yz) / (sqrt(1 - r_xz^2) sqrt(1 - r_yz^2)),
    // 0 when the denominator is 0. pdcov = U_xy - U_xz U_yz / U_zz (U_xy
    // when U_zz is 0): the U-product of the projections of x and y off z.
    static DependenceEstimate partial(std::size_t n, const DistanceSums& xy, const DistanceSums& xz,
                                      const DistanceSums& yz, const DistanceSums& xx, const DistanceSums& yy,
                                      const DistanceSums& zz);
};
