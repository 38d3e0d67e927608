#pragma once
// Seeded columns of the shapes the permutation kernel must handle: smooth,
// heavy-tailed, far from zero, tied, discrete and constant.
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace permdata {

enum class Kind { Normal, Uniform, Cauchy, Offset, Outliers, Tied, Binary, ThreeLevels, Constant };

inline const std::vector<Kind>& allKinds() {
    static const std::vector<Kind> kinds{Kind::Normal, Kind::Uniform,  Kind::Cauchy,      Kind::Offset,  Kind::Outliers,
                                         Kind::Tied,   Kind::Binary,   Kind::ThreeLevels, Kind::Constant};
    return kinds;
}

inline std::string name(Kind kind) {
    switch (kind) {
        case Kind::Normal: return "normal";
        case Kind::Uniform: return "uniform";
        case Kind::Cauchy: return "cauchy";
        case Kind::Offset: return "offset";
        case Kind::Outliers: return "outliers";
        case Kind::Tied: return "tied";
        case Kind::Binary: return "binary";
        case Kind::ThreeLevels: return "three-levels";
        case Kind::Constant: return "constant";
    }
    return "?";
}

inline std::vector<double> column(Kind kind, std::size_t n, std::mt19937_64& rng) {
    std::normal_distribution<double> normal(0.0, 1.0);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::cauchy_distribution<double> cauchy(0.0, 1.0);
    std::uniform_int_distribution<int> level(0, 2);
    std::vector<double> v(n);
    for (double& x : v) {
        switch (kind) {
            case Kind::Normal: x = normal(rng); break;
            case Kind::Uniform: x = uniform(rng); break;
            case Kind::Cauchy: x = cauchy(rng); break;
            case Kind::Offset: x = 1e6 + normal(rng); break;
            case Kind::Outliers: x = uniform(rng) < 0.05 ? 50.0 * normal(rng) : normal(rng); break;
            case Kind::Tied: x = std::round(normal(rng) * 2.0) / 2.0; break;
            case Kind::Binary: x = uniform(rng) < 0.4 ? 1.0 : 0.0; break;
            case Kind::ThreeLevels: x = 0.7 * level(rng); break;
            case Kind::Constant: x = 3.25; break;
        }
    }
    return v;
}

// A second column that depends on the first (so that the statistics are not
// all near zero), mixed with fresh values of the given kind.
inline std::vector<double> related(const std::vector<double>& x, Kind kind, std::mt19937_64& rng) {
    std::vector<double> y = column(kind, x.size(), rng);
    if (kind == Kind::Constant) return y;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (i % 2 == 0) y[i] = kind == Kind::Binary || kind == Kind::ThreeLevels ? y[i] : y[i] + x[i] * x[i] / 4.0;
    }
    return y;
}

}  // namespace permdata
