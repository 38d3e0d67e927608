// Benchmark of DEPENDENCE's computations, called directly (no host, no CSV
// parsing in the timed part). Prints key=value pairs on one line.
//
//   DependenceBench data D FILE.csv   write workload D's data (seeded)
//   DependenceBench run D             time workload D
//
//   D1  pair statistic (bcdcor and dcor), 2 x 100,000
//   D2  pair statistic, 2 x 10,000,000 (data made in the process)
//   D3  sets, 5 + 5 variables x 5,000, V-statistic dcor (matrix-free sums)
//   D4  t-test, 2 x 100,000
//   D5  permutation test, 2 x 2,000, 999 replicates, V-statistic
#include <cmath>
#include <cstdio>
#include <iostream>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "DependenceDistanceSource.h"
#include "DependenceEstimates.h"
#include "DependenceMatrixFreeSums.h"
#include "DependencePairPermutation.h"
#include "DependencePermutationTest.h"
#include "DependenceTTest.h"
#include "PairDistanceSums.h"

namespace {

struct Shape {
    std::size_t columns;
    std::size_t cases;
};

Shape shapeOf(const std::string& name) {
    if (name == "D1" || name == "D4") return {2, 100000};
    if (name == "D2") return {2, 10000000};
    if (name == "D3") return {10, 5000};
    if (name == "D5") return {2, 2000};
    throw std::invalid_argument("unknown workload " + name);
}

// Column 1 normal; the others mix a quadratic function of it with noise.
bench::Matrix makeData(const std::string& name) {
    const Shape s = shapeOf(name);
    std::mt19937_64 rng(20261122 + s.columns * 1000 + s.cases);
    std::normal_distribution<double> normal;
    bench::Matrix data(s.columns, std::vector<double>(s.cases));
    for (std::size_t c = 0; c < s.cases; ++c) {
        data[0][c] = normal(rng);
        for (std::size_t v = 1; v < s.columns; ++v)
            data[v][c] = 0.3 * static_cast<double>(v % 3) * data[0][c] * data[0][c] + normal(rng);
    }
    return data;
}

void print(const char* key, double value) { std::printf(" %s=%.6g", key, value); }

int run(const std::string& name) {
    const bench::Matrix data = makeData(name);
    const std::size_t n = data[0].size();
    const bench::Clock clock;
    double value = 0;
    double second = 0;
    if (name == "D1" || name == "D2") {
        const PairDistanceSums sums(data[0], data[1]);
        value = DependenceEstimates::uStatistic(n, sums.cross(), sums.xx(), sums.yy()).correlation;
        const double dcor = DependenceEstimates::vStatistic(n, sums.cross(), sums.xx(), sums.yy()).correlation;
        second = dcor * dcor;  // energy's dcor2d is the squared V-statistic
    } else if (name == "D3") {
        const DependenceDistanceSource x({data.begin(), data.begin() + 5}, 1.0);
        const DependenceDistanceSource y({data.begin() + 5, data.end()}, 1.0);
        const DependenceMatrixFreeSums sums({&x, &y});
        value = DependenceEstimates::vStatistic(n, sums.sums(0, 1), sums.sums(0, 0), sums.sums(1, 1)).correlation;
    } else if (name == "D4") {
        const PairDistanceSums sums(data[0], data[1]);
        const DependenceEstimate e = DependenceEstimates::uStatistic(n, sums.cross(), sums.xx(), sums.yy());
        const DependenceTTest t = DependenceTTest::compute(e.ratio, n);
        value = t.statistic;
        second = t.pValue;
    } else {
        DependencePairPermutation pair(data[0], data[1], DependenceStatistic::V, DependencePermutationTest::workers());
        std::vector<std::size_t> identity(n);
        std::iota(identity.begin(), identity.end(), std::size_t{0});
        const DependencePermutationTest test(2000000, 999);
        value =
            test.pValue(n, pair.statistic(identity, 0), 0.0,
                        [&](const std::vector<std::size_t>& index, unsigned w) { return pair.statistic(index, w); });
    }
    std::printf("workload=%s", name.c_str());
    print("cpu", clock.cpuElapsed());
    print("wall", clock.wallElapsed());
    print("value", value);
    print("second", second);
    print("peak_bytes", static_cast<double>(bench::peakResidentBytes()));
    std::printf("\n");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 4 && std::string(argv[1]) == "data") {
            bench::writeCsv(makeData(argv[2]), argv[3]);
            return 0;
        }
        if (argc == 3 && std::string(argv[1]) == "run") return run(argv[2]);
    } catch (const std::exception& e) {
        std::cerr << e.what() << "\n";
        return 1;
    }
    std::cerr << "usage: DependenceBench data D1|D3|D5 FILE.csv | run D1|D2|D3|D4|D5\n";
    return 2;
}
