// Load-only benchmark of the CSV reader (workload L1 of bench/run.sh):
//
//   CsvLoadBench data FILE.csv [ROWS [COLUMNS]]   write a seeded numeric CSV
//                                                 (default 1,000,000 x 10, about 100 MB)
//   CsvLoadBench load FILE.csv                    load it as distcorr does and print
//                                                 key=value pairs: CPU and wall time,
//                                                 MB/s, peak memory and its limit
//   CsvLoadBench scale FOLDER                     time the files that once loaded in
//                                                 quadratic time: 100,000 columns of one
//                                                 name, 200,000 categories, 20,000
//                                                 missing-value texts over 20,000 cells
#include <sys/stat.h>

#include <cstdio>
#include <iostream>
#include <random>
#include <stdexcept>
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

void writeText(const std::string& path, const std::string& text) {
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (out == nullptr || std::fwrite(text.data(), 1, text.size(), out) != text.size() || std::fclose(out) != 0)
        throw std::runtime_error("cannot write " + path);
}

double secondsToLoad(const std::string& path) {
    const bench::Clock clock;
    host::loadCsvDataSet(path, "");
    return clock.cpuElapsed();
}

int scale(const std::string& folder) {
    std::string header = "x";
    std::string row = "0";
    for (int i = 1; i < 100000; ++i) {
        header += ",x";
        row += ",1";
    }
    writeText(folder + "/wide.csv", header + "\n" + row + "\n");
    std::string categories;
    for (int i = 0; i < 200000; ++i)
        categories += (i ? ",{\"value\":" : "{\"value\":") + std::to_string(i) + ",\"label\":\"c\"}";
    writeText(folder + "/categories.csv", "g\n1\n");
    writeText(folder + "/categories.schema.json",
              "{\"fields\":[{\"name\":\"g\",\"categories\":[" + categories + "]}]}");
    std::string codes;
    std::string cells = "v\n";
    for (int i = 0; i < 20000; ++i) {
        codes += (i ? ",\"" : "\"") + std::to_string(-1 - 2 * i) + "\"";
        cells += std::to_string(-1 - i) + "\n";
    }
    writeText(folder + "/missing.csv", cells);
    writeText(folder + "/missing.schema.json", "{\"missingValues\":[" + codes + "]}");
    std::printf("wide_cpu=%.3f categories_cpu=%.3f missing_cpu=%.3f\n", secondsToLoad(folder + "/wide.csv"),
                secondsToLoad(folder + "/categories.csv"), secondsToLoad(folder + "/missing.csv"));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::string command = argc > 2 ? argv[1] : "";
        if (command == "data")
            return writeData(argv[2], argc > 3 ? std::stoul(argv[3]) : 1000000, argc > 4 ? std::stoul(argv[4]) : 10);
        if (command == "load" && argc == 3) return load(argv[2]);
        if (command == "scale" && argc == 3) return scale(argv[2]);
    } catch (const std::exception& e) {
        std::cerr << "CsvLoadBench: " << e.what() << "\n";
        return 1;
    }
    std::cerr << "usage: CsvLoadBench data FILE.csv [ROWS [COLUMNS]] | load FILE.csv | scale FOLDER\n";
    return 2;
}
