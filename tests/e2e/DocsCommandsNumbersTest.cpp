// The numbers in the worked examples of the command reference, recomputed
// from the example data with the separate implementation in
// GoldenReference.h (pairwise sums, its own permutation test). The examples
// test shows that distcorr prints the document; this one that the document
// is right.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <map>

#include "DocsExamples.h"
#include "GoldenReference.h"
#include "data/CsvDataLoader.h"

namespace {

using goldenref::Column;

const docs::Document& reference() {
    static const docs::Document doc = docs::loadDocument("docs/commands.md");
    return doc;
}

// The expected output of the example whose command is exactly this text.
std::string outputOf(const std::string& syntax) {
    for (const docs::Example& example : reference().examples)
        if (docs::normalized(example.syntax) == syntax) return example.expectedOut;
    ADD_FAILURE() << "no example with the command:\n" << syntax;
    return "";
}

// Columns of example data, missing values as NaN.
std::vector<Column> columns(const std::string& file, const std::vector<std::string>& names) {
    const auto data = host::loadCsvDataSet(std::string(DC_SOURCE_DIR) + "/examples/" + file, "");
    std::vector<Column> out;
    for (const std::string& name : names) {
        const int v = data->findVariable(name);
        EXPECT_GE(v, 0) << name;
        Column column;
        for (std::size_t c = 0; c < data->caseCount(); ++c) {
            const double value = data->numericValue(c, v);
            column.push_back(value == -std::numeric_limits<double>::max() ? std::nan("") : value);
        }
        out.push_back(column);
    }
    goldenref::dropIncompleteCases(out, nullptr);
    return out;
}

std::string fixed(double value, int decimals) {
    if (!std::isfinite(value)) return ".";
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

// The numbers of the row that starts with `label`, in the table titled
// `title` (title line as printed, footnote marker included).
std::vector<std::string> row(const std::string& output, const std::string& title, const std::string& label) {
    const std::vector<std::string> lines = docs::linesOf(output);
    bool inTable = false;
    for (const std::string& line : lines) {
        if (line == title) inTable = true;
        if (inTable && line.compare(0, label.size() + 1, label + " ") == 0) {
            std::vector<std::string> words = docs::splitArgs(line.substr(label.size()));
            return words;
        }
    }
    ADD_FAILURE() << "no row \"" << label << "\" in table \"" << title << "\" of:\n" << output;
    return {};
}

std::vector<std::string> formatted(const std::vector<double>& values, int decimals) {
    std::vector<std::string> out;
    for (double v : values) out.push_back(fixed(v, decimals));
    return out;
}

struct PairExpectation {
    double dCov, dCor;
    goldenref::Interval ci;
};

PairExpectation pair(const Column& x, const Column& y) {
    const double r = goldenref::dCor(x, y);
    return {goldenref::round4(goldenref::dCov(x, y)), goldenref::round4(r),
            goldenref::fisherInterval(r, x.size(), goldenref::kZ95)};
}

TEST(DocsCommandsNumbers, Example1OnePair) {
    const std::string out = outputOf("DISTANCE CORRELATION VARIABLE=score hours\n  /PRINT DISTCORRCOEFF.");
    const auto c = columns("study.csv", {"score", "hours"});
    ASSERT_EQ(c[0].size(), 46u);  // cases 22 and 27 dropped
    const PairExpectation p = pair(c[0], c[1]);
    EXPECT_EQ(row(out, "Distance Correlation Coefficients", "score vs. hours"),
              formatted({p.dCor, p.ci.lower, p.ci.upper}, 4));
}

TEST(DocsCommandsNumbers, Example2AllTables) {
    const std::string out =
        outputOf("DISTANCE CORRELATION VARIABLE=score hours sleep\n  /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR.");
    const std::vector<std::string> names{"score", "hours", "sleep"};
    const auto c = columns("study.csv", names);
    ASSERT_EQ(c[0].size(), 45u);
    for (std::size_t v = 0; v < names.size(); ++v) {
        // Row "1  score  Exam score (0-100)  45.000 ...": the last five numbers.
        std::vector<std::string> words = row(out, "Descriptive Statistics", std::to_string(v + 1));
        ASSERT_GE(words.size(), 5u);
        words.erase(words.begin(), words.end() - 5);
        const double mean = goldenref::round4(goldenref::mean(c[v]));
        const double sd = goldenref::round4(goldenref::sdAbout(c[v], mean));
        const double lo = *std::min_element(c[v].begin(), c[v].end());
        const double hi = *std::max_element(c[v].begin(), c[v].end());
        EXPECT_EQ(words, formatted({45.0, mean, sd, lo, hi}, 3)) << names[v];
        EXPECT_EQ(row(out, "Distance Variance", names[v]), formatted({goldenref::round4(goldenref::dVar(c[v]))}, 4));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = i + 1; j < names.size(); ++j) {
            const std::string label = names[i] + " vs. " + names[j];
            const PairExpectation p = pair(c[i], c[j]);
            EXPECT_EQ(row(out, "Distance Correlation Coefficients", label),
                      formatted({p.dCor, p.ci.lower, p.ci.upper}, 4));
            EXPECT_EQ(row(out, "Distance Correlation Estimates", label),
                      formatted({p.dCov, p.dCor, p.ci.lower, p.ci.upper}, 4));
        }
    }
}

TEST(DocsCommandsNumbers, Example3PermutationTest) {
    const std::string out = outputOf(
        "DISTANCE CORRELATION VARIABLE=score hours sleep\n  /CRITERIA PERMUTATION(SEED=20261120 MAXITERATIONS=999)\n"
        "  /PRINT DISTCORRCOEFF.");
    const std::vector<std::string> names{"score", "hours", "sleep"};
    const auto c = columns("study.csv", names);
    const auto perm = goldenref::permutationTest(c, 20261120, 999, 0.05);
    std::size_t k = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = i + 1; j < names.size(); ++j, ++k) {
            const PairExpectation p = pair(c[i], c[j]);
            EXPECT_EQ(row(out, "Distance Correlation Coefficients [a]", names[i] + " vs. " + names[j]),
                      formatted({p.dCor, perm[k].lower, perm[k].upper, p.ci.lower, p.ci.upper, perm[k].pValue}, 4));
        }
    }
    EXPECT_NE(out.find("a. Number of Replicates 999"), std::string::npos);
}

