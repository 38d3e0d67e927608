// Load-only benchmark of the CSV reader (workload L1 of bench/run.sh):
//
//   CsvLoadBench data FILE.csv [ROWS [COLUMNS]]   write a seeded numeric CSV
//                                                 (default 1,000,000 x 10, about 100 MB)
//   CsvLoadBench load FILE.csv                    load it as distcorr does and print
//                                                 key=value pairs: CPU and wall time,
//                                                 MB/s, peak memory and its limit
#include <sys/stat.h>

#include <cstdio>
#include <iostream>
#include <random>
#include <string>

#include "BenchSupport.h"
#include "data/CsvDataLoader.h"

namespace {

void print(const char* key, double value) { std::printf(" %s=%.6g", key, value); }

int writeData(const std::string& path, std::size_t rows, std::size_t columns) {
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (out == nullptr) {
        std::perror(path.c_str());
        return 2;
    }
    for (std::size_t c = 0; c < columns; ++c) std::fprintf(out, "%sx%zu", c ? "," : "", c + 1);
    std::fputc('\n', out);
    std::mt19937_64 rng(20240612);
    std::normal_distribution<double> normal(0.0, 100.0);
    for (std::size_t r = 0; r < rows; ++r) {
        for (std::size_t c = 0; c < columns; ++c) std::fprintf(out, "%s%.7g", c ? "," : "", normal(rng));
        std::fputc('\n', out);
    }
    return std::fclose(out) == 0 ? 0 : 2;
}

int load(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        std::perror(path.c_str());
        return 2;
    }
    const double bytes = static_cast<double>(info.st_size);
    const bench::Clock clock;
    const auto data = host::loadCsvDataSet(path, "");
    const double cpu = clock.cpuElapsed();
    const double wall = clock.wallElapsed();
    const double doubles = 8.0 * static_cast<double>(data->caseCount()) * data->variableCount();
    std::printf("cases=%zu variables=%d", data->caseCount(), data->variableCount());
    print("load_cpu", cpu);
    print("load_wall", wall);
    print("file_bytes", bytes);
    print("mb_per_s", bytes / 1e6 / cpu);
    print("peak_bytes", static_cast<double>(bench::peakResidentBytes()));
    print("limit_bytes", bytes + 2.0 * doubles);
    std::printf("\n");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::string command = argc > 2 ? argv[1] : "";
        if (command == "data")
            return writeData(argv[2], argc > 3 ? std::stoul(argv[3]) : 1000000, argc > 4 ? std::stoul(argv[4]) : 10);
        if (command == "load" && argc == 3) return load(argv[2]);
    } catch (const std::exception& e) {
        std::cerr << "CsvLoadBench: " << e.what() << "\n";
        return 1;
    }
    std::cerr << "usage: CsvLoadBench data FILE.csv [ROWS [COLUMNS]] | CsvLoadBench load FILE.csv\n";
    return 2;
}
