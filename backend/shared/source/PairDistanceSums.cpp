#include "PairDistanceSums.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "DistanceRowSums.h"

namespace {

// One case while the cases are merged by y: its centred values and the row
// sum of x's distance matrix.
struct Item {
    double y;
    double x;
    double a;
};

bool constant(const std::vector<double>& v) {
    return std::all_of(v.begin(), v.end(), [&](double value) { return value == v.front(); });
}

long double mean(const std::vector<double>& v) {
    long double total = 0;
    for (double value : v) total += value;
    return total / static_cast<long double>(v.size());
}

// sum_ij (v_i - v_j)^2 of centred values.
long double ownCrossSum(const std::vector<Item>& items, double Item::*member) {
    long double sum = 0;
    long double squares = 0;
    for (const Item& item : items) {
        const long double v = item.*member;
        sum += v;
        squares += v * v;
    }
    const long double n = static_cast<long double>(items.size());
    return 2 * n * squares - 2 * sum * sum;
}

// Running sums of count, x, y and x*y over cases of a left half.
struct Moments {
    long double count = 0;
    long double x = 0;
    long double y = 0;
    long double xy = 0;

    [[gnu::always_inline]] void add(const Item& item) {
        count += 1;
        x += item.x;
        y += item.y;
        xy += static_cast<long double>(item.x) * item.y;
    }
};

// Sum over the left cases i of sign(y_j - y_i) (x_j - x_i)(y_j - y_i) for a
// right case j (x_j >= x_i): below holds the left cases at or below y_j.
[[gnu::always_inline]] inline long double meet(const Item& j, const Moments& below, const Moments& all) {
    const long double wCount = 2 * below.count - all.count;
    const long double wX = 2 * below.x - all.x;
    const long double wY = 2 * below.y - all.y;
    const long double wXY = 2 * below.xy - all.xy;
    const long double x = j.x;
    const long double y = j.y;
    return wCount * x * y - x * wY - y * wX + wXY;
}

// Sorts items (in ascending x) by y, stably, and returns half of S1.
long double mergeByY(std::vector<Item>& items) {
    const std::size_t n = items.size();
    std::vector<Item> buffer(n);
    std::vector<Item>* from = &items;
    std::vector<Item>* to = &buffer;
    long double halfS1 = 0;
    for (std::size_t width = 1; width < n; width *= 2) {
        const Item* src = from->data();
        Item* dst = to->data();
        for (std::size_t lo = 0; lo < n; lo += 2 * width) {
            const std::size_t mid = std::min(lo + width, n);
            const std::size_t hi = std::min(lo + 2 * width, n);
            Moments all;
            for (std::size_t p = lo; p < mid; ++p) all.add(src[p]);
            Moments below;
            std::size_t p = lo;
            std::size_t q = mid;
            std::size_t o = lo;
            while (p < mid && q < hi) {
                if (src[p].y <= src[q].y) {
                    below.add(src[p]);
                    dst[o++] = src[p++];
                } else {
                    halfS1 += meet(src[q], below, all);
                    dst[o++] = src[q++];
                }
            }
            while (p < mid) dst[o++] = src[p++];
            while (q < hi) {
                halfS1 += meet(src[q], all, all);
                dst[o++] = src[q++];
            }
        }
        std::swap(from, to);
    }
    if (from != &items) items.swap(*from);
    return halfS1;
}

}  // namespace

PairDistanceSums::PairDistanceSums(const std::vector<double>& x, const std::vector<double>& y) : n_(x.size()) {
    if (y.size() != n_) throw std::invalid_argument("Columns of different length");
    if (n_ == 0) return;
    const bool xConstant = constant(x);
    const bool yConstant = constant(y);

    const long double xMean = mean(x);
    const long double yMean = mean(y);
    std::vector<Item> items(n_);
    for (std::size_t i = 0; i < n_; ++i)
        items[i] = {static_cast<double>(y[i] - yMean), static_cast<double>(x[i] - xMean), 0.0};
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.x < b.x; });

    DistanceRowSums::ofAscending(
        n_, [&](std::size_t k) { return items[k].x; },
        [&](std::size_t k, long double a) { items[k].a = static_cast<double>(a); });
    xx_.s1 = ownCrossSum(items, &Item::x);
    yy_.s1 = ownCrossSum(items, &Item::y);

    const long double halfS1 = mergeByY(items);
    cross_.s1 = 2 * halfS1;

    // The items are now in ascending y: y's row sums meet x's at each case.
    long double aTotal = 0;
    long double bTotal = 0;
    DistanceRowSums::ofAscending(
        n_, [&](std::size_t k) { return items[k].y; },
        [&](std::size_t k, long double b) {
            const long double a = items[k].a;
            cross_.s2 += a * b;
            xx_.s2 += a * a;
            yy_.s2 += b * b;
            aTotal += a;
            bTotal += b;
        });
    cross_.s3 = aTotal * bTotal;
    xx_.s3 = aTotal * aTotal;
    yy_.s3 = bTotal * bTotal;

    // Equal values have zero distances; rounding in the prefix sums must not
    // pretend otherwise.
    if (xConstant) xx_ = cross_ = DistanceSums{};
    if (yConstant) yy_ = cross_ = DistanceSums{};
}
