#pragma once
#include <string>
#include <vector>

namespace host {

// An axis over a data range: padded by 4 % on each side (a single value is
// widened by a tenth of itself, or by 1 around zero) and ticked at 1, 2 or 5
// times a power of ten. It is computed in long double, whose range holds the
// span and padding of any two finite doubles, so denormal numbers and
// +-1.7976931348623157e308 give a finite axis with finite ticks.
class ChartAxis {
public:
    struct Tick {
        double share;       // where the tick lies: 0 at the low end, 1 at the high end
        std::string label;  // fixed notation, or scientific for very small or large numbers
    };

    // min <= max, both finite.
    ChartAxis(double min, double max);

    // Where v lies along the axis: 0 at the low end, 1 at the high end.
    double share(double v) const;
    std::vector<Tick> ticks() const;

private:
    std::string label(long double value) const;

    long double lo_;
    long double hi_;
    long double step_;
    int stepExponent_;  // the power of ten of the step
};

}  // namespace host
