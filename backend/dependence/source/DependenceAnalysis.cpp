#include "DependenceAnalysis.h"

#include <cfloat>
#include <cmath>
#include <memory>
#include <numeric>
#include <optional>

#include "DependenceDistanceSource.h"
#include "DependenceEstimates.h"
#include "DependenceMatrixFreeSums.h"
#include "DependenceMatrixPermutation.h"
#include "DependenceMemoryGuard.h"
#include "DependencePairPermutation.h"
#include "DependencePermutationTest.h"
#include "DependenceTTest.h"
#include "PairDistanceSums.h"

namespace {

// Ties of a permuted statistic with the observed one, relative to the
// statistics' size.
constexpr double kTieTolerance = 1e-10;

bool missing(double v) { return v == -DBL_MAX || !std::isfinite(v); }

std::string setLabel(const std::vector<const DependenceVariable*>& side) {
    std::string text = "(";
    for (std::size_t k = 0; k < side.size(); ++k) text += (k ? ", " : "") + side[k]->name;
    return text + ")";
}

std::vector<double> select(const DependenceVariable& v, const std::vector<std::size_t>& cases) {
    std::vector<double> out(cases.size());
    for (std::size_t k = 0; k < cases.size(); ++k) out[k] = v.values[cases[k]];
    return out;
}

std::vector<std::vector<double>> selectAll(const std::vector<const DependenceVariable*>& side,
                                           const std::vector<std::size_t>& cases) {
    std::vector<std::vector<double>> columns;
    for (const DependenceVariable* v : side) columns.push_back(select(*v, cases));
    return columns;
}

std::string count(std::size_t n) { return std::to_string(n); }

}  // namespace

DependenceAnalysis::DependenceAnalysis(const DependenceSettings& settings, std::vector<DependenceResult>& results)
    : settings_(settings), results_(results) {
    message_.SetCommandName("DEPENDENCE");
    message_.SetProcedureTitle("Dependence");
}

std::vector<DependenceAnalysis::Comparison> DependenceAnalysis::comparisons() const {
    std::vector<Comparison> out;
    const auto& first = settings_.variables;
    const auto& second = settings_.with;
    if (settings_.mode == DependenceMode::Sets) {
        Comparison c;
        for (const auto& v : first) c.x.push_back(&v);
        for (const auto& v : second) c.y.push_back(&v);
        c.label = setLabel(c.x) + " vs. " + setLabel(c.y);
        out.push_back(c);
        return out;
    }
    const auto pair = [&](const DependenceVariable& a, const DependenceVariable& b) {
        out.push_back({a.name + " vs. " + b.name, {&a}, {&b}});
    };
    if (second.empty()) {
        for (std::size_t i = 0; i < first.size(); ++i)
            for (std::size_t j = i + 1; j < first.size(); ++j) pair(first[i], first[j]);
    } else {
        for (const auto& a : first)
            for (const auto& b : second) pair(a, b);
    }
    return out;
}

std::vector<std::size_t> DependenceAnalysis::casesOf(const Comparison& comparison) const {
    std::vector<const DependenceVariable*> used;
    if (settings_.missing == DependenceMissing::Listwise) {
        for (const auto* list : {&settings_.variables, &settings_.with, &settings_.control})
            for (const auto& v : *list) used.push_back(&v);
    } else {
        used = comparison.x;
        used.insert(used.end(), comparison.y.begin(), comparison.y.end());
        for (const auto& v : settings_.control) used.push_back(&v);
    }
    const std::size_t n = used.empty() ? 0 : used[0]->values.size();
    std::vector<std::size_t> cases;
    for (std::size_t i = 0; i < n; ++i) {
        bool complete = true;
        for (const DependenceVariable* v : used) complete = complete && !missing(v->values[i]);
        if (complete) cases.push_back(i);
    }
    return cases;
}

std::size_t DependenceAnalysis::minimumCases() const { return settings_.statistic == DependenceStatistic::U ? 4 : 2; }

bool DependenceAnalysis::matricesNeeded(const Comparison& comparison) const {
    const bool single = comparison.x.size() == 1 && comparison.y.size() == 1 && settings_.exponent == 1.0;
    return settings_.test == DependenceTest::Permutation && (!single || !settings_.control.empty());
}

bool DependenceAnalysis::memoryFits(const std::vector<Comparison>& comparisons) const {
    std::optional<std::uint64_t> available;
    for (const Comparison& c : comparisons) {
        if (!matricesNeeded(c)) continue;
        const std::size_t n = casesOf(c).size();
        const unsigned matrices = DependenceMatrixPermutation::peakMatrices(!settings_.control.empty());
        if (!available) available = DependenceMemoryGuard::availableBytes();
        if (!DependenceMemoryGuard::fits(DependenceMemoryGuard::matrixBytes(n, matrices), *available)) {
            message_.GenericError(DependenceMemoryGuard::refusal(c.label, n, matrices, *available));
            return false;
        }
    }
    return true;
}

