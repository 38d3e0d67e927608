#include "DependenceTTest.h"

#include <cmath>
#include <limits>

#include <boost/math/distributions/students_t.hpp>

DependenceTTest DependenceTTest::compute(double ratio, std::size_t n) {
    const double nn = static_cast<double>(n);
    const double m = nn * (nn - 3) / 2;
    DependenceTTest t{std::numeric_limits<double>::quiet_NaN(), m - 1, std::numeric_limits<double>::quiet_NaN()};
    if (!(t.df > 0) || std::isnan(ratio)) return t;
    // Rounding may carry a perfect dependence a hair beyond 1.
    const double r = std::fmax(-1.0, std::fmin(1.0, ratio));
    t.statistic = std::sqrt(t.df) * r / std::sqrt(1 - r * r);
    if (std::isnan(t.statistic)) return t;
    if (std::isinf(t.statistic)) {
        t.pValue = t.statistic > 0 ? 0.0 : 1.0;
        return t;
    }
    const boost::math::students_t_distribution<double> distribution(t.df);
    t.pValue = boost::math::cdf(boost::math::complement(distribution, t.statistic));
    return t;
}
