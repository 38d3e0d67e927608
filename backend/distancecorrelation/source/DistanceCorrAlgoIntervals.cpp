#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

#include <boost/math/distributions/normal.hpp>
#include <boost/math/policies/policy.hpp>

#include "DistanceCorrAlgo.h"

namespace {

// Spelled out so that a quantile at probability 0 or 1 always throws
// (std::overflow_error), whatever the build-wide Boost defaults are.
using QuantilePolicy = boost::math::policies::policy<
    boost::math::policies::overflow_error<boost::math::policies::throw_on_error>,
    boost::math::policies::domain_error<boost::math::policies::throw_on_error>>;
using StandardNormal = boost::math::normal_distribution<double, QuantilePolicy>;

}  // namespace

void DistanceCorrAlgo::computeConfidenceInterval(const std::vector<double>& observed, std::uint64_t n) {
    if (results_.size() != observed.size()) return;
    for (std::size_t k = 0; k < observed.size(); ++k) {
        const double r = std::min(std::max(observed[k], 1e-8), 0.99999999);
        const double z = 0.5 * std::log((1 + r) / (1 - r));
        // n - 3 wraps for n < 3, which collapses the interval onto the
        // estimate; kept on purpose.
        const std::uint64_t dof = n - 3;
        const double se = 1 / std::sqrt(static_cast<double>(dof));
        const double alpha = 1 - settings_.criteriaSettings().get_ciLevel() / 100;
        const double zcrit = inverse_normal_cdf(1 - alpha / 2);
        const double lower = std::max(0.0, std::tanh(z - zcrit * se));
        const double upper = std::min(1.0, std::tanh(z + zcrit * se));
        results_[k].ciLower = roundToPrecision(lower, 4);
        results_[k].ciUpper = roundToPrecision(upper, 4);
    }
}

double DistanceCorrAlgo::inverse_normal_cdf(double probability) const {
    const StandardNormal standardNormal(0.0, 1.0);
    return boost::math::quantile(standardNormal, probability);
}

void DistanceCorrAlgo::computeDescriptiveStatistics(const Matrix& columns, std::uint64_t n) {
    const std::vector<std::string> names = settings_.globalSettings().getGlobalVarNames();
    const std::vector<std::string> labels = settings_.globalSettings().getGlobalVarLabels();
    if (names.size() != labels.size() || labels.size() != columns.size()) {
        throw std::runtime_error("Invalid input size to compute descriptive data");
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::vector<double>& column = columns[i];
        DistanceCorrDescriptiveResult record;
        record.varLabel = labels[i];
        record.varName = names[i];
        record.n = n;
        record.mean = roundToPrecision(calculateMean(column), 4);
        // About the rounded mean on purpose: the table shows that mean.
        record.stdDev = roundToPrecision(calculateStdDev(column, record.mean), 4);
        record.values = column;
        if (!column.empty()) {
            record.minimum = *std::min_element(column.begin(), column.end());
            record.maximum = *std::max_element(column.begin(), column.end());
        }
        descriptives_.push_back(std::move(record));
    }
}
