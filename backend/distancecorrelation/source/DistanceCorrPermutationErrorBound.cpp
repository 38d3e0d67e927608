#include "DistanceCorrPermutationErrorBound.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "DistanceCorrAlgo.h"

namespace {

constexpr long double kDouble = 0x1p-53L;       // unit roundoff of double
constexpr long double kLong = 0x1p-64L;         // unit roundoff of x87 long double
constexpr long double kSubnormal = 0x1p-1074L;  // error of one subnormal result

// Relative error of k successive roundings: (1 + u)^k - 1 <= k u / (1 - k u).
long double gamma(long double k, long double unit) {
    const long double ku = k * unit;
    return ku < 0.5L ? ku / (1 - ku) : std::numeric_limits<long double>::infinity();
}

using Variance = DistanceCorrPermutationErrorBound::Variance;

// Which side of the zero threshold the recipe's distance variance
// fl(S / n^2) falls on, S being its sum of n^2 rounded squares of the centred
// entries: the exact entries have Frobenius norm in [low, high], the recipe's
// deviate from them by a matrix of norm at most f.
Variance classify(long double low, long double high, long double f, long double cells, long double gS) {
    const long double zero = DistanceCorrAlgo::EPSILON;
    const long double upper = (high + f) * (high + f) * (1 + gS) + 2 * cells * kSubnormal;
    if (upper / cells * (1 + kDouble) <= zero * (1 - 1e-15L)) return Variance::Zero;
    if (low > f) {
        const long double lower = (low - f) * (low - f) * (1 - gS) - 2 * cells * kSubnormal;
        if (lower / cells * (1 - kDouble) > zero * (1 + 1e-15L)) return Variance::Positive;
    }
    return Variance::Undecided;
}

}  // namespace

DistanceCorrPermutationErrorBound::DistanceCorrPermutationErrorBound(std::size_t count, const Column& x,
                                                                     const Column& y, bool doubleSweep) {
    const long double n = static_cast<long double>(count);
    const long double cells = n * n;

    // The recipe's largest intermediates: row sums and totals up to n^2 M,
    // centred entries up to 2M, sums of n^2 products up to 4 n^2 Mx My, and
    // the product of the two variances up to 16 Mx^2 My^2.
    const long double limit = std::numeric_limits<double>::max() / 8.0L;
    const long double wider = std::max(x.range, y.range);
    inRange_ = cells * wider <= limit && 4 * cells * wider * wider <= limit &&
               16 * x.range * x.range * y.range * y.range <= limit;
    if (!inRange_) return;

    // Recipe: every centred entry (of the fixed matrix from the observed
    // statistics, and of the permuted column's) is within delta of the exact
    // one: distance, row, column and grand means, three operations of the
    // centring. The deviation matrix has Frobenius norm at most n delta.
    const long double steps = 4 * n + 16;
    const long double fX = n * (gamma(steps, kDouble) * x.range + steps * kSubnormal);
    const long double fY = n * (gamma(steps, kDouble) * y.range + steps * kSubnormal);
    // n^2 rounded products added one after another.
    const long double gS = gamma(cells + 1, kDouble);

    // Kernel: centring in long double moves each value by at most u_L times
    // its size, each centred entry by at most 8 times that.
    const long double gX = n * 8 * kLong * x.extreme * 1.01L;
    const long double gY = n * 8 * kLong * y.extreme * 1.01L;
    // Its sums of squares (2n sum of squared deviations, row sums squared,
    // total squared), all in long double.
    const long double eqX = cells * x.extreme * x.extreme * gamma(64 * n + 300, kLong) * 1.05L;
    const long double eqY = cells * y.extreme * y.extreme * gamma(64 * n + 300, kLong) * 1.05L;
    const long double aKernelLow = std::sqrt(std::max(0.0L, x.squares - eqX));
    const long double bKernelLow = std::sqrt(std::max(0.0L, y.squares - eqY));
    // Norms of the exact centred matrices.
    const long double aLow = aKernelLow - gX;
    const long double bLow = bKernelLow - gY;
    const long double aHigh = std::sqrt(x.squares + eqX) + gX;
    const long double bHigh = std::sqrt(y.squares + eqY) + gY;

    fixedVariance_ = x.range == 0 ? Variance::Zero : classify(aLow, aHigh, fX, cells, gS);
    shuffledVariance_ = y.range == 0 ? Variance::Zero : classify(bLow, bHigh, fY, cells, gS);
    if (fixedVariance_ != Variance::Positive || shuffledVariance_ != Variance::Positive) return;

    // Recipe against exact: r_R = (r + D) F with |D| <= lambdaR, |F - 1| <= kappaR.
    const long double zA = fX / aLow;
    const long double zB = fY / bLow;
    const long double lambdaR = zA + zB + zA * zB + gS * (1 + zA) * (1 + zB) + 2 * cells * kSubnormal / (aLow * bLow);
    const long double kappaR = (1 + gamma(5, kDouble)) / ((1 - zA) * (1 - zB) * (1 - gS)) - 1;

    // Kernel against exact. Its cross sum: row sums from sorted prefix sums,
    // the dot product S2, the product S3 and the Fenwick sweep S1 (in double
    // or long double), each bounded by n^2 times the extreme centred values.
    const long double sweep = gamma(28 * n + 490, doubleSweep ? kDouble : kLong);
    const long double ec = cells * x.extreme * y.extreme * (sweep + gamma(54 * n + 250, kLong)) * 1.01L +
                           (doubleSweep ? 1000 * cells * kSubnormal : 0.0L);
    const long double zKA = gX / aLow;
    const long double zKB = gY / bLow;
    const long double rhoX = eqX / (aKernelLow * aKernelLow);
    const long double rhoY = eqY / (bKernelLow * bKernelLow);
    const long double lambdaK = zKA + zKB + zKA * zKB + ec / (aLow * bLow);
    const long double phiK = 3.03L * kLong + 1.01L * kDouble;
    const long double kappaK = (1 + phiK) / ((1 - zKA) * (1 - zKB) * std::sqrt((1 - rhoX) * (1 - rhoY))) - 1;
    doubleSweepShare_ = doubleSweep ? cells * x.extreme * y.extreme * sweep / (aLow * bLow) : 0.0L;

    // |kernel - recipe| <= P + Q |r| with |r| <= kernel value + E1.
    const long double p = lambdaR * (1 + kappaR) + lambdaK * (1 + kappaK);
    const long double q = kappaR + kappaK;
    const long double e1 = lambdaK * (1 + kappaK) + kappaK;
    const long double c0 = (p + q * e1) * (1 + 1e-6L) + 1e-15L;
    const long double c1 = q * (1 + 1e-6L);
    const long double quarter = 0.25L;
    trusted_ = aLow > 0 && bLow > 0 && zA < quarter && zB < quarter && zKA < quarter && zKB < quarter &&
               rhoX < quarter && rhoY < quarter && gS < 0.01L && std::isfinite(c0) && c0 < 1e-4L && c1 < 1e-4L;
    c0_ = static_cast<double>(c0);
    c1_ = static_cast<double>(c1);
}