TEST(DocsCommandsNumbers, Example4FiveCases) {
    const std::string out =
        outputOf("DISTANCE CORRELATION VARIABLE=x y\n  /PRINT CORREST DISTVAR DISTMATRIX(CONFIGURE=[x y]).");
    const auto c = columns("five.csv", {"x", "y"});
    const PairExpectation p = pair(c[0], c[1]);
    // The hand calculation of the document: 1.344, 1.216, 4.3904, 0.5817.
    EXPECT_DOUBLE_EQ(p.dCov, 1.344);
    EXPECT_EQ(row(out, "Distance Correlation Estimates", "x vs. y"),
              formatted({p.dCov, p.dCor, p.ci.lower, p.ci.upper}, 4));
    EXPECT_EQ(row(out, "Distance Variance", "x"), formatted({goldenref::round4(goldenref::dVar(c[0]))}, 4));
    EXPECT_EQ(row(out, "Distance Variance", "y"), formatted({goldenref::round4(goldenref::dVar(c[1]))}, 4));
    const char* titles[] = {"Distance Matrix for Variable x [a]", "Distance Matrix for Variable y [a]"};
    for (int v = 0; v < 2; ++v) {
        for (std::size_t i = 0; i < 5; ++i) {
            std::vector<double> distances;
            for (std::size_t j = 0; j < 5; ++j) distances.push_back(std::fabs(c[v][i] - c[v][j]));
            EXPECT_EQ(row(out, titles[v], std::to_string(i + 1)), formatted(distances, 3));
        }
    }
}

TEST(DocsCommandsNumbers, Example5SmallAndLargeScale) {
    const auto c = columns("five.csv", {"x", "ysmall", "ylarge"});
    const std::string none = outputOf("DISTANCE CORRELATION VARIABLE=x ysmall\n  /PRINT CORREST DISTVAR.");
    EXPECT_LT(goldenref::dVar(c[1]), 1e-8);
    const PairExpectation small = pair(c[0], c[1]);
    EXPECT_EQ(small.dCor, 0.0);
    EXPECT_EQ(row(none, "Distance Correlation Estimates", "x vs. ysmall"),
              formatted({small.dCov, small.dCor, small.ci.lower, small.ci.upper}, 4));

    const std::string z =
        outputOf("DISTANCE CORRELATION VARIABLE=x ysmall\n  /CRITERIA NORMALIZATION=ZSCORE\n  /PRINT CORREST DISTVAR.");
    const Column zx = goldenref::rescale(c[0], "ZSCORE");
    const Column zy = goldenref::rescale(c[1], "ZSCORE");
    const PairExpectation scaled = pair(zx, zy);
    EXPECT_EQ(row(z, "Distance Correlation Estimates", "x vs. ysmall"),
              formatted({scaled.dCov, scaled.dCor, scaled.ci.lower, scaled.ci.upper}, 4));
    EXPECT_EQ(row(z, "Distance Variance", "ysmall"), formatted({goldenref::round4(goldenref::dVar(zy))}, 4));

    const std::string large = outputOf("DISTANCE CORRELATION VARIABLE=x ylarge\n  /PRINT DISTCORRCOEFF DISTVAR.");
    EXPECT_FALSE(std::isfinite(goldenref::dVar(c[2])));  // the squares overflow
    const PairExpectation huge = pair(c[0], c[2]);
    EXPECT_EQ(row(large, "Distance Correlation Coefficients", "x vs. ylarge"),
              formatted({huge.dCor, huge.ci.lower, huge.ci.upper}, 4));
    EXPECT_EQ(row(large, "Distance Variance", "ylarge"), std::vector<std::string>{"."});
}

}  // namespace
