#include "FenwickCrossSweep.h"

#include <algorithm>
#include <cstring>

namespace {

// Count, x, y and x*y of a Fenwick node side by side, so that one vector
// operation updates all four.
typedef double Lanes __attribute__((vector_size(4 * sizeof(double))));

// Cloned for AVX2, with a plain SSE2 version for any other x86-64.
__attribute__((target_clones("avx2", "default"))) double sweepLanes(std::size_t n, const std::size_t* xOrder,
                                                                    const std::size_t* index,
                                                                    const std::uint32_t* yRank, const double* xSorted,
                                                                    const double* yCentred, double* tree,
                                                                    std::size_t top) {
    std::fill(tree, tree + 4 * (top + 1), 0.0);
    Lanes total = {0, 0, 0, 0};
    double halfS1 = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const std::size_t source = index[xOrder[k]];
        const std::uint32_t rank = yRank[source];
        const double xk = xSorted[k];
        const double yk = yCentred[source];
        Lanes below = {0, 0, 0, 0};
        for (std::size_t i = rank; i > 0; i &= i - 1) {
            Lanes node;
            std::memcpy(&node, tree + 4 * i, sizeof node);
            below += node;
        }
        const Lanes w = 2 * below - total;
        halfS1 += w[0] * xk * yk - xk * w[2] - yk * w[1] + w[3];
        const Lanes add = {1, xk, yk, xk * yk};
        for (std::size_t i = rank; i <= top; i += i & (~i + 1)) {
            Lanes node;
            std::memcpy(&node, tree + 4 * i, sizeof node);
            node += add;
            std::memcpy(tree + 4 * i, &node, sizeof node);
        }
        total += add;
    }
    return halfS1;
}

}  // namespace

double FenwickCrossSweep::halfCrossSumLanes(std::size_t n, const std::size_t* xOrder, const std::size_t* index,
                                            const std::uint32_t* yRank, const double* xSorted, const double* yCentred,
                                            double* tree, std::size_t top) {
    return sweepLanes(n, xOrder, index, yRank, xSorted, yCentred, tree, top);
}

long double FenwickCrossSweep::halfCrossSumPrecise(std::size_t n, const std::size_t* xOrder, const std::size_t* index,
                                                   const std::uint32_t* yRank, const long double* xSorted,
                                                   const long double* yCentred, Node* tree, std::size_t top) {
    std::fill(tree, tree + top + 1, Node{});
    Node total;
    long double halfS1 = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const std::size_t source = index[xOrder[k]];
        const std::uint32_t rank = yRank[source];
        const long double xk = xSorted[k];
        const long double yk = yCentred[source];

        // Earlier cases with y at or below yk count +1, the others -1.
        Node below;
        for (std::size_t i = rank; i > 0; i &= i - 1) {
            const Node& node = tree[i];
            below.count += node.count;
            below.x += node.x;
            below.y += node.y;
            below.xy += node.xy;
        }
        const long double wCount = 2 * below.count - total.count;
        const long double wX = 2 * below.x - total.x;
        const long double wY = 2 * below.y - total.y;
        const long double wXY = 2 * below.xy - total.xy;
        halfS1 += wCount * xk * yk - xk * wY - yk * wX + wXY;

        const long double xy = xk * yk;
        for (std::size_t i = rank; i <= top; i += i & (~i + 1)) {
            Node& node = tree[i];
            node.count += 1;
            node.x += xk;
            node.y += yk;
            node.xy += xy;
        }
        total.count += 1;
        total.x += xk;
        total.y += yk;
        total.xy += xy;
    }
    return halfS1;
}
