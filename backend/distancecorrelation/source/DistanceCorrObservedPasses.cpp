#include "DistanceCorrObservedPasses.h"

#include <algorithm>
#include <utility>

#include "DistanceCorrMatrixStorage.h"
#include "DistanceCorrRowKernels.h"
#include "HostServices.h"
#include "WorkerPool.h"

namespace {

using Matrix = DistanceCorrObservedPasses::Matrix;

// Tasks per worker in a pass: enough for the workers to even out uneven
// progress (other programs share the cores), few enough to cost nothing.
constexpr std::size_t kTasksPerWorker = 4;
// Rows and columns of a tile of the row and column sums (8 MiB of elements,
// 8 KiB of column sums).
constexpr std::size_t kTile = 1024;
// Centred rows of all matrices taken per step of the centring pass: they are
// still in the shared cache when the pair sums read them in the next step,
// and a step is long enough for the workers' waking to cost little.
constexpr std::size_t kCentringStepBytes = std::size_t{8} << 20;

// Start of part k when [0, count) is cut into `parts` contiguous parts whose
// sizes differ by at most one.
std::size_t partBegin(std::size_t count, std::size_t parts, std::size_t k) {
    return count / parts * k + std::min(k, count % parts);
}

// Means from the row and column sums: each sum over n, and the grand total
// adding the row sums in row order.
void finishMeans(const std::vector<double>& rowSums, const std::vector<double>& colSums, std::vector<double>& rowMeans,
                 std::vector<double>& colMeans, double& grandMean) {
    const std::size_t n = rowSums.size();
    const double count = static_cast<double>(n);
    double total = 0.0;
    rowMeans.resize(n);
    colMeans.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        total += rowSums[i];
        rowMeans[i] = rowSums[i] / count;
        colMeans[i] = colSums[i] / count;
    }
    grandMean = total / static_cast<double>(n * n);
}

// Rows [top, bottom) of a matrix over columns [left, right): each row's
// elements added left to right to its running sum, and each column's elements
// added in row order to its sum. Groups of rows are summed side by side.
void sumTile(const double* const* rows, std::size_t top, std::size_t bottom, std::size_t left, std::size_t right,
             double* rowSums, double* colSums) {
    const DistanceCorrRowKernels& k = DistanceCorrRowKernels::instance();
    std::size_t i = top;
    for (; i + k.groupRows <= bottom; i += k.groupRows) k.sumRowGroup(rows + i, left, right, rowSums + i, colSums);
    for (; i < bottom; ++i) rowSums[i] = k.sumRow(rows[i], left, right, rowSums[i], colSums);
}

// The rows' addresses of each matrix.
std::vector<std::vector<const double*>> rowsOf(const std::vector<Matrix>& matrices) {
    std::vector<std::vector<const double*>> rows(matrices.size());
    for (std::size_t m = 0; m < matrices.size(); ++m) {
        for (const std::vector<double>& row : matrices[m]) rows[m].push_back(row.data());
    }
    return rows;
}

// The pairs (a, b), a < b, of v matrices in pair order.
std::vector<std::pair<std::size_t, std::size_t>> pairsOf(std::size_t v) {
    std::vector<std::pair<std::size_t, std::size_t>> pairs;
    for (std::size_t a = 0; a < v; ++a) {
        for (std::size_t b = a + 1; b < v; ++b) pairs.emplace_back(a, b);
    }
    return pairs;
}

// Dividing the running sums by the number of cells gives dVar and dCov.
void divideByCells(std::size_t n, const std::vector<double>& sums, std::vector<double>& out) {
    const double cells = static_cast<double>(n * n);
    out.clear();
    out.resize(sums.size());
    for (std::size_t k = 0; k < sums.size(); ++k) out[k] = sums[k] / cells;
}

}  // namespace

DistanceCorrObservedPasses::DistanceCorrObservedPasses() : DistanceCorrObservedPasses(HostServices::workerPool()) {}

DistanceCorrObservedPasses::DistanceCorrObservedPasses(WorkerPool* pool)
    : pool_(pool != nullptr && pool->GetThreadCount() > 1 ? pool : nullptr),
      workers_(pool_ != nullptr ? pool_->GetThreadCount() : 1) {}

void DistanceCorrObservedPasses::run(std::size_t count, const std::function<void(std::size_t)>& task) const {
    HostServices::run(pool_, count, [&task](std::size_t t, unsigned) { task(t); });
}

DistanceCorrMatrixStorage DistanceCorrObservedPasses::reserve(const std::vector<Matrix*>& targets,
                                                              std::size_t n) const {
    // The rows of all matrices are reserved before any is written, in one
    // contiguous part per worker.
    return DistanceCorrMatrixStorage(
        targets, n, n, workers_,
        [this](std::size_t count, const std::function<void(std::size_t)>& task) { run(count, task); });
}

