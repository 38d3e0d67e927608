#include "output/ChartAxis.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "output/NumberText.h"

namespace host {

static_assert(std::numeric_limits<long double>::max_exponent > std::numeric_limits<double>::max_exponent + 8 &&
                  std::numeric_limits<long double>::min_exponent <
                      std::numeric_limits<double>::min_exponent - std::numeric_limits<double>::digits - 8,
              "the axis needs a long double of wider range than double");

namespace {

constexpr int kMaxTicks = 100;
// Fixed notation up to this many decimals and below this magnitude.
constexpr int kMaxFixedDecimals = 6;
constexpr long double kMaxFixedMagnitude = 1e9L;

}  // namespace

ChartAxis::ChartAxis(double min, double max) {
    long double low = min;
    long double high = max;
    if (!(high > low)) {
        const long double widen = low != 0 ? std::fabs(low) * 0.1L : 1.0L;
        low -= widen;
        high += widen;
    }
    const long double pad = (high - low) * 0.04L;
    lo_ = low - pad;
    hi_ = high + pad;
    const long double raw = (hi_ - lo_) / 6;
    stepExponent_ = static_cast<int>(std::floor(std::log10(raw)));
    const long double magnitude = std::pow(10.0L, static_cast<long double>(stepExponent_));
    const long double norm = raw / magnitude;
    step_ = (norm < 1.5L ? 1 : norm < 3 ? 2 : norm < 7 ? 5 : 10) * magnitude;
    if (norm >= 7) ++stepExponent_;
}

double ChartAxis::share(double v) const { return static_cast<double>((v - lo_) / (hi_ - lo_)); }

std::string ChartAxis::label(long double value) const {
    const long double largest = std::max(std::fabs(lo_), std::fabs(hi_));
    if (-stepExponent_ <= kMaxFixedDecimals && largest < kMaxFixedMagnitude)
        return fixedNumber(static_cast<double>(value), std::max(0, -stepExponent_));
    if (value == 0) return "0";
    const int digits = std::clamp(static_cast<int>(std::floor(std::log10(largest))) - stepExponent_, 0, 17);
    char text[64];
    std::snprintf(text, sizeof text, "%.*Le", digits, value);
    return text;
}

std::vector<ChartAxis::Tick> ChartAxis::ticks() const {
    std::vector<Tick> ticks;
    const long double first = std::ceil(lo_ / step_);
    for (int k = 0; k < kMaxTicks; ++k) {
        const long double v = (first + k) * step_;
        if (v > hi_) break;
        ticks.push_back({static_cast<double>((v - lo_) / (hi_ - lo_)), label(v)});
    }
    return ticks;
}

}  // namespace host
