#include "DependenceEstimates.h"

#include <cfloat>
#include <cmath>
#include <limits>

namespace {

long double rootOrZero(long double v) { return v > 0 ? std::sqrt(v) : 0.0L; }

// The bias-corrected correlation of two U-products with their norms; 0 when
// the norms' product is not positive.
long double correlationOf(long double xy, long double xx, long double yy) {
    return xx * yy > 0 ? xy / std::sqrt(xx * yy) : 0.0L;
}

}  // namespace

DependenceEstimate DependenceEstimates::vStatistic(std::size_t n, const DistanceSums& xy, const DistanceSums& xx,
                                                   const DistanceSums& yy) {
    const long double dcov = rootOrZero(xy.vProduct(n));
    const long double dvarX = rootOrZero(xx.vProduct(n));
    const long double dvarY = rootOrZero(yy.vProduct(n));
    DependenceEstimate e;
    e.covariance = static_cast<double>(dcov);
    e.correlation = dvarX * dvarY > DBL_EPSILON ? static_cast<double>(dcov / std::sqrt(dvarX * dvarY)) : 0.0;
    e.ratio = std::numeric_limits<double>::quiet_NaN();
    return e;
}

DependenceEstimate DependenceEstimates::uStatistic(std::size_t n, const DistanceSums& xy, const DistanceSums& xx,
                                                   const DistanceSums& yy) {
    const long double u = xy.uProduct(n);
    const long double ux = xx.uProduct(n);
    const long double uy = yy.uProduct(n);
    DependenceEstimate e;
    e.covariance = static_cast<double>(u);
    e.correlation = ux * uy > DBL_EPSILON ? static_cast<double>(u / std::sqrt(ux * uy)) : 0.0;
    e.ratio = ux * uy > 0 ? static_cast<double>(u / std::sqrt(ux * uy)) : std::numeric_limits<double>::quiet_NaN();
    return e;
}

DependenceEstimate DependenceEstimates::partial(std::size_t n, const DistanceSums& xy, const DistanceSums& xz,
                                                const DistanceSums& yz, const DistanceSums& xx, const DistanceSums& yy,
                                                const DistanceSums& zz) {
    const long double uxy = xy.uProduct(n);
    const long double uxz = xz.uProduct(n);
    const long double uyz = yz.uProduct(n);
    const long double uxx = xx.uProduct(n);
    const long double uyy = yy.uProduct(n);
    const long double uzz = zz.uProduct(n);
    const long double rxy = correlationOf(uxy, uxx, uyy);
    const long double rxz = correlationOf(uxz, uxx, uzz);
    const long double ryz = correlationOf(uyz, uyy, uzz);
    const long double denominator = std::sqrt(1 - rxz * rxz) * std::sqrt(1 - ryz * ryz);
    DependenceEstimate e;
    e.correlation = denominator > 0 ? static_cast<double>((rxy - rxz * ryz) / denominator) : 0.0;
    e.covariance = static_cast<double>(uzz > 0 ? uxy - uxz * uyz / uzz : uxy);
    e.ratio = std::numeric_limits<double>::quiet_NaN();
    return e;
}
