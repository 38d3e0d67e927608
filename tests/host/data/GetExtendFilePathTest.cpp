#include "GetExtendFilePath.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "DataTestSupport.h"

namespace {

// Runs each test inside a scratch folder with HOME pointing to it.
class GetExtendFilePathTest : public ::testing::Test {
protected:
    void SetUp() override {
        datatest::quietSession();
        previous_ = std::filesystem::current_path();
        std::filesystem::current_path(folder.path());
        cwd = std::filesystem::current_path().string();
        const char* home = std::getenv("HOME");
        hadHome_ = home != nullptr;
        if (hadHome_) home_ = home;
        ::setenv("HOME", folder.path().c_str(), 1);
    }
    void TearDown() override {
        std::filesystem::current_path(previous_);
        if (hadHome_)
            ::setenv("HOME", home_.c_str(), 1);
        else
            ::unsetenv("HOME");
    }

    datatest::ScratchFolder folder;
    std::string cwd;

private:
    std::filesystem::path previous_;
    bool hadHome_ = false;
    std::string home_;
};

}  // namespace

TEST_F(GetExtendFilePathTest, RelativeNamesResolveAgainstTheWorkingFolder) {
    EXPECT_EQ(GetExtendFilePath("out.csv", true, false, true), cwd + "/out.csv");
    ASSERT_EQ(::mkdir("sub", 0755), 0);
    EXPECT_EQ(GetExtendFilePath("sub/out.csv", true, false, true), cwd + "/sub/out.csv");
    EXPECT_EQ(GetExtendFilePath("./sub/../out.csv", true, false, true), cwd + "/out.csv");
    EXPECT_TRUE(datatest::errorTexts().empty());
}

TEST_F(GetExtendFilePathTest, AbsoluteNamesStay) {
    EXPECT_EQ(GetExtendFilePath(folder.file("a.csv"), true, false, true), folder.file("a.csv"));
}

TEST_F(GetExtendFilePathTest, TildeMeansTheHomeFolder) {
    EXPECT_EQ(GetExtendFilePath("~/x.csv", true, false, true), folder.path() + "/x.csv");
}

TEST_F(GetExtendFilePathTest, UnknownUserIsReported) {
    EXPECT_EQ(GetExtendFilePath("~no_such_user_4711/x.csv", true, false, true), "");
    EXPECT_EQ(datatest::errorTexts(),
              (std::vector<std::string>{"Cannot use the file name \"~no_such_user_4711/x.csv\": the home folder of "
                                        "user \"no_such_user_4711\" is not known."}));
}

TEST_F(GetExtendFilePathTest, MissingFolderGivesEmptyPathAndAnError) {
    EXPECT_EQ(GetExtendFilePath("nofolder/out.csv", true, false, true), "");
    EXPECT_EQ(datatest::errorTexts(), (std::vector<std::string>{"Cannot use the file name \"nofolder/out.csv\": the "
                                                                "folder \"" +
                                                                cwd + "/nofolder\" does not exist."}));
}

TEST_F(GetExtendFilePathTest, ErrorsAreOnlyReportedWhenAsked) {
    EXPECT_EQ(GetExtendFilePath("nofolder/out.csv", true, false, false), "");
    EXPECT_TRUE(datatest::errorTexts().empty());
}

TEST_F(GetExtendFilePathTest, ParentThatIsAFileIsReported) {
    datatest::writeFile("plain.txt", "x");
    EXPECT_EQ(GetExtendFilePath("plain.txt/out.csv", true, false, true), "");
    EXPECT_EQ(datatest::errorTexts(), (std::vector<std::string>{"Cannot use the file name \"plain.txt/out.csv\": \"" +
                                                                cwd + "/plain.txt\" is not a folder."}));
}

TEST_F(GetExtendFilePathTest, FolderNamesAreRefused) {
    ASSERT_EQ(::mkdir("out.csv", 0755), 0);
    EXPECT_EQ(GetExtendFilePath("out.csv", true, false, true), "");
    EXPECT_EQ(GetExtendFilePath("sub/", true, false, true), "");
    const auto errors = datatest::errorTexts();
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0], "Cannot use the file name \"out.csv\": \"" + cwd + "/out.csv\" is a folder.");
    EXPECT_EQ(errors[1], "Cannot use the file name \"sub/\": it names a folder, not a file.");
}

TEST_F(GetExtendFilePathTest, MustExistChecksTheFile) {
    EXPECT_EQ(GetExtendFilePath("in.csv", false, true, true), "");
    EXPECT_EQ(datatest::errorTexts(), (std::vector<std::string>{"Cannot use the file name \"in.csv\": the file \"" +
                                                                cwd + "/in.csv\" does not exist."}));
    datatest::writeFile("in.csv", "x\n");
    EXPECT_EQ(GetExtendFilePath("in.csv", false, true, true), cwd + "/in.csv");
}

TEST_F(GetExtendFilePathTest, EmptyNameIsReported) {
    EXPECT_EQ(GetExtendFilePath("", true, false, true), "");
    EXPECT_EQ(datatest::errorTexts(), (std::vector<std::string>{"No file name was given."}));
}
