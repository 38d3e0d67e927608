// Files whose size once made loading quadratic: each must load correctly.
// How long they take is measured in bench/, not here.
#include <gtest/gtest.h>

#include <string>

#include "DataTestSupport.h"
#include "data/CsvDataLoader.h"
#include "data/NumberText.h"

using datatest::ScratchFolder;
using datatest::writeFile;

TEST(CsvDataLoaderScaleTest, HundredThousandColumnsOfOneName) {
    ScratchFolder folder;
    std::string header = "x";
    std::string row = "0";
    for (int i = 1; i < 100000; ++i) {
        header += ",x";
        row += "," + std::to_string(i % 10);
    }
    writeFile(folder.file("wide.csv"), header + "\n" + row + "\n");
    const auto data = host::loadCsvDataSet(folder.file("wide.csv"), "");
    ASSERT_EQ(data->variableCount(), 100000);
    EXPECT_EQ(data->variable(99999).name, "x_100000");
    EXPECT_EQ(data->findVariable("x_2"), 1);
    EXPECT_EQ(data->numericValue(0, 99999), 9.0);
}

TEST(CsvDataLoaderScaleTest, TwoHundredThousandCategories) {
    ScratchFolder folder;
    std::string categories;
    for (int i = 0; i < 200000; ++i)
        categories += (i ? "," : "") + std::string("{\"value\":") + std::to_string(i) + ",\"label\":\"c" +
                      std::to_string(i) + "\"}";
    writeFile(folder.file("c.csv"), "g\n1\n");
    writeFile(folder.file("c.schema.json"), "{\"fields\":[{\"name\":\"g\",\"categories\":[" + categories + "]}]}");
    const auto data = host::loadCsvDataSet(folder.file("c.csv"), "");
    ASSERT_EQ(data->variable(0).valueLabels.size(), 200000u);
    EXPECT_EQ(data->variable(0).valueLabels[199999].second, "c199999");
    // The same value twice is still found, at the end of a long list.
    writeFile(folder.file("c.schema.json"),
              "{\"fields\":[{\"name\":\"g\",\"categories\":[" + categories + ",{\"value\":0.0}]}]}");
    EXPECT_THROW(host::loadCsvDataSet(folder.file("c.csv"), ""), host::DataLoadError);
}

TEST(CsvDataLoaderScaleTest, TwentyThousandMissingValueTextsOverTwentyThousandCells) {
    ScratchFolder folder;
    std::string codes;
    for (int i = 0; i < 20000; ++i) codes += (i ? ",\"" : "\"") + std::to_string(-1 - 2 * i) + "\"";
    std::string csv = "v\n";
    for (int i = 0; i < 20000; ++i) csv += std::to_string(-1 - i) + "\n";
    writeFile(folder.file("m.csv"), csv);
    writeFile(folder.file("m.schema.json"), "{\"missingValues\":[" + codes + "]}");
    const auto data = host::loadCsvDataSet(folder.file("m.csv"), "");
    ASSERT_EQ(data->caseCount(), 20000u);
    for (std::size_t i = 0; i < 20000; ++i) {
        const double expected = i % 2 == 0 ? host::kSystemMissing : -1.0 - static_cast<double>(i);
        ASSERT_EQ(data->numericValue(i, 0), expected) << i;
    }
}
