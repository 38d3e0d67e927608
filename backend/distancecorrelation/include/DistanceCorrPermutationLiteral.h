#pragma once
#include <cstddef>
#include <vector>

// The permuted statistic exactly as the matrix recipe computes it, bit for
// bit: distances |y_i - y_j|, row sums left to right, column means equal to
// the row means (the distance matrix is symmetric and its columns are summed
// in the same order), grand mean, centring ((d - r_i) - c_j) + g, and the sums
// of a*a, b*b and a*b over all cells in row order. It holds no n x n matrix
// of its own and evaluates up to four permutations at once, one per vector
// lane; each lane performs the recipe's operations in the recipe's order.
class DistanceCorrPermutationLiteral {
public:
    using Matrix = std::vector<std::vector<double>>;
    static constexpr std::size_t kLanes = 4;

    // centredX: the fixed variable's centred matrix, n x n; shuffled: the
    // column that is permuted (n values). Both must outlive this object.
    DistanceCorrPermutationLiteral(const Matrix& centredX, const std::vector<double>& shuffled);

    std::size_t size() const { return n_; }

    // Statistics of count (1 to kLanes) permutations: case u of permutation l
    // takes the shuffled value of case indices[l][u].
    void evaluate(const std::vector<std::size_t>* const* indices, std::size_t count, double* out);
    double evaluate(const std::vector<std::size_t>& index);

private:
    const std::vector<double>& shuffled_;
    std::size_t n_;
    bool haveSumAA_ = false;
    double sumAA_ = 0.0;               // does not depend on the permutation
    std::vector<double> lanes_;        // permuted values, lane-interleaved: 4 per case
    std::vector<double> rowMeans_;     // lane-interleaved
    std::vector<const double*> rows_;  // of the fixed centred matrix
};
