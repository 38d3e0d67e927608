// Double centring and U-centring of a distance matrix by hand and against
// their definitions.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "DistanceCentring.h"

namespace {

std::vector<double> distances(const std::vector<double>& x) {
    const std::size_t n = x.size();
    std::vector<double> m(n * n);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) m[i * n + j] = std::fabs(x[i] - x[j]);
    return m;
}

TEST(DistanceCentringTest, DoubleCentringByHand) {
    // x = 0, 1, 3: row means 4/3, 1, 5/3, grand mean 4/3.
    std::vector<double> m = distances({0, 1, 3});
    DistanceCentring::doubleCentre(m.data(), 3);
    EXPECT_NEAR(m[0], 0 - 4.0 / 3 - 4.0 / 3 + 4.0 / 3, 1e-15);
    EXPECT_NEAR(m[1], 1 - 4.0 / 3 - 1 + 4.0 / 3, 1e-15);
    EXPECT_NEAR(m[5], 2 - 1 - 5.0 / 3 + 4.0 / 3, 1e-15);
    // Every row of a double-centred matrix sums to zero.
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(m[3 * i] + m[3 * i + 1] + m[3 * i + 2], 0.0, 1e-15);
}

TEST(DistanceCentringTest, UCentringHasZeroDiagonalAndRows) {
    std::vector<double> m = distances({0.5, -1, 2, 7, 3});
    const std::vector<double> d = m;
    DistanceCentring::uCentre(m.data(), 5);
    // Row sums a_i. = 12, 16.5, 10.5, 23.5, 11.5; total 74.
    const double rows[5] = {12, 16.5, 10.5, 23.5, 11.5};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(m[6 * i], 0.0);
        double sum = 0;
        for (int j = 0; j < 5; ++j) {
            sum += m[5 * i + j];
            if (i != j) {
                EXPECT_NEAR(m[5 * i + j], d[5 * i + j] - rows[i] / 3 - rows[j] / 3 + 74.0 / 12, 1e-14);
            }
        }
        // U-centred rows sum to zero off the diagonal.
        EXPECT_NEAR(sum, 0.0, 1e-13);
    }
}

}  // namespace
