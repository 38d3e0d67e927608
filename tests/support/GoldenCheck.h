#pragma once
// The golden end-to-end cases: the manifest tests/e2e/golden/cases.tsv (case
// name, data file, extra options), running one case through distcorr, and
// the independent check of every number of an expected document.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <rapidjson/document.h>

#include "DistcorrRunner.h"
#include "GoldenDocument.h"
#include "GoldenReference.h"

namespace golden {

inline const std::string kGoldenDir = DC_SOURCE_DIR "/tests/e2e/golden";

inline std::string dataFile(const std::string& name) { return kGoldenDir + "/data/" + name; }
inline std::string syntaxFile(const std::string& caseName) { return kGoldenDir + "/syntax/" + caseName + ".sps"; }
inline std::string expectedFile(const std::string& caseName) { return kGoldenDir + "/expected/" + caseName + ".json"; }

struct ManifestEntry {
    std::string name;
    std::string data;
    std::vector<std::string> options;
};

inline std::vector<ManifestEntry> readManifest() {
    std::vector<ManifestEntry> entries;
    std::ifstream in(kGoldenDir + "/cases.tsv");
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        ManifestEntry e;
        std::getline(fields, e.name, '\t');
        std::getline(fields, e.data, '\t');
        std::string options;
        std::getline(fields, options);
        std::istringstream words(options);
        for (std::string w; words >> w;) e.options.push_back(w);
        entries.push_back(e);
    }
    return entries;
}

inline ManifestEntry manifestEntry(const std::string& name) {
    for (const ManifestEntry& e : readManifest())
        if (e.name == name) return e;
    return {};
}

// The expected document of a case, parsed.
inline rapidjson::Document expectedDocument(const std::string& caseName) {
    return parseJsonExactly(expectedFile(caseName));
}

// The one run's output object of a document.
inline const rapidjson::Value& outputOf(const rapidjson::Document& doc) { return doc["runs"][0]["output"]; }

// Finds an item by its name; throws when absent, which fails the test.
inline const rapidjson::Value* findItem(const rapidjson::Document& doc, const std::string& name) {
    for (const auto& item : outputOf(doc)["items"].GetArray())
        if (name == item["name"].GetString()) return &item;
    throw std::runtime_error("the document has no item \"" + name + "\"");
}

// What a case asks for, written down separately from its syntax file, so
// that the expected numbers are recomputed from the data and these settings.
struct CaseSpec {
    CaseSpec() = default;
    CaseSpec(std::string dataFileName, std::vector<std::string> variables, std::vector<std::string> varLabels = {},
             std::string idVariable = "")
        : data(std::move(dataFileName)), vars(std::move(variables)), labels(std::move(varLabels)), id(std::move(idVariable)) {}

    std::string data;                   // file in tests/e2e/golden/data
    std::vector<std::string> vars;      // analysis variables, in order
    std::vector<std::string> labels;    // the "Label" cells of the descriptive table
    std::string id;                     // ID variable, empty for none
    std::string normalization = "NONE";
    double zcrit = goldenref::kZ95;
    bool permutation = false;
    double seed = 2000000.0;
    double iterations = 1000.0;
    double alpha = 0.05;
    std::string xAxis;
    std::string yAxis;
    std::string vs = "vs.";
    std::string matrixTitle = "Distance Matrix for Variable ";
};

// The data of a case after listwise deletion, raw and rescaled.
struct CaseData {
    std::vector<goldenref::Column> raw;
    std::vector<goldenref::Column> scaled;
    goldenref::Column ids;
    std::size_t n = 0;

    std::size_t index(const CaseSpec& spec, const std::string& var) const {
        for (std::size_t v = 0; v < spec.vars.size(); ++v)
            if (spec.vars[v] == var) return v;
        ADD_FAILURE() << "variable " << var << " is not analysed";
        return 0;
    }
};

inline CaseData loadCase(const CaseSpec& spec) {
    const CsvTable table = readCsv(dataFile(spec.data));
    CaseData d;
    for (const std::string& v : spec.vars) d.raw.push_back(table.column(v));
    if (!spec.id.empty()) d.ids = table.column(spec.id);
    goldenref::dropIncompleteCases(d.raw, spec.id.empty() ? nullptr : &d.ids);
    d.n = d.raw[0].size();
    for (const auto& col : d.raw) d.scaled.push_back(goldenref::rescale(col, spec.normalization));
    return d;
}

inline void expectRow(const rapidjson::Value& row, const std::vector<double>& expected, const std::string& where) {
    ASSERT_TRUE(row.IsArray()) << where;
    ASSERT_EQ(row.Size(), expected.size()) << where;
    for (rapidjson::SizeType c = 0; c < row.Size(); ++c) {
        ASSERT_TRUE(row[c].IsNumber()) << where << " column " << c;
        EXPECT_EQ(row[c].GetDouble(), expected[c]) << where << " column " << c << ": document "
                                                    << shortest(row[c].GetDouble()) << ", recomputed "
                                                    << shortest(expected[c]);
    }
}