void DistanceCorrObservedPasses::distances(const std::vector<const std::vector<double>*>& columns,
                                           const std::vector<Matrix*>& targets) const {
    const DistanceCorrRowKernels& k = DistanceCorrRowKernels::instance();
    const std::size_t n = columns[0]->size();
    DistanceCorrMatrixStorage storage = reserve(targets, n);
    // Every row is written whole on its own, so any worker may take any rows.
    const std::size_t rows = columns.size() * n;
    const std::size_t parts = std::min(rows, kTasksPerWorker * workers_);
    run(parts, [&](std::size_t part) {
        const std::size_t end = partBegin(rows, parts, part + 1);
        for (std::size_t r = partBegin(rows, parts, part); r < end; ++r) {
            const std::size_t v = r / n;
            const std::size_t i = r % n;
            std::vector<double>& row = (*targets[v])[i];
            storage.prepare(row, n);
            k.distanceRow(columns[v]->data(), n, i, row.data());
        }
    });
}

void DistanceCorrObservedPasses::means(const std::vector<Matrix>& distances, Matrix& rowMeans, Matrix& colMeans,
                                       std::vector<double>& grandMeans) const {
    const std::size_t v = distances.size();
    rowMeans.assign(v, {});
    colMeans.assign(v, {});
    grandMeans.assign(v, 0.0);
    const std::size_t n = distances[0].size();
    const std::vector<std::vector<const double*>> rows = rowsOf(distances);
    Matrix rowSums(v, std::vector<double>(n, 0.0));
    Matrix colSums(v, std::vector<double>(n, 0.0));
    if (pool_ != nullptr) {
        sumTilesOnWorkers(rows, rowSums, colSums);
    } else {
        // Each matrix in one read, row group after row group.
        for (std::size_t m = 0; m < v; ++m) sumTile(rows[m].data(), 0, n, 0, n, rowSums[m].data(), colSums[m].data());
    }
    for (std::size_t m = 0; m < v; ++m) finishMeans(rowSums[m], colSums[m], rowMeans[m], colMeans[m], grandMeans[m]);
}

void DistanceCorrObservedPasses::sumTilesOnWorkers(const std::vector<std::vector<const double*>>& rows, Matrix& rowSums,
                                                   Matrix& colSums) const {
    // A row's sum runs along the row and a column's sum down the rows. The
    // matrices are cut into square tiles, and a tile continues the row sums of
    // the tile to its left and the column sums of the tile above it, so the
    // tiles go in waves along the anti-diagonals: every tile of a wave, of
    // every matrix, at the same time, and each matrix is read once.
    const std::size_t v = rows.size();
    const std::size_t n = rows[0].size();
    const std::size_t tiles = (n + kTile - 1) / kTile;
    std::vector<std::pair<std::size_t, std::size_t>> wave;  // (matrix, tile row)
    for (std::size_t d = 0; d + 1 < 2 * tiles; ++d) {
        wave.clear();
        for (std::size_t m = 0; m < v; ++m) {
            for (std::size_t t = d < tiles ? 0 : d - tiles + 1; t <= std::min(d, tiles - 1); ++t)
                wave.emplace_back(m, t);
        }
        run(wave.size(), [&](std::size_t task) {
            const auto [m, t] = wave[task];
            const std::size_t left = (d - t) * kTile;
            sumTile(rows[m].data(), t * kTile, std::min(n, (t + 1) * kTile), left, std::min(n, left + kTile),
                    rowSums[m].data(), colSums[m].data());
        });
    }
}

void DistanceCorrObservedPasses::centre(const std::vector<Matrix>& distances, const Matrix& rowMeans,
                                        const Matrix& colMeans, const std::vector<double>& grandMeans,
                                        std::vector<Matrix>& centred, std::vector<double>& dCov,
                                        std::vector<double>& dVar) const {
    const DistanceCorrRowKernels& k = DistanceCorrRowKernels::instance();
    const std::size_t v = distances.size();
    const std::size_t n = distances[0].size();
    std::vector<double> squares(v, 0.0);
    std::vector<double> products(v * (v - 1) / 2, 0.0);
    if (pool_ != nullptr) {
        centreOnWorkers(distances, rowMeans, colMeans, grandMeans, centred, squares, products);
    } else {
        centred.resize(v);
        std::vector<Matrix*> targets;
        for (Matrix& a : centred) targets.push_back(&a);
        DistanceCorrMatrixStorage storage(targets, n, n);
        // Each row of every centred matrix is written once; its sum of squares
        // and its products with the same row of the other matrices are taken
        // while the row is still in the cache.
        const bool plainVariance = n < 100;  // one running sum over all elements
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t m = 0; m < v; ++m) {
                std::vector<double>& row = centred[m][i];
                storage.prepare(row, n);
                const double rowSquares = k.centreRow(distances[m][i].data(), rowMeans[m][i], colMeans[m].data(),
                                                      grandMeans[m], n, row.data());
                if (plainVariance) {
                    for (double x : row) squares[m] += x * x;
                } else {
                    squares[m] += rowSquares;
                }
            }
            std::size_t pair = 0;
            for (std::size_t a = 0; a < v; ++a) {
                for (std::size_t b = a + 1; b < v; ++b, ++pair) {
                    products[pair] = k.addRowProducts(products[pair], centred[a][i].data(), centred[b][i].data(), n);
                }
            }
        }
    }
    divideByCells(n, squares, dVar);
    divideByCells(n, products, dCov);
}

