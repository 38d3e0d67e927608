#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

#include "DistanceCorrAlgo.h"

namespace {

// The host hands a missing value over as the most negative finite double.
bool isMissing(double value) { return value == std::numeric_limits<double>::lowest(); }

constexpr std::size_t kMinVariables = 2;
constexpr std::size_t kMaxVariables = 30;

}  // namespace

void DistanceCorrAlgo::handleListwiseMissingData(Matrix& data) const {
    if (data.empty() || data.size() < kMinVariables || data.size() > kMaxVariables) {
        throw std::invalid_argument(
            "The selected variable list is empty or does not satisfy the minimal requirements.");
    }
    const std::size_t cases = data[0].size();
    for (const auto& column : data) {
        if (column.size() != cases) throw std::runtime_error("Inner vectors must have the same size");
    }
    // One stable compaction pass; the same result as erasing each incomplete
    // case in place, without the quadratic cost.
    std::size_t kept = 0;
    for (std::size_t c = 0; c < cases; ++c) {
        bool incomplete = false;
        for (const auto& column : data) {
            if (isMissing(column[c])) {
                incomplete = true;
                break;
            }
        }
        if (incomplete) continue;
        if (kept != c) {
            for (auto& column : data) column[kept] = column[c];
        }
        ++kept;
    }
    for (auto& column : data) column.resize(kept);
}

void DistanceCorrAlgo::handleListwiseMissingData(Matrix& data, std::vector<double>& idValues) const {
    bool valid = !data.empty() && data.size() >= kMinVariables && data.size() <= kMaxVariables &&
                 data[0].size() == idValues.size();
    if (valid) {
        for (const auto& column : data) valid = valid && column.size() == data[0].size();
    }
    if (!valid) {
        throw std::invalid_argument(
            "The selected variable list is empty or does not satisfy the requirements.");
    }

    const std::size_t cases = idValues.size();
    std::vector<bool> incomplete(cases, false);
    bool anyIncomplete = false;
    for (std::size_t c = 0; c < cases; ++c) {
        bool missing = isMissing(idValues[c]);
        for (std::size_t v = 0; v < data.size() && !missing; ++v) missing = isMissing(data[v][c]);
        incomplete[c] = missing;
        anyIncomplete = anyIncomplete || missing;
    }
    if (!anyIncomplete) return;

    Matrix kept(data.size());
    for (std::size_t v = 0; v < data.size(); ++v) {
        for (std::size_t c = 0; c < cases; ++c) {
            if (!incomplete[c]) kept[v].push_back(data[v][c]);
        }
    }
    std::vector<double> keptIds;
    for (std::size_t c = 0; c < cases; ++c) {
        if (!incomplete[c]) keptIds.push_back(idValues[c]);
    }
    data = std::move(kept);
    idValues = std::move(keptIds);
}

void DistanceCorrAlgo::performNormalization(Matrix& data) const {
    const std::string method = settings_.criteriaSettings().get_normalization();
    if (method == "MINMAX") {
        performMinMaxNormalization(data);
    } else if (method == "ZSCORE") {
        performzScoreNormalization(data);
    } else if (method == "ROBUST") {
        performRobustScaling(data);
    } else if (method == "LOG") {
        performLogTransformation(data);
    } else if (method == "NONE") {
        return;
    } else {
        throw std::runtime_error("Invalid normalization input is received!");
    }
}

void DistanceCorrAlgo::performMinMaxNormalization(Matrix& data) const {
    for (auto& column : data) {
        if (column.empty()) continue;
        const double lo = *std::min_element(column.begin(), column.end());
        const double hi = *std::max_element(column.begin(), column.end());
        const double range = std::max(hi - lo, EPSILON);
        for (double& x : column) x = (x - lo) / range;
    }
}

void DistanceCorrAlgo::performzScoreNormalization(Matrix& data) const {
    for (auto& column : data) {
        const double mean = calculateMean(column);
        double sd = calculateStdDev(column, mean);
        sd = std::max(sd, EPSILON);
        for (double& x : column) x = (x - mean) / sd;
    }
}

void DistanceCorrAlgo::performRobustScaling(Matrix& data) const {
    for (auto& column : data) {
        std::vector<double> sorted = column;
        std::sort(sorted.begin(), sorted.end());
        const double median = calculateMedian(sorted);
        double iqr = calculateIQR(sorted);
        // Only an exact zero is replaced, unlike the max(., EPSILON) elsewhere.
        if (iqr == 0.0) iqr = EPSILON;
        for (double& x : column) x = (x - median) / iqr;
    }
}

void DistanceCorrAlgo::performLogTransformation(Matrix& data) const {
    // No guard: values <= -1 give -inf or NaN, which flow into the distances.
    for (auto& column : data) {
        for (double& x : column) x = std::log(1.0 + x);
    }
}

double DistanceCorrAlgo::calculateMean(const std::vector<double>& values) const {
    if (values.empty()) return 0.0;
    double sum = 0.0;
    for (double x : values) sum += x;
    return sum / static_cast<double>(values.size());
}

double DistanceCorrAlgo::calculateStdDev(const std::vector<double>& values, double mean) const {
    if (values.empty()) return 0.0;
    double sum = 0.0;
    for (double x : values) sum += (x - mean) * (x - mean);
    // Sample standard deviation; a single value gives 0/0.
    const std::size_t divisor = values.size() - 1;
    return std::sqrt(sum / static_cast<double>(divisor));
}

double DistanceCorrAlgo::calculateMedian(const std::vector<double>& sorted) const {
    const std::size_t n = sorted.size();
    if (n == 0) return 0.0;
    if (n % 2 == 1) return sorted[n / 2];
    return (sorted[n / 2 - 1] + sorted[n / 2]) / 2.0;
}

double DistanceCorrAlgo::calculateIQR(const std::vector<double>& sorted) const {
    // Tukey's hinges: for odd n the middle value belongs to neither half.
    const std::size_t n = sorted.size();
    const std::vector<double> lower(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(n / 2));
    const std::vector<double> upper(sorted.begin() + static_cast<std::ptrdiff_t>((n + 1) / 2), sorted.end());
    return calculateMedian(upper) - calculateMedian(lower);
}
