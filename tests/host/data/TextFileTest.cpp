// readDescriptor: a whole file or pipe, read once, with an optional limit.
#include "data/TextFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace {

// A pipe whose reading end returns `bytes` and then the end.
int pipeWith(const std::string& bytes) {
    int ends[2];
    if (::pipe(ends) != 0) return -1;
    const ssize_t written = ::write(ends[1], bytes.data(), bytes.size());
    ::close(ends[1]);
    return written == static_cast<ssize_t>(bytes.size()) ? ends[0] : -1;
}

// A regular file holding `bytes`, opened for reading.
int fileWith(const std::string& bytes) {
    std::FILE* file = std::tmpfile();
    if (file == nullptr) return -1;
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fflush(file);
    const int fd = ::dup(::fileno(file));
    std::fclose(file);
    ::lseek(fd, 0, SEEK_SET);
    return fd;
}

}  // namespace

TEST(TextFile, ReadsAFileLargerThanOneBlockWhole) {
    std::string bytes(200000, 'a');
    bytes.back() = 'z';
    const int fd = fileWith(bytes);
    ASSERT_GE(fd, 0);
    std::string text = "old";
    EXPECT_EQ(host::readDescriptor(fd, text), 0);
    ::close(fd);
    EXPECT_EQ(text, bytes);
}

TEST(TextFile, ReadsAPipeWhole) {
    const std::string bytes(50000, 'p');
    const int fd = pipeWith(bytes);
    ASSERT_GE(fd, 0);
    std::string text;
    EXPECT_EQ(host::readDescriptor(fd, text), 0);
    ::close(fd);
    EXPECT_EQ(text, bytes);
}

TEST(TextFile, ATextOfExactlyTheLimitIsRead) {
    for (const bool regular : {true, false}) {
        const int fd = regular ? fileWith("0123456789") : pipeWith("0123456789");
        ASSERT_GE(fd, 0);
        std::string text;
        EXPECT_EQ(host::readDescriptor(fd, text, 10), 0) << regular;
        ::close(fd);
        EXPECT_EQ(text, "0123456789");
    }
}

TEST(TextFile, OneByteBeyondTheLimitIsRefused) {
    for (const bool regular : {true, false}) {
        const int fd = regular ? fileWith("0123456789X") : pipeWith("0123456789X");
        ASSERT_GE(fd, 0);
        std::string text;
        EXPECT_EQ(host::readDescriptor(fd, text, 10), EFBIG) << regular;
        ::close(fd);
        EXPECT_TRUE(text.empty());
    }
}

TEST(TextFile, AFailedReadGivesItsError) {
    std::string text;
    EXPECT_EQ(host::readDescriptor(-1, text), EBADF);
    EXPECT_TRUE(text.empty());
}
