#include "DistanceCorrMatrixStorage.h"

#include <algorithm>
#include <atomic>
#include <cerrno>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace {

constexpr std::uintptr_t kHugePage = std::uintptr_t{1} << 21;
// The allocator's bookkeeping between two neighbouring rows.
constexpr std::uintptr_t kGap = 64;
// Smaller matrices are not worth the system calls.
constexpr std::uintptr_t kMinimum = 8 * kHugePage;

// Set once the system has refused huge pages, so that later runs do not ask again.
std::atomic<bool>& unsupported() {
    static std::atomic<bool> flag{false};
    return flag;
}

}  // namespace

DistanceCorrMatrixStorage::DistanceCorrMatrixStorage(const std::vector<Matrix*>& matrices, std::size_t rows,
                                                     std::size_t columns)
    : DistanceCorrMatrixStorage(matrices, rows, columns, 1,
                                [](std::size_t count, const std::function<void(std::size_t)>& task) {
                                    for (std::size_t t = 0; t < count; ++t) task(t);
                                }) {}

DistanceCorrMatrixStorage::DistanceCorrMatrixStorage(const std::vector<Matrix*>& matrices, std::size_t rows,
                                                     std::size_t columns, std::size_t parts, const Runner& run) {
    for (Matrix* matrix : matrices) matrix->resize(rows);
    const std::size_t total = matrices.size() * rows;
    parts = std::max<std::size_t>(1, std::min(parts, total));
    std::vector<std::vector<Range>> freshByPart(parts);
    run(parts, [&](std::size_t part) {
        const std::size_t end = total * (part + 1) / parts;
        for (std::size_t r = total * part / parts; r < end; ++r) {
            std::vector<double>& row = (*matrices[r / rows])[r % rows];
            if (row.capacity() >= columns) continue;
            std::vector<double>().swap(row);
            row.reserve(columns);
            const auto start = reinterpret_cast<std::uintptr_t>(row.data());
            freshByPart[part].emplace_back(start, start + columns * sizeof(double));
        }
    });
    std::vector<Range> fresh;
    for (const std::vector<Range>& ranges : freshByPart) fresh.insert(fresh.end(), ranges.begin(), ranges.end());
    planHugePages(fresh);
}

void DistanceCorrMatrixStorage::prepare(std::vector<double>& row, std::size_t columns) {
    back(row, columns);
    row.resize(columns);
}

void DistanceCorrMatrixStorage::back(const std::vector<double>& row, std::size_t columns) {
    if (pages_.empty() || stopped_.load(std::memory_order_relaxed)) return;
    const auto start = reinterpret_cast<std::uintptr_t>(row.data());
    backRange(start, start + columns * sizeof(double));
}

void DistanceCorrMatrixStorage::planHugePages(std::vector<Range>& fresh) {
    std::uintptr_t total = 0;
    for (const Range& r : fresh) total += r.second - r.first;
    if (total < kMinimum || unsupported().load(std::memory_order_relaxed)) return;
    std::sort(fresh.begin(), fresh.end());
    auto addPages = [this](std::uintptr_t start, std::uintptr_t end) {
        for (std::uintptr_t p = (start + kHugePage - 1) & ~(kHugePage - 1); p + kHugePage <= end; p += kHugePage) {
            pages_.push_back(p);
        }
    };
    std::uintptr_t start = fresh.front().first;
    std::uintptr_t end = fresh.front().second;
    for (std::size_t k = 1; k < fresh.size(); ++k) {
        if (fresh[k].first >= end && fresh[k].first - end <= kGap) {
            end = fresh[k].second;
        } else {
            addPages(start, end);
            start = fresh[k].first;
            end = fresh[k].second;
        }
    }
    addPages(start, end);
    backed_ = std::vector<std::atomic<bool>>(pages_.size());
    for (std::atomic<bool>& b : backed_) b.store(false, std::memory_order_relaxed);
}

void DistanceCorrMatrixStorage::backRange(std::uintptr_t start, std::uintptr_t end) {
#if defined(__linux__)
#if defined(MADV_COLLAPSE)
    constexpr int kCollapse = MADV_COLLAPSE;
#else
    constexpr int kCollapse = 25;  // Linux 6.1 and later
#endif
    auto page = std::upper_bound(pages_.begin(), pages_.end(), start);
    if (page != pages_.begin()) --page;
    for (; page != pages_.end() && *page < end; ++page) {
        const std::size_t k = static_cast<std::size_t>(page - pages_.begin());
        if (*page + kHugePage <= start || backed_[k].exchange(true, std::memory_order_relaxed)) continue;
        if (madvise(reinterpret_cast<void*>(*page), kHugePage, kCollapse) != 0 && errno == EINVAL) {
            unsupported().store(true, std::memory_order_relaxed);
            stopped_.store(true, std::memory_order_relaxed);
            return;
        }
    }
#else
    (void)start;
    (void)end;
#endif
}
