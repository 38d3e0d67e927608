// Chart axes: padded ranges ticked at 1, 2 or 5 times a power of ten, and
// finite, ordered ticks with readable labels for any finite data, from
// denormal numbers to the largest double.
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "output/ChartAxis.h"

namespace {

std::vector<std::string> labels(const host::ChartAxis& axis) {
    std::vector<std::string> texts;
    for (const auto& t : axis.ticks()) texts.push_back(t.label);
    return texts;
}

// What every axis must give: at least two ticks, inside the axis and in
// increasing order, each with a label that is a number; data inside.
void expectValidAxis(double min, double max) {
    SCOPED_TRACE("data from " + std::to_string(min) + " to " + std::to_string(max));
    const host::ChartAxis axis(min, max);
    const auto ticks = axis.ticks();
    ASSERT_GE(ticks.size(), 2u);
    ASSERT_LE(ticks.size(), 15u);
    double previous = -1;
    for (const auto& t : ticks) {
        EXPECT_TRUE(std::isfinite(t.share));
        EXPECT_GE(t.share, 0.0);
        EXPECT_LE(t.share, 1.0);
        EXPECT_GT(t.share, previous);
        previous = t.share;
        ASSERT_FALSE(t.label.empty());
        EXPECT_EQ(t.label.find_first_not_of("0123456789.-+e"), std::string::npos) << t.label;
        char* end = nullptr;
        EXPECT_TRUE(std::isfinite(std::strtold(t.label.c_str(), &end))) << t.label;
        EXPECT_EQ(*end, '\0') << t.label;
    }
    for (double v : {min, max}) {
        EXPECT_TRUE(std::isfinite(axis.share(v)));
        EXPECT_GT(axis.share(v), 0.0);
        EXPECT_LT(axis.share(v), 1.0);
    }
    EXPECT_LE(axis.share(min), axis.share(max));
}

TEST(ChartAxisTest, ZeroToTenIsTickedEveryTwo) {
    // Padded by 4 % of 10: -0.4 to 10.4; a sixth of 10.8 is 1.8, so the step is 2.
    const host::ChartAxis axis(0, 10);
    EXPECT_EQ(labels(axis), (std::vector<std::string>{"0", "2", "4", "6", "8", "10"}));
    EXPECT_DOUBLE_EQ(axis.share(0), 0.4 / 10.8);
    EXPECT_DOUBLE_EQ(axis.share(10), 10.4 / 10.8);
    EXPECT_DOUBLE_EQ(axis.ticks()[1].share, 2.4 / 10.8);
}

TEST(ChartAxisTest, ZeroToOneIsTickedEveryFifthWithOneDecimal) {
    // -0.04 to 1.04; a sixth of 1.08 is 0.18: step 0.2.
    const host::ChartAxis axis(0, 1);
    EXPECT_EQ(labels(axis), (std::vector<std::string>{"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"}));
}

TEST(ChartAxisTest, NormalisedStepOfSevenOrMoreBecomesTheNextPowerOfTen) {
    // 0 to 40: -1.6 to 41.6, a sixth of 43.2 is 7.2, so the step is 10 (no decimals).
    EXPECT_EQ(labels(host::ChartAxis(0, 40)), (std::vector<std::string>{"0", "10", "20", "30", "40"}));
    // 0 to 4: a sixth of 4.32 is 0.72, so the step is 1, shown without decimals.
    EXPECT_EQ(labels(host::ChartAxis(0, 4)), (std::vector<std::string>{"0", "1", "2", "3", "4"}));
}

TEST(ChartAxisTest, ASingleValueIsWidenedByATenth) {
    // 5 becomes 4.5 to 5.5, padded to 4.46 to 5.54: step 0.2 from 4.6.
    EXPECT_EQ(labels(host::ChartAxis(5, 5)), (std::vector<std::string>{"4.6", "4.8", "5.0", "5.2", "5.4"}));
    // Zero becomes -1 to 1, padded to -1.08 to 1.08: step 0.5.
    EXPECT_EQ(labels(host::ChartAxis(0, 0)), (std::vector<std::string>{"-1.0", "-0.5", "0.0", "0.5", "1.0"}));
}

TEST(ChartAxisTest, DenormalDataGetScientificLabels) {
    // 0 to 2e-323 (four times the smallest denormal): ticks of a few 1e-324.
    const double smallest = std::numeric_limits<double>::denorm_min();
    expectValidAxis(0, 4 * smallest);
    expectValidAxis(smallest, smallest);
    expectValidAxis(-smallest, smallest);
    const auto texts = labels(host::ChartAxis(0, 4 * smallest));
    EXPECT_EQ(texts.front(), "0");
    EXPECT_NE(texts.back().find("e-32"), std::string::npos) << texts.back();
}

TEST(ChartAxisTest, TheLargestDoublesGiveAFiniteAxis) {
    const double largest = std::numeric_limits<double>::max();
    expectValidAxis(0, largest);
    expectValidAxis(-largest, largest);
    expectValidAxis(largest, largest);
    expectValidAxis(-largest, -largest);
    const auto texts = labels(host::ChartAxis(-largest, largest));
    EXPECT_NE(texts.back().find("e+308"), std::string::npos) << texts.back();
    // Half way between the ends of a symmetric range.
    EXPECT_DOUBLE_EQ(host::ChartAxis(-largest, largest).share(0), 0.5);
}

TEST(ChartAxisTest, NarrowRangesFarFromZeroKeepTheirDigits) {
    // 1e10 to 1e10 + 1: steps of 0.2 at 1e10 need 11 digits after the point.
    const auto texts = labels(host::ChartAxis(1e10, 1e10 + 1));
    ASSERT_GE(texts.size(), 2u);
    EXPECT_NE(texts[0], texts[1]);
    expectValidAxis(1e10, 1e10 + 1);
    expectValidAxis(1.0, std::nextafter(1.0, 2.0));
}

TEST(ChartAxisTest, RandomRangesOfEveryMagnitudeAreValid) {
    std::mt19937_64 random(7);
    std::uniform_int_distribution<int> exponent(-1074, 1023);
    std::uniform_real_distribution<double> mantissa(-2, 2);
    for (int k = 0; k < 3000; ++k) {
        double a = std::ldexp(mantissa(random), exponent(random));
        double b = k % 3 == 0 ? a : std::ldexp(mantissa(random), exponent(random));
        if (!std::isfinite(a) || !std::isfinite(b)) continue;
        if (a > b) std::swap(a, b);
        expectValidAxis(a, b);
        if (HasFailure()) return;
    }
}

}  // namespace