unsigned DependenceAnalysis::start() {
    try {
        const std::vector<Comparison> all = comparisons();
        if (!memoryFits(all)) return 1;
        bool any = false;
        for (const Comparison& c : all) {
            DependenceResult r = analyse(c);
            if (!r.computed) {
                message_.GenericWarning(
                    c.label + ": " + count(r.n) + " complete cases; " +
                    (settings_.statistic == DependenceStatistic::U ? "the bias-corrected" : "the V-") +
                    " statistic needs at least " + count(minimumCases()) + ".");
            }
            any = any || r.computed;
            results_.push_back(r);
        }
        if (!any) {
            message_.GenericError("Too few complete cases: no comparison has the " + count(minimumCases()) +
                                  " cases its statistic needs.");
            return 1;
        }
    } catch (const std::bad_alloc&) {
        message_.GenericError("There is not enough memory for this analysis.");
        return 1;
    } catch (const std::exception&) {
        return 1;
    }
    return 0;
}

DependenceResult DependenceAnalysis::analyse(const Comparison& comparison) const {
    DependenceResult result;
    result.label = comparison.label;
    const std::vector<std::size_t> cases = casesOf(comparison);
    const std::size_t n = cases.size();
    result.n = n;
    if (n < minimumCases()) return result;

    const bool partial = !settings_.control.empty();
    const bool u = settings_.statistic == DependenceStatistic::U;
    const bool single = comparison.x.size() == 1 && comparison.y.size() == 1 && settings_.exponent == 1.0;
    std::vector<const DependenceVariable*> controls;
    for (const auto& v : settings_.control) controls.push_back(&v);

    // Observed estimates.
    DependenceEstimate e;
    if (single && (!partial || controls.size() == 1)) {
        const std::vector<double> x = select(*comparison.x[0], cases);
        const std::vector<double> y = select(*comparison.y[0], cases);
        const PairDistanceSums xy(x, y);
        if (!partial) {
            e = u ? DependenceEstimates::uStatistic(n, xy.cross(), xy.xx(), xy.yy())
                  : DependenceEstimates::vStatistic(n, xy.cross(), xy.xx(), xy.yy());
        } else {
            const std::vector<double> z = select(*controls[0], cases);
            const PairDistanceSums xz(x, z);
            const PairDistanceSums yz(y, z);
            e = DependenceEstimates::partial(n, xy.cross(), xz.cross(), yz.cross(), xy.xx(), xy.yy(), xz.yy());
        }
    } else {
        const DependenceDistanceSource x(selectAll(comparison.x, cases), settings_.exponent);
        const DependenceDistanceSource y(selectAll(comparison.y, cases), settings_.exponent);
        std::vector<const DependenceDistanceSource*> sources{&x, &y};
        std::unique_ptr<DependenceDistanceSource> z;
        if (partial) {
            z = std::make_unique<DependenceDistanceSource>(selectAll(controls, cases), settings_.exponent);
            sources.push_back(z.get());
        }
        const DependenceMatrixFreeSums sums(sources);
        if (partial)
            e = DependenceEstimates::partial(n, sums.sums(0, 1), sums.sums(0, 2), sums.sums(1, 2), sums.sums(0, 0),
                                             sums.sums(1, 1), sums.sums(2, 2));
        else
            e = u ? DependenceEstimates::uStatistic(n, sums.sums(0, 1), sums.sums(0, 0), sums.sums(1, 1))
                  : DependenceEstimates::vStatistic(n, sums.sums(0, 1), sums.sums(0, 0), sums.sums(1, 1));
    }
    result.computed = true;
    result.correlation = e.correlation;
    result.covariance = e.covariance;

    if (settings_.test == DependenceTest::TTest) {
        const DependenceTTest t = DependenceTTest::compute(e.ratio, n);
        result.tStatistic = t.statistic;
        result.df = t.df;
        result.pValue = t.pValue;
    } else if (settings_.test == DependenceTest::Permutation) {
        const DependencePermutationTest test(settings_.seed, settings_.replicates);
        std::vector<std::size_t> identity(n);
        std::iota(identity.begin(), identity.end(), std::size_t{0});
        if (matricesNeeded(comparison)) {
            const DependenceDistanceSource x(selectAll(comparison.x, cases), settings_.exponent);
            const DependenceDistanceSource y(selectAll(comparison.y, cases), settings_.exponent);
            std::unique_ptr<DependenceDistanceSource> z;
            if (partial) z = std::make_unique<DependenceDistanceSource>(selectAll(controls, cases), settings_.exponent);
            const DependenceMatrixPermutation matrices(x, y, z.get(), settings_.statistic);
            result.pValue =
                test.pValue(n, matrices.statistic(identity), kTieTolerance * matrices.scale(),
                            [&](const std::vector<std::size_t>& index, unsigned) { return matrices.statistic(index); });
        } else {
            const std::vector<double> x = select(*comparison.x[0], cases);
            const std::vector<double> y = select(*comparison.y[0], cases);
            const PairDistanceSums own(x, y);
            const long double scale = u ? std::sqrt(std::fabs(own.xx().uProduct(n) * own.yy().uProduct(n)))
                                        : std::sqrt(std::fabs(own.xx().vProduct(n) * own.yy().vProduct(n)));
            DependencePairPermutation pair(x, y, settings_.statistic, DependencePermutationTest::workers());
            result.pValue = test.pValue(
                n, pair.statistic(identity, 0), kTieTolerance * static_cast<double>(scale),
                [&](const std::vector<std::size_t>& index, unsigned worker) { return pair.statistic(index, worker); });
        }
    }
    return result;
}
