#include "DependencePairPermutation.h"

#include <cmath>

#include "DistanceSums.h"

namespace {

// Above this ratio of extreme products to the centred sums the sweep keeps
// its sums in long double, where double rounding could reach 1e-12.
constexpr long double kDoubleConditionLimit = 1e4;

}  // namespace

DependencePairPermutation::DependencePairPermutation(const std::vector<double>& x, const std::vector<double>& y,
                                                     DependenceStatistic statistic, unsigned workers)
    : n_(x.size()), statistic_(statistic) {
    PermutedCrossSums sums(x, y);
    const long double cells = static_cast<long double>(n_) * static_cast<long double>(n_);
    const long double normaliser = std::sqrt(sums.fixedSquares() * sums.shuffledSquares());
    if (sums.fixedExtreme() * sums.shuffledExtreme() * cells <= kDoubleConditionLimit * normaliser)
        sums.useDoubleSweep();
    sums_.assign(workers == 0 ? 1 : workers, sums);
}

double DependencePairPermutation::statistic(const std::vector<std::size_t>& index, unsigned worker) {
    PermutedCrossSums& sums = sums_.at(worker);
    DistanceSums s;
    s.s2 = sums.s2(index);
    s.s1 = 2 * sums.halfS1(index);
    s.s3 = sums.s3();
    return static_cast<double>(statistic_ == DependenceStatistic::V ? s.vProduct(n_) : s.uProduct(n_));
}
