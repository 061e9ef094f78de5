#include "platform/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace zar {
namespace {

class FileTest : public testing::Test {
  protected:
    FileTest() {
        char name[] = "/tmp/zar-file-XXXXXX";
        folder_ = mkdtemp(name);
    }

    ~FileTest() override {
        unlink(path_.c_str());
        rmdir(folder_.c_str());
    }

    void make(const std::string& name, const std::string& bytes) {
        path_ = folder_ + "/" + name;
        std::ofstream(path_, std::ios::binary) << bytes;
    }

    std::string folder_;
    std::string path_;
};

TEST_F(FileTest, BytesAreReadAsTheyAre) {
    make("bytes", std::string("a\r\n\x1a\0z", 6));
    std::FILE* file = file_open(path_.c_str());
    ASSERT_NE(nullptr, file);
    char bytes[8];
    EXPECT_EQ(6U, std::fread(bytes, 1, sizeof bytes, file));
    EXPECT_EQ(std::string("a\r\n\x1a\0z", 6), std::string(bytes, 6));
    std::fclose(file);
}

TEST_F(FileTest, NameBeyondAsciiIsFound) {
    make("Er\xc3\xb6\x66\x66nung-\xe5\xbc\x80\xe5\xb1\x80", "x");
    std::FILE* file = file_open(path_.c_str());
    ASSERT_NE(nullptr, file);
    std::fclose(file);
}

TEST_F(FileTest, WhatIsNoRegularFileIsNotOpened) {
    path_ = folder_ + "/pipe";
    ASSERT_EQ(0, mkfifo(path_.c_str(), 0600));
    for (const std::string& path :
         {folder_, path_, std::string("/dev/zero"), folder_ + "/missing", std::string()}) {
        EXPECT_EQ(nullptr, file_open(path.c_str())) << path;
    }
}

TEST_F(FileTest, PlacesBeyondFourGibAreReached) {
    constexpr std::int64_t kPlace = std::int64_t{5} << 30;
    make("long", "x");
    if (truncate(path_.c_str(), kPlace) != 0) {
        GTEST_SKIP() << "this file system has no files of 5 GiB";
    }
    std::FILE* file = file_open(path_.c_str());
    ASSERT_NE(nullptr, file);
    EXPECT_TRUE(file_seek(file, 0, SEEK_END));
    EXPECT_EQ(kPlace, file_tell(file));
    EXPECT_TRUE(file_seek(file, kPlace - 1, SEEK_SET));
    EXPECT_EQ('\0', std::fgetc(file));
    EXPECT_EQ(EOF, std::fgetc(file));
    std::fclose(file);
}

TEST_F(FileTest, PlaceBeforeTheStartIsNone) {
    make("short", "x");
    std::FILE* file = file_open(path_.c_str());
    ASSERT_NE(nullptr, file);
    EXPECT_FALSE(file_seek(file, -1, SEEK_SET));
    std::fclose(file);
}

}  // namespace
}  // namespace zar
