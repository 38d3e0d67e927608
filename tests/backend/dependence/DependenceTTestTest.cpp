// The t-test of independence against R's pt() (values computed in R:
// pt(T, df, lower.tail = FALSE)), at small and huge degrees of freedom, and
// its edge cases.
#include <gtest/gtest.h>

#include <cmath>

#include "DependenceTTest.h"

namespace {

TEST(DependenceTTestTest, TenCasesByHand) {
    // n = 10: M = 35, df = 34, T = sqrt(34) 0.5 / sqrt(0.75).
    const DependenceTTest t = DependenceTTest::compute(0.5, 10);
    EXPECT_EQ(t.df, 34.0);
    EXPECT_NEAR(t.statistic, 3.3665016461206929, 1e-14);
    EXPECT_NEAR(t.pValue, 0.00095095999561715548, 1e-10 * 0.00095095999561715548);
}

TEST(DependenceTTestTest, FourCasesAndANegativeR) {
    // n = 4: M = 2, df = 1.
    const DependenceTTest t = DependenceTTest::compute(-0.3, 4);
    EXPECT_EQ(t.df, 1.0);
    EXPECT_NEAR(t.statistic, -0.31448545101657549, 1e-15);
    EXPECT_NEAR(t.pValue, 0.59698668402067834, 1e-10 * 0.59698668402067834);
}

TEST(DependenceTTestTest, TenMillionCases) {
    const DependenceTTest t = DependenceTTest::compute(1e-7, 10000000);
    EXPECT_EQ(t.df, 49999984999999.0);
    EXPECT_NEAR(t.statistic, 0.70710667512051883, 1e-12);
    EXPECT_NEAR(t.pValue, 0.23975009404783038, 1e-10 * 0.23975009404783038);
}

TEST(DependenceTTestTest, EdgeCases) {
    DependenceTTest t = DependenceTTest::compute(std::nan(""), 20);  // a constant variable
    EXPECT_TRUE(std::isnan(t.statistic));
    EXPECT_TRUE(std::isnan(t.pValue));
    EXPECT_EQ(t.df, 169.0);
    t = DependenceTTest::compute(1.0 + 1e-16, 20);  // rounding beyond 1
    EXPECT_TRUE(std::isinf(t.statistic));
    EXPECT_EQ(t.pValue, 0.0);
    t = DependenceTTest::compute(-1.0, 20);
    EXPECT_EQ(t.pValue, 1.0);
    t = DependenceTTest::compute(0.2, 3);  // too few cases: df = -1
    EXPECT_TRUE(std::isnan(t.pValue));
}

}  // namespace
