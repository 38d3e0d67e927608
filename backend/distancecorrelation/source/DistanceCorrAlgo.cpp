#include "DistanceCorrAlgo.h"

#include <algorithm>
#include <utility>

thread_local DistanceCorrAlgo::ThreadBuffers DistanceCorrAlgo::threadBuffers;

DistanceCorrAlgo::DistanceCorrAlgo(const DistanceCorrInputSettings& settings,
                                   std::vector<DistanceCorrResult>& results,
                                   std::vector<DistanceCorrDescriptiveResult>& descriptives,
                                   DistanceCorrCommonData& common)
    : settings_(settings), results_(results), descriptives_(descriptives), common_(common) {
    message_.SetCommandName("DISTANCE CORRELATION");
    message_.SetProcedureTitle("Distance Correlation");
}

int DistanceCorrAlgo::start() {
    try {
        Matrix data = settings_.globalSettings().getGlobalData();
        const bool permEnabled = settings_.criteriaSettings().get_permEnabled();
        if (data.empty()) return 1;

        std::vector<double> idValues = settings_.idSettings().getIdData();
        if (!idValues.empty()) {
            handleListwiseMissingData(data, idValues);
        } else {
            handleListwiseMissingData(data);
        }
        if (data.empty() || data[0].empty()) return 1;

        const std::uint64_t variables = data.size();
        const std::uint64_t cases = data[0].size();
        // Checked before any matrix is built: every variable needs two N x N matrices.
        if (exceedsMemoryLimit(calculateMemoryEstimate(variables, cases, permEnabled))) {
            message_.GenericWarning("Insufficient memory for Distance Correlation.");
            return 1;
        }

        // Descriptives first, so that they are in the user's units.
        computeDescriptiveStatistics(data, cases);
        performNormalization(data);

        std::vector<Matrix> distanceMatrices;
        performEuclideanDistanceAnalysis(data, distanceMatrices);

        std::vector<Matrix> centered;
        std::vector<double> dCor;
        // The distance matrices are not needed afterwards: hand them to the records.
        computeDistanceCorrelation(std::move(distanceMatrices), centered, dCor);

        computeConfidenceInterval(dCor, cases);
        if (permEnabled) permutationTest(data, dCor, centered);

        // Last, so that the common data is only filled by a complete run.
        fillCommonDataForOutputTable(idValues);
        return 0;
    } catch (...) {
        // The reason is not shown to the user; the caller only sees the status.
        return 1;
    }
}

std::uint64_t DistanceCorrAlgo::calculateMemoryEstimate(std::uint64_t variables, std::uint64_t cases,
                                                        bool permEnabled) {
    const std::uint64_t base = variables * 2 * cases * cases * 8;
    std::uint64_t extra = 0;
    if (permEnabled) {
        const int pairs = static_cast<int>(variables * (variables - 1) / 2);
        const int workers = std::min(pairs, 1);
        extra = (cases * 2 * cases * 8) * static_cast<std::uint64_t>(std::max(workers, 0));
    }
    return base + extra;
}

bool DistanceCorrAlgo::exceedsMemoryLimit(std::uint64_t estimatedBytes) {
    return estimatedBytes > kMemoryLimitBytes;
}

void DistanceCorrAlgo::fillCommonDataForOutputTable(std::vector<double>& idValues) {
    common_.idValues = idValues;
}

int DistanceCorrAlgo::get_optimal_threads(int requested) const { return std::min(requested, 1); }
