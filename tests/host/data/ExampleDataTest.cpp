// The example data set loads as documented; the expected counts and means
// were worked out from the CSV text with an independent script.
#include <gtest/gtest.h>

#include "DataTestSupport.h"
#include "data/CsvDataLoader.h"
#include "data/NumberText.h"

namespace {

struct Summary {
    int valid = 0;
    double mean = 0.0;
};

Summary summarize(const host::DataSet& data, const std::string& name) {
    const int v = data.findVariable(name);
    Summary s;
    double sum = 0.0;
    for (std::size_t c = 0; c < data.caseCount(); ++c) {
        const double x = data.numericValue(c, v);
        if (host::isSystemMissing(x)) continue;
        ++s.valid;
        sum += x;
    }
    s.mean = s.valid > 0 ? sum / s.valid : 0.0;
    return s;
}

}  // namespace

TEST(ExampleDataTest, StudyDataSetHasItsDictionary) {
    const auto data = host::loadCsvDataSet(datatest::example("study.csv"), "");
    EXPECT_EQ(data->label(), "Study habits and exam results of 48 students");
    ASSERT_EQ(data->variableCount(), 9);
    EXPECT_EQ(data->caseCount(), 48u);
    const char* names[] = {"id", "major", "group", "year", "hours", "sleep", "score", "anxiety", "commute"};
    const int levels[] = {2, 1, 1, 2, 3, 3, 3, 3, 3};
    for (int v = 0; v < 9; ++v) {
        EXPECT_EQ(data->variable(v).name, names[v]);
        EXPECT_EQ(data->variable(v).measurementLevel, levels[v]) << names[v];
        EXPECT_TRUE(data->variable(v).hasLabel) << names[v];
    }
    EXPECT_GT(data->variable(1).type, 0);
    EXPECT_EQ(data->variable(2).valueLabels.size(), 3u);
    EXPECT_EQ(data->variable(3).valueLabels.size(), 4u);
    EXPECT_EQ(data->variable(7).valueLabels.at(0), (std::pair<std::string, std::string>("-9", "Not answered")));
}

TEST(ExampleDataTest, StudyDataSetHasMissingValues) {
    const auto data = host::loadCsvDataSet(datatest::example("study.csv"), "");
    // One empty cell in each of hours, sleep, score and commute; the code -9
    // (not answered) three times in anxiety.
    EXPECT_EQ(summarize(*data, "hours").valid, 47);
    EXPECT_EQ(summarize(*data, "sleep").valid, 47);
    EXPECT_EQ(summarize(*data, "score").valid, 47);
    EXPECT_EQ(summarize(*data, "commute").valid, 47);
    EXPECT_EQ(summarize(*data, "anxiety").valid, 45);
    EXPECT_NEAR(summarize(*data, "hours").mean, 17.266, 0.0005);
    EXPECT_NEAR(summarize(*data, "score").mean, 69.117, 0.0005);
    EXPECT_NEAR(summarize(*data, "anxiety").mean, 16.978, 0.0005);
}
