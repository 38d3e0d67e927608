// Golden end-to-end runs of distcorr: each case of tests/e2e/golden/cases.tsv
// is run and its output document must equal the checked-in expected document;
// every number of that document is recomputed here from the data by an
// independent implementation (GoldenReference.h).
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "GoldenCheck.h"

namespace {

using golden::CaseSpec;

const std::vector<std::string> kFive = {"x", "y"};
const std::vector<std::string> kTwelve = {"a", "b", "c"};

CaseSpec twelveRescaled(const std::string& kind) {
    CaseSpec s{"twelve.csv", kTwelve, kTwelve};
    s.normalization = kind;
    s.xAxis = "a";
    s.yAxis = "c";
    return s;
}

// The settings of every case, as its syntax file states them.
const std::map<std::string, CaseSpec>& caseSpecs() {
    static const std::map<std::string, CaseSpec> specs = [] {
        std::map<std::string, CaseSpec> m;
        // y has no title in five.schema.json and z an empty one: the host reports
        // both as unlabelled, so the name is shown.
        m["five_tables"] = {"five.csv", kFive, {"First measure", "y"}};
        m["five_no_tables"] = {"five.csv", kFive, {}};
        m["five_ci_level_rounding"] = {"five.csv", kFive, {}};
        m["five_ci_level_rounding"].zcrit = goldenref::kZ99999;
        m["five_scatter"] = {"five.csv", {"x", "y", "z"}, {"First measure", "y", "z"}};
        m["five_scatter"].xAxis = "x";
        m["five_scatter"].yAxis = "z";
        m["five_scatter_same_axis"] = {"five.csv", kFive, {}};
        m["five_scatter_same_axis"].xAxis = m["five_scatter_same_axis"].yAxis = "y";
        m["five_robust"] = {"five.csv", {"x", "y", "z"}, {"First measure", "y", "z"}};
        m["five_robust"].normalization = "ROBUST";
        m["two_cases"] = {"two.csv", {"u", "v"}, {}};
        m["two_cases"].xAxis = "u";
        m["two_cases"].yAxis = "v";

        CaseSpec perm{"twelve.csv", {"a", "b"}, {}};
        perm.permutation = true;
        perm.seed = 12345;
        perm.iterations = 999.9;
        m["twelve_permutation"] = perm;
        CaseSpec defaults{"twelve.csv", {"a", "c"}, {}};
        defaults.permutation = true;  // seed 2000000, 1000 permutations, level 0.05
        m["twelve_permutation_defaults"] = defaults;
        CaseSpec three{"twelve.csv", kTwelve, kTwelve};
        three.zcrit = goldenref::kZ90;
        three.permutation = true;
        three.seed = 7;
        three.iterations = 500;
        three.alpha = 0.1;
        m["twelve_three_variables"] = three;
        m["twelve_zscore"] = twelveRescaled("ZSCORE");
        m["twelve_minmax"] = twelveRescaled("MINMAX");
        m["twelve_robust"] = twelveRescaled("ROBUST");
        m["twelve_log"] = twelveRescaled("LOG");
        CaseSpec german{"twelve.csv", {"a", "b"}, {"a", "b"}};
        german.permutation = true;
        german.seed = 99;
        german.iterations = 300;
        german.xAxis = "a";
        german.yAxis = "b";
        german.vs = "gegen";
        german.matrixTitle = "Distanzmatrix für Variable ";
        m["twelve_german"] = german;

        CaseSpec ids{"ids150.csv", {"a", "b"}, {"a", "b"}, "id"};
        m["ids150_matrix"] = ids;
        ids.data = "ids100.csv";
        m["ids100_matrix"] = ids;
        ids.data = "ids40.csv";
        m["ids40_matrix"] = ids;
        m["listwise_id"] = {"listwise.csv", {"a", "b"}, {"a", "b"}, "id"};
        return m;
    }();
    return specs;
}

std::vector<std::string> caseNames() {
    std::vector<std::string> names;
    for (const auto& e : golden::readManifest()) names.push_back(e.name);
    return names;
}

class GoldenCase : public ::testing::TestWithParam<std::string> {};

TEST_P(GoldenCase, OutputDocumentEqualsTheExpectedDocument) {
    const golden::ManifestEntry entry = golden::manifestEntry(GetParam());
    const std::string out = makeTempDir() + "/out.json";
    std::vector<std::string> args = {"--quiet", "--data", golden::dataFile(entry.data)};
    args.insert(args.end(), entry.options.begin(), entry.options.end());
    args.insert(args.end(), {golden::syntaxFile(entry.name), "--output", out});
    const DistcorrResult r = runDistcorr(args);
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const rapidjson::Document actual = golden::parseJsonExactly(out);
    const rapidjson::Document expected = golden::expectedDocument(entry.name);
    ASSERT_TRUE(actual.IsObject()) << out;
    ASSERT_TRUE(expected.IsObject()) << golden::expectedFile(entry.name);
    EXPECT_EQ(golden::firstDifference(actual, expected), "");
}

TEST_P(GoldenCase, EveryExpectedNumberAgreesWithTheIndependentComputation) {
    const auto spec = caseSpecs().find(GetParam());
    ASSERT_NE(spec, caseSpecs().end()) << "no settings written down for " << GetParam();
    const rapidjson::Document expected = golden::expectedDocument(GetParam());
    ASSERT_TRUE(expected.IsObject()) << golden::expectedFile(GetParam());
    ASSERT_EQ(expected["runs"].Size(), 1u);
    EXPECT_EQ(golden::manifestEntry(GetParam()).data, spec->second.data);
    golden::verifyNumbers(spec->second, expected);
}

INSTANTIATE_TEST_SUITE_P(Golden, GoldenCase, ::testing::ValuesIn(caseNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

TEST(GoldenManifest, ListsEveryCaseOnceWithItsSyntaxAndExpectedDocument) {
    std::set<std::string> listed;
    for (const auto& e : golden::readManifest()) {
        EXPECT_TRUE(listed.insert(e.name).second) << e.name << " is listed twice";
        EXPECT_TRUE(std::ifstream(golden::syntaxFile(e.name)).good()) << e.name;
        EXPECT_TRUE(std::ifstream(golden::expectedFile(e.name)).good()) << e.name;
        EXPECT_TRUE(std::ifstream(golden::dataFile(e.data)).good()) << e.data;
    }
    std::set<std::string> specified;
    for (const auto& s : caseSpecs()) specified.insert(s.first);
    EXPECT_EQ(listed, specified);
}

}  // namespace
