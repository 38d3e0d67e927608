#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

// Storage of whole n x n matrices for the observed statistics. Faulting in
// fresh memory 4 KiB at a time costs about as much as computing the matrices,
// so the rows of a matrix are reserved together (one stretch of memory where
// the allocator allows it) and each 2 MiB of that stretch is then backed by one
// huge page, just before its first row is written: the page the kernel has
// just zeroed is still in the cache when the row goes in.
class DistanceCorrMatrixStorage {
public:
    using Matrix = std::vector<std::vector<double>>;

    // run(count, task) calls task(0) ... task(count - 1), possibly on several threads at once.
    using Runner = std::function<void(std::size_t, const std::function<void(std::size_t)>&)>;

    // Gives each matrix `rows` rows with room for `columns` doubles, without
    // writing them yet.
    DistanceCorrMatrixStorage(const std::vector<Matrix*>& matrices, std::size_t rows, std::size_t columns);
    // The same, the rows reserved in `parts` contiguous parts, one per task
    // of `run`: on workers, the allocator serves each part from its worker's
    // own arena, and the page faults of its bookkeeping are taken side by side.
    DistanceCorrMatrixStorage(const std::vector<Matrix*>& matrices, std::size_t rows, std::size_t columns,
                              std::size_t parts, const Runner& run);

    // Sizes a row to `columns`, backing its storage first if it is fresh.
    // Workers may prepare different rows at the same time.
    void prepare(std::vector<double>& row, std::size_t columns);

    // Backs the fresh storage of a row's `columns` doubles ahead of prepare().
    void back(const std::vector<double>& row, std::size_t columns);

private:
    using Range = std::pair<std::uintptr_t, std::uintptr_t>;

    // The 2 MiB pages lying wholly within runs of rows that follow one another
    // in memory: only those are advised, so no other memory is affected.
    void planHugePages(std::vector<Range>& fresh);
    void backRange(std::uintptr_t start, std::uintptr_t end);

    std::vector<std::uintptr_t> pages_;      // start addresses, ascending; fixed once planned
    std::vector<std::atomic<bool>> backed_;  // claimed by the first row that needs the page
    std::atomic<bool> stopped_{false};       // the system refused: advise nothing more
};
