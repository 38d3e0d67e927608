#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

// Sizes what the n x n matrices of a permutation test may take from the
// memory this machine has available now (MemAvailable of /proc/meminfo, else
// the available physical pages): at most 80 % of it.
class DependenceMemoryGuard {
public:
    static std::uint64_t availableBytes();
    // Bytes of `matrices` n x n matrices of doubles, saturating.
    static std::uint64_t matrixBytes(std::size_t n, unsigned matrices);
    static bool fits(std::uint64_t bytes, std::uint64_t available);
    // The message when they do not fit.
    static std::string refusal(const std::string& comparison, std::size_t n, unsigned matrices,
                               std::uint64_t available);
};
