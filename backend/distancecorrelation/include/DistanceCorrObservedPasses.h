#pragma once
#include <cstddef>
#include <functional>
#include <vector>

class DistanceCorrMatrixStorage;
class WorkerPool;

// The observed statistics over n x n matrices in three fused passes over the
// rows: the distances; the row and column sums; the centring together with
// every sum of squares and of products. Each number is the result of the same
// floating-point operations in the same order as the step-by-step operations
// of DistanceCorrAlgo, whether the passes run on the calling thread or are
// split across the host's workers: a worker always forms a whole sum (a row's
// sum, the sums of a block of columns over every row, a pair's running sum
// over a block of rows, continued by the next block), never a part of one
// that would have to be combined with another part.
class DistanceCorrObservedPasses {
public:
    using Matrix = std::vector<std::vector<double>>;

    // On the host's workers when it offers more than one, else on the calling thread.
    DistanceCorrObservedPasses();
    // On `pool`; null, or a pool of one worker, means the calling thread.
    explicit DistanceCorrObservedPasses(WorkerPool* pool);

    // Distance matrix k of column k (|x_i - x_j|); every column has the same length n >= 1.
    void distances(const std::vector<const std::vector<double>*>& columns, const std::vector<Matrix*>& targets) const;

    // Row, column and grand means of V matrices, each n x n with the same n >= 1.
    void means(const std::vector<Matrix>& distances, Matrix& rowMeans, Matrix& colMeans,
               std::vector<double>& grandMeans) const;

    // The centred matrices, the dCov of every pair (in pair order) and the dVar
    // of every matrix, from the matrices and their means.
    void centre(const std::vector<Matrix>& distances, const Matrix& rowMeans, const Matrix& colMeans,
                const std::vector<double>& grandMeans, std::vector<Matrix>& centred, std::vector<double>& dCov,
                std::vector<double>& dVar) const;

private:
    void sumTilesOnWorkers(const std::vector<std::vector<const double*>>& rows, Matrix& rowSums, Matrix& colSums) const;
    void centreOnWorkers(const std::vector<Matrix>& distances, const Matrix& rowMeans, const Matrix& colMeans,
                         const std::vector<double>& grandMeans, std::vector<Matrix>& centred,
                         std::vector<double>& squares, std::vector<double>& products) const;
    // n x n rows for each target, reserved in one part per worker.
    DistanceCorrMatrixStorage reserve(const std::vector<Matrix*>& targets, std::size_t n) const;
    // task(t) for every t in [0, count): on the workers, or here in order.
    void run(std::size_t count, const std::function<void(std::size_t)>& task) const;

    WorkerPool* pool_;
    unsigned workers_;
};