// Checks every number of every item of the document against the independent
// computation, and that no item is left unchecked.
inline void verifyNumbers(const CaseSpec& spec, const rapidjson::Document& doc) {
    using namespace goldenref;
    const CaseData d = loadCase(spec);
    const std::size_t V = spec.vars.size();

    struct Pair {
        std::string label;
        double dCov, dCor;
        Interval ci;
        PermutationResult perm;
    };
    std::vector<Pair> pairs;
    std::vector<PermutationResult> perm;
    if (spec.permutation) perm = permutationTest(d.scaled, spec.seed, spec.iterations, spec.alpha);
    for (std::size_t i = 0, k = 0; i < V; ++i)
        for (std::size_t j = i + 1; j < V; ++j, ++k) {
            const double r = dCor(d.scaled[i], d.scaled[j]);
            pairs.push_back({spec.vars[i] + " " + spec.vs + " " + spec.vars[j], round4(dCov(d.scaled[i], d.scaled[j])),
                             round4(r), fisherInterval(r, d.n, spec.zcrit), spec.permutation ? perm[k] : PermutationResult{}});
        }

    for (const auto& item : outputOf(doc)["items"].GetArray()) {
        const std::string name = item["name"].GetString();
        if (std::string(item["type"].GetString()) == "chart") {
            // Points in row-major order of the upper triangle: (1,2), (1,3), ..., (2,3), ...
            const Column& x = d.scaled[d.index(spec, spec.xAxis)];
            const Column& y = d.scaled[d.index(spec, spec.yAxis)];
            std::vector<double> xs, ys;
            for (std::size_t i = 0; i < d.n; ++i)
                for (std::size_t j = i + 1; j < d.n; ++j) {
                    xs.push_back(std::fabs(x[i] - x[j]));
                    ys.push_back(std::fabs(y[i] - y[j]));
                }
            ASSERT_EQ(item["data"]["xdata"].Size(), d.n * (d.n - 1) / 2) << name;
            expectRow(item["data"]["xdata"], xs, name + " xdata");
            expectRow(item["data"]["ydata"], ys, name + " ydata");
            continue;
        }
        const rapidjson::Value& cells = item["cells"];
        const std::vector<std::string> rows = childLabels(item["rowDimension"]);
        if (name == "Distance Correlation Details") {
            ASSERT_EQ(cells.Size(), V);
            for (std::size_t v = 0; v < V; ++v) {
                const Column& x = d.raw[v];
                const double m = round4(mean(x));
                const rapidjson::Value& row = cells[static_cast<rapidjson::SizeType>(v)];
                ASSERT_EQ(row.Size(), 7u);
                EXPECT_EQ(rows[v], std::to_string(v + 1));
                EXPECT_EQ(std::string(row[0].GetString()), spec.vars[v]);
                EXPECT_EQ(std::string(row[1].GetString()), spec.labels[v]);
                EXPECT_EQ(row[2].GetDouble(), static_cast<double>(d.n)) << spec.vars[v];
                EXPECT_EQ(row[3].GetDouble(), m) << spec.vars[v];
                EXPECT_EQ(row[4].GetDouble(), round4(sdAbout(x, m))) << spec.vars[v];
                EXPECT_EQ(row[5].GetDouble(), *std::min_element(x.begin(), x.end())) << spec.vars[v];
                EXPECT_EQ(row[6].GetDouble(), *std::max_element(x.begin(), x.end())) << spec.vars[v];
            }
        } else if (name == "Distance Correlation Coefficients" || name == "Distance Correlation Estimation Summary") {
            const bool estimates = name != "Distance Correlation Coefficients";
            ASSERT_EQ(cells.Size(), pairs.size()) << name;
            for (std::size_t k = 0; k < pairs.size(); ++k) {
                const Pair& p = pairs[k];
                EXPECT_EQ(rows[k], p.label) << name;
                std::vector<double> expected;
                if (estimates) expected.push_back(p.dCov);
                expected.push_back(p.dCor);
                if (spec.permutation) {
                    expected.push_back(p.perm.lower);
                    expected.push_back(p.perm.upper);
                }
                expected.push_back(p.ci.lower);
                expected.push_back(p.ci.upper);
                if (spec.permutation) expected.push_back(p.perm.pValue);
                expectRow(cells[static_cast<rapidjson::SizeType>(k)], expected, name + " row " + p.label);
            }
        } else if (name == "Distance Variance") {
            ASSERT_EQ(cells.Size(), V);
            for (std::size_t v = 0; v < V; ++v) {
                EXPECT_EQ(rows[v], spec.vars[v]);
                expectRow(cells[static_cast<rapidjson::SizeType>(v)], {round4(dVar(d.scaled[v]))}, "dVar " + spec.vars[v]);
            }
        } else if (name.rfind(spec.matrixTitle, 0) == 0) {
            const Column& x = d.scaled[d.index(spec, name.substr(spec.matrixTitle.size()))];
            const std::size_t m = std::min<std::size_t>(d.n, 100);
            ASSERT_EQ(cells.Size(), m) << name;
            for (std::size_t r = 0; r < m; ++r) {
                std::vector<double> expected;
                for (std::size_t c = 0; c < m; ++c) expected.push_back(std::fabs(x[r] - x[c]));
                expectRow(cells[static_cast<rapidjson::SizeType>(r)], expected, name + " row " + std::to_string(r + 1));
            }
            // Identifiers label the rows only of a table cut from more than 100 cases.
            for (std::size_t r = 0; r < m; ++r) {
                const std::string label = (!spec.id.empty() && d.n > 100)
                                              ? std::to_string(static_cast<std::uint64_t>(std::floor(d.ids[r])))
                                              : std::to_string(r + 1);
                EXPECT_EQ(rows[r], label) << name << " row " << r + 1;
            }
        } else {
            ADD_FAILURE() << "item \"" << name << "\" is not checked";
        }
    }
}

}  // namespace golden