void DistanceCorrObservedPasses::centreOnWorkers(const std::vector<Matrix>& distances, const Matrix& rowMeans,
                                                 const Matrix& colMeans, const std::vector<double>& grandMeans,
                                                 std::vector<Matrix>& centred, std::vector<double>& squares,
                                                 std::vector<double>& products) const {
    // Steps of a few rows: in step s the workers centre the rows of step s
    // (any worker any row) and continue the running sums of every pair, and
    // below 100 rows the plain sums of squares, over the rows of step s - 1
    // (one task owns a sum for the whole step and adds the rows in order). A
    // row's sum of squares is kept and added to its total in row order at the end.
    const DistanceCorrRowKernels& k = DistanceCorrRowKernels::instance();
    const std::size_t v = distances.size();
    const std::size_t n = distances[0].size();
    centred.resize(v);
    std::vector<Matrix*> targets;
    for (Matrix& a : centred) targets.push_back(&a);
    DistanceCorrMatrixStorage storage = reserve(targets, n);

    const bool plainVariance = n < 100;
    const auto pairs = pairsOf(v);
    const std::size_t pairParts = std::min(pairs.size(), kTasksPerWorker * workers_);
    const std::size_t stepRows = std::max<std::size_t>(1, kCentringStepBytes / (v * n * sizeof(double)));
    const std::size_t steps = (n + stepRows - 1) / stepRows;
    std::vector<double> rowSquares(v * n);

    // The task numbers of a step: the backing of the next step's pages (the
    // system serialises it, so it goes first and runs while the other workers
    // compute), the pair parts and plain sums of squares of the step before,
    // then the rows of this step.
    for (std::size_t s = 0; s <= steps; ++s) {
        const std::size_t first = std::min(n, s * stepRows);
        const std::size_t last = std::min(n, first + stepRows);
        const std::size_t before = s > 0 ? (s - 1) * stepRows : 0;
        const std::size_t supply = s + 1 < steps ? 1 : 0;
        const std::size_t sums = s > 0 ? pairParts + (plainVariance ? v : 0) : 0;  // over the step before
        const std::size_t count = last - first;
        run(supply + sums + v * count, [&](std::size_t t) {
            if (t < supply) {
                for (Matrix& a : centred) {
                    for (std::size_t i = last; i < std::min(n, last + stepRows); ++i) storage.back(a[i], n);
                }
                return;
            }
            t -= supply;
            if (t < pairParts && t < sums) {
                const std::size_t end = partBegin(pairs.size(), pairParts, t + 1);
                for (std::size_t p = partBegin(pairs.size(), pairParts, t); p < end; ++p) {
                    const Matrix& a = centred[pairs[p].first];
                    const Matrix& b = centred[pairs[p].second];
                    double sum = products[p];
                    for (std::size_t i = before; i < first; ++i)
                        sum = k.addRowProducts(sum, a[i].data(), b[i].data(), n);
                    products[p] = sum;
                }
            } else if (t < sums) {
                const std::size_t m = t - pairParts;
                double sum = squares[m];
                for (std::size_t i = before; i < first; ++i) {
                    for (double x : centred[m][i]) sum += x * x;
                }
                squares[m] = sum;
            } else {
                const std::size_t m = (t - sums) / count;
                const std::size_t i = first + (t - sums) % count;
                std::vector<double>& row = centred[m][i];
                storage.prepare(row, n);
                rowSquares[m * n + i] = k.centreRow(distances[m][i].data(), rowMeans[m][i], colMeans[m].data(),
                                                    grandMeans[m], n, row.data());
            }
        });
    }
    if (plainVariance) return;
    for (std::size_t m = 0; m < v; ++m) {
        for (std::size_t i = 0; i < n; ++i) squares[m] += rowSquares[m * n + i];
    }
}
