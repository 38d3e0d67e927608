#pragma once
#include <cstdint>
#include <string>
#include <vector>

// Which estimate of distance dependence a run reports.
enum class DependenceStatistic {
    U,  // bias-corrected U-statistics (energy's bcdcor, dcovU): squared scale
    V   // V-statistics (energy's dcor, dcov): root scale
};

enum class DependenceMode {
    Pairs,  // every pair of single variables
    Sets    // the first list as one vector X, the second as one vector Y
};

enum class DependenceTest { TTest, Permutation, None };

enum class DependenceMissing { Listwise, Pairwise };

// One analysis variable: its name as written and its values in case order
// (missing values are the most negative finite double).
struct DependenceVariable {
    std::string name;
    std::vector<double> values;
};

// The run's configuration and case data, filled by the settings reader and
// read-only afterwards.
struct DependenceSettings {
    std::vector<DependenceVariable> variables;  // VARIABLES
    std::vector<DependenceVariable> with;       // after WITH; empty without it
    std::vector<DependenceVariable> control;    // CONTROL; empty without it
    DependenceStatistic statistic = DependenceStatistic::U;
    double exponent = 1.0;
    DependenceMode mode = DependenceMode::Pairs;
    DependenceTest test = DependenceTest::TTest;
    std::uint64_t seed = 2000000;
    std::uint64_t replicates = 999;
    DependenceMissing missing = DependenceMissing::Listwise;
};
