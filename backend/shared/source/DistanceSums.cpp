#include "DistanceSums.h"

long double DistanceSums::vProduct(std::size_t n) const {
    const long double m = static_cast<long double>(n);
    return (s1 - 2 * s2 / m + s3 / (m * m)) / (m * m);
}

long double DistanceSums::uProduct(std::size_t n) const {
    const long double m = static_cast<long double>(n);
    return (s1 - 2 * s2 / (m - 2) + s3 / ((m - 1) * (m - 2))) / (m * (m - 3));
}
