#pragma once
#include <cstddef>
#include <vector>

// Row sums of the distance matrix of one variable, a_k = sum_j |v_k - v_j|,
// from its values in ascending order in O(n): prefix sums, in long double.
class DistanceRowSums {
public:
    // rows[k] = (k v_k - below_k) + (above_k - (n - 1 - k) v_k), below_k and
    // above_k the sums of the values before and after position k.
    // value(k) gives the k-th smallest value, store(k, a) receives its row sum.
    template <class Value, class Store>
    static void ofAscending(std::size_t n, Value value, Store store) {
        long double total = 0;
        for (std::size_t k = 0; k < n; ++k) total += value(k);
        long double below = 0;
        for (std::size_t k = 0; k < n; ++k) {
            const long double v = value(k);
            const long double above = total - below - v;
            store(k, (static_cast<long double>(k) * v - below) + (above - static_cast<long double>(n - 1 - k) * v));
            below += v;
        }
    }

    static std::vector<long double> ofAscending(const std::vector<long double>& sorted);

    // n^2 times the V-statistic distance variance, sum_ij (a_ij - a_i./n -
    // a_.j/n + a../n^2)^2, from ascending values and their row sums:
    // 2 n sum (v - mean)^2 - 2 sum a_i.^2 / n + a..^2 / n^2.
    static long double centredSumOfSquares(const std::vector<long double>& sorted,
                                           const std::vector<long double>& rowSums);
};
