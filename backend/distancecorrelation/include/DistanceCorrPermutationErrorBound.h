#pragma once
#include <cstddef>

// How far the permutation kernel's statistic can lie from the matrix recipe's
// for one variable pair: a bound on |kernel - true| plus a bound on
// |recipe - true|, where "true" is the statistic in exact arithmetic. Both
// follow from the standard model of rounding (each operation is exact times
// 1 + theta with |theta| <= u, plus an absolute 2^-1074 where a result is
// subnormal), applied step by step to the recipe's operations and to the
// kernel's, with every magnitude bounded by the columns' ranges and extreme
// centred values. The derivation is written out in docs/engine.md.
//
// The bound is c0 + c1 * v for a kernel value v. It also decides on which side
// of the 1e-8 zero threshold the recipe's distance variances fall, and whether
// any of the recipe's double sums could overflow.
class DistanceCorrPermutationErrorBound {
public:
    enum class Variance { Zero, Positive, Undecided };

    // What the kernel knows of one column: the range (largest minus smallest
    // value), the largest |value - mean| of its centred values, and n^2 times
    // the distance variance as the kernel computed it.
    struct Column {
        long double range = 0;
        long double extreme = 0;
        long double squares = 0;
    };

    // fixed: the variable held in place; shuffled: the permuted one.
    // doubleSweep: the kernel's sweep keeps its sums in double (otherwise in
    // long double).
    DistanceCorrPermutationErrorBound(std::size_t n, const Column& fixed, const Column& shuffled, bool doubleSweep);

    // False where a double sum of the recipe could overflow: the kernel must
    // not be used then.
    bool inRange() const { return inRange_; }
    // Which side of the zero threshold the recipe's distance variances lie on.
    Variance fixedVariance() const { return fixedVariance_; }
    Variance shuffledVariance() const { return shuffledVariance_; }
    // True when both variances are positive and the bound below is valid.
    bool trusted() const { return trusted_; }
    // |kernel value - recipe value| <= c0 + c1 * (kernel value), for kernel
    // values in [0, 1]. Valid only when trusted().
    double c0() const { return c0_; }
    double c1() const { return c1_; }
    // The part of the bound due to a double sweep's rounding (0 when the
    // sweep is in long double), to choose between the two.
    long double doubleSweepShare() const { return doubleSweepShare_; }

private:
    bool inRange_ = false;
    Variance fixedVariance_ = Variance::Undecided;
    Variance shuffledVariance_ = Variance::Undecided;
    bool trusted_ = false;
    double c0_ = 0;
    double c1_ = 0;
    long double doubleSweepShare_ = 0;
};
