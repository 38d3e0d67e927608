// A new data file of many cases: its cases are formatted in batches on
// worker threads, and the file is the same bytes for any thread count,
// reads back to the same values and keeps the case order.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "DataTestSupport.h"
#include "FixedWorkerPool.h"
#include "IndependentDataStore.h"
#include "UserCaseFileSpec.h"
#include "UserOutputCaseFile.h"
#include "VELA_Case.h"
#include "VELA_DataSource.h"
#include "data/CsvDataLoader.h"
#include "data/NumberText.h"

namespace {

constexpr int kNumbers = 40;
constexpr int kCases = 2500;  // 2,500 cases of 42 OBS: several batches

double valueAt(int c, int v) {
    switch ((c + v) % 9) {
        case 0:
            return host::kSystemMissing;
        case 1:
            return std::numeric_limits<double>::quiet_NaN();  // written as an empty cell
        case 2:
            return -0.0;
        case 3:
            return std::numeric_limits<double>::denorm_min() * (c + 1);
        case 4:
            return 1e300 * (v + 1);
        default:
            return std::sqrt(static_cast<double>(c) * 31 + v) / 7;
    }
}

std::string textAt(int c) {
    static const char* const texts[] = {"plain", "a,b", "say \"hi\"", "", " padded"};
    return texts[c % 5];
}

void writeFile(const std::string& path) {
    UserCaseFileSpec spec;
    spec.Init(path, true, true);
    UserOutputCaseFile file(spec);
    VELA_DataSource& source = *file.DataSource();
    unsigned index = 0;
    source.MakeVariable(12, &index).SetName("label");
    for (int v = 0; v < kNumbers; ++v) source.MakeVariable(0, &index).SetName("n" + std::to_string(v));
    source.EndDictionary();
    std::vector<OBS> buffer(static_cast<std::size_t>(source.ColumnCount()));
    VELA_Case row(source, buffer.data());
    for (int c = 0; c < kCases; ++c) {
        row.InitCase();
        const std::string text = textAt(c);
        row.SetColumnValue(0, text.c_str(), static_cast<int>(text.size()));
        for (int v = 0; v < kNumbers; ++v) row.SetColumnValue(2 + v, valueAt(c, v));
        file.DataStore()->AddCase(row);
    }
    source.CloseData();
}

TEST(NewCaseFileBatchTest, SameBytesForAnyThreadCount) {
    datatest::quietSession();
    datatest::ScratchFolder folder;
    std::string first;
    for (unsigned threads : {1u, 2u, 3u, 8u}) {
        ScopedThreadCount pool(threads);
        const std::string path = folder.file("t" + std::to_string(threads) + ".csv");
        writeFile(path);
        const std::string bytes = datatest::readFile(path);
        if (threads == 1)
            first = bytes;
        else
            EXPECT_EQ(bytes, first) << threads << " threads";
    }
    // The header and one CRLF-ended line per case, in case order.
    std::size_t lines = 0;
    for (std::size_t at = first.find("\r\n"); at != std::string::npos; at = first.find("\r\n", at + 2)) ++lines;
    EXPECT_EQ(lines, static_cast<std::size_t>(kCases) + 1);
    EXPECT_EQ(first.compare(0, 15, "label,n0,n1,n2,"), 0);
}

TEST(NewCaseFileBatchTest, ManyBatchesReadBackToTheSameValues) {
    datatest::quietSession();
    datatest::ScratchFolder folder;
    ScopedThreadCount pool(3);
    const std::string path = folder.file("values.csv");
    writeFile(path);
    const auto data = host::loadCsvDataSet(path, "");
    ASSERT_EQ(data->caseCount(), static_cast<std::size_t>(kCases));
    ASSERT_EQ(data->variableCount(), kNumbers + 1);
    for (int c = 0; c < kCases; ++c) {
        EXPECT_EQ(data->textValue(static_cast<std::size_t>(c), 0), textAt(c)) << c;
        for (int v = 0; v < kNumbers; ++v) {
            const double written = valueAt(c, v);
            const double read = data->numericValue(static_cast<std::size_t>(c), v + 1);
            if (!std::isfinite(written) || host::isSystemMissing(written)) {
                ASSERT_TRUE(host::isSystemMissing(read)) << c << "," << v;
            } else {
                ASSERT_EQ(std::memcmp(&read, &written, sizeof read), 0) << c << "," << v << ": " << read;
            }
        }
    }
}

}  // namespace
