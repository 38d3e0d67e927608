// Failing writes of the saved distance file: start() reports the failure,
// nothing already on disk is touched and no temporary file is left behind.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "DistanceCorrSaveOutFile.h"
#include "SaveTestSupport.h"
#include "Sanitizers.h"

#ifdef DC_ADDRESS_SANITIZER
#include <sanitizer/lsan_interface.h>
#endif

using namespace savetest;

namespace {

void writeFile(const fs::path& path, const std::string& contents) {
    std::ofstream out(path, std::ios::binary);
    out << contents;
}

}  // namespace

TEST_F(SaveFileTest, FolderThatDoesNotExistFails) {
    records_.push_back(makeRecord("x", {1.0, 2.0, 4.0}));
    requestSave({"x"}, folder_ / "missing" / "distances.csv");
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        EXPECT_EQ(writer.start(), 1u);
        EXPECT_EQ(writer.state(), DistanceCorrSaveOutFile::FileFailed);
    }
    EXPECT_FALSE(fs::exists(folder_ / "missing"));
    EXPECT_TRUE(folderEntries(folder_).empty());
}

TEST_F(SaveFileTest, ParentThatIsARegularFileFails) {
    writeFile(folder_ / "plain", "not a folder\n");
    records_.push_back(makeRecord("x", {1.0, 2.0, 4.0}));
    requestSave({"x"}, folder_ / "plain" / "distances.csv");
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        EXPECT_EQ(writer.start(), 1u);
        EXPECT_EQ(writer.state(), DistanceCorrSaveOutFile::FileFailed);
    }
    EXPECT_EQ(readBytes(folder_ / "plain"), "not a folder\n");
    EXPECT_EQ(folderEntries(folder_), (std::vector<std::string>{"plain"}));
}

TEST_F(SaveFileTest, FailedWriteLeavesAnExistingFileUntouched) {
    // The data file exists; its schema's name is taken by a non-empty folder,
    // so the new pair of files cannot be put in place.
    const std::string oldData = "VarName_,P1\r\nold,1.5\r\n";
    writeFile(csvPath(), oldData);
    fs::create_directories(schemaPath());
    writeFile(schemaPath() / "keep.txt", "keep\n");

    records_.push_back(makeRecord("x", {1.0, 2.0, 4.0}));
    requestSave({"x"}, csvPath());
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        EXPECT_EQ(writer.start(), 1u);
        EXPECT_EQ(writer.state(), DistanceCorrSaveOutFile::FileFailed);
    }
    EXPECT_EQ(readBytes(csvPath()), oldData);
    EXPECT_EQ(readBytes(schemaPath() / "keep.txt"), "keep\n");
    EXPECT_EQ(folderEntries(folder_),
              (std::vector<std::string>{"distances.csv", "distances.schema.json"}));
}

TEST_F(SaveFileTest, FailedCloseRestoresTheOldFileAndLeavesNoTemporaries) {
    const std::string oldData = "VarName_,P1\r\nold,1.5\r\n";
    writeFile(csvPath(), oldData);
    records_.push_back(makeRecord("x", {1.0, 2.0, 4.0}));
    requestSave({"x"}, csvPath());

#ifdef DC_ADDRESS_SANITIZER
    // After a failed close the writer leaves the file object to the host on
    // purpose; the reference host never claims it.
    __lsan_disable();
#endif
    {
        DistanceCorrSaveOutFile writer(settings_, records_);
        EXPECT_EQ(writer.PrepareDataOutFile(), DistanceCorrSaveOutFile::DictionaryDone);
        EXPECT_EQ(writer.WriteDataOutFile(), DistanceCorrSaveOutFile::DataWritten);
        // The schema's name is taken by a non-empty folder only now, so the
        // new files cannot be put in place when the data source is closed.
        fs::create_directories(schemaPath());
        writeFile(schemaPath() / "keep.txt", "keep\n");
        EXPECT_EQ(writer.Close(), DistanceCorrSaveOutFile::FileFailed);
    }
#ifdef DC_ADDRESS_SANITIZER
    __lsan_enable();
#endif
    EXPECT_EQ(readBytes(csvPath()), oldData);
    EXPECT_EQ(readBytes(schemaPath() / "keep.txt"), "keep\n");
    EXPECT_EQ(folderEntries(folder_),
              (std::vector<std::string>{"distances.csv", "distances.schema.json"}));
}
