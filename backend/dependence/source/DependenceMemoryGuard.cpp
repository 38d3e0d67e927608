#include "DependenceMemoryGuard.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>

namespace {

std::string megabytes(std::uint64_t bytes) {
    char text[64];
    std::snprintf(text, sizeof text, "%llu MB", static_cast<unsigned long long>((bytes + (1u << 19)) >> 20));
    return text;
}

}  // namespace

std::uint64_t DependenceMemoryGuard::availableBytes() {
    std::ifstream meminfo("/proc/meminfo");
    std::string line;
    while (std::getline(meminfo, line)) {
        unsigned long long kb = 0;
        if (std::sscanf(line.c_str(), "MemAvailable: %llu kB", &kb) == 1) return static_cast<std::uint64_t>(kb) * 1024;
    }
    const long pages = sysconf(_SC_AVPHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages > 0 && pageSize > 0) return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
    return 0;
}

std::uint64_t DependenceMemoryGuard::matrixBytes(std::size_t n, unsigned matrices) {
    const long double bytes = static_cast<long double>(n) * n * sizeof(double) * matrices;
    const long double most = static_cast<long double>(std::numeric_limits<std::uint64_t>::max());
    return bytes >= most ? std::numeric_limits<std::uint64_t>::max() : static_cast<std::uint64_t>(bytes);
}

bool DependenceMemoryGuard::fits(std::uint64_t bytes, std::uint64_t available) {
    return static_cast<long double>(bytes) <= 0.8L * static_cast<long double>(available);
}

std::string DependenceMemoryGuard::refusal(const std::string& comparison, std::size_t n, unsigned matrices,
                                           std::uint64_t available) {
    std::ostringstream text;
    text << "The permutation test of " << comparison << " needs " << matrices << " matrices of " << n << " x " << n
         << " distances (" << megabytes(matrixBytes(n, matrices)) << "), more than 80% of the " << megabytes(available)
         << " of memory available. Use fewer cases, or TEST TTEST or TEST NONE, which need no matrices.";
    return text.str();
}
