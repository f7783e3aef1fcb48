#include "common/files.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

namespace glimmer {
namespace {

namespace fs = std::filesystem;

class Files : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / pathFromUtf8("glimmer files \xc3\xa9\xe2\x82\xac");
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }
    [[nodiscard]] size_t entries() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }
    fs::path folder_;
};

TEST_F(Files, ReplacesALongerFileWithoutATail) {
    const fs::path path = folder_ / "a.bin";
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>(5000, 1)).ok());
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>(3, 2)).ok());
    EXPECT_EQ(*readFile(path, 100), std::vector<uint8_t>(3, 2));
    EXPECT_EQ(entries(), 1U);
}

TEST_F(Files, AnUnfinishedOutputLeavesTheOldFile) {
    const fs::path path = folder_ / "a.bin";
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>{1, 2}).ok());
    {
        TemporaryOutput output(path);
        ASSERT_TRUE(output.write(std::vector<uint8_t>(100)).ok());
        EXPECT_EQ(entries(), 2U);
    }
    EXPECT_EQ(*readFile(path, 100), (std::vector<uint8_t>{1, 2}));
    EXPECT_EQ(entries(), 1U);
}

TEST_F(Files, FailuresSaySoAndLeaveNothing) {
    EXPECT_FALSE(writeFile(folder_ / "none" / "a.bin", std::vector<uint8_t>(3)).ok());
    fs::create_directories(folder_ / "taken" / "inside");
    EXPECT_FALSE(writeFile(folder_ / "taken", std::vector<uint8_t>(3)).ok());
    EXPECT_EQ(entries(), 1U);
    EXPECT_FALSE(readFile(folder_ / "none", 100).ok());
    ASSERT_TRUE(writeFile(folder_ / "b", std::vector<uint8_t>(101)).ok());
    EXPECT_FALSE(readFile(folder_ / "b", 100).ok());
    fs::permissions(folder_ / "b", fs::perms::owner_write, fs::perm_options::remove);
    EXPECT_FALSE(writeFile(folder_ / "b", std::vector<uint8_t>(3)).ok()) << "it is protected";
    EXPECT_EQ(fs::file_size(folder_ / "b"), 101U);
    EXPECT_EQ(entries(), 2U);
    fs::permissions(folder_ / "b", fs::perms::owner_write, fs::perm_options::add);
}

#ifndef _WIN32

// The system refuses to write on in the middle of the file, as on a full disk.
TEST_F(Files, AFullDiskLeavesTheOldFile) {
    const fs::path path = folder_ / "a.bin";
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>{1, 2}).ok());
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const rlimit small{100000, old.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const Status large = writeFile(path, std::vector<uint8_t>(300000, 3));
    const Status fitting = writeFile(folder_ / "b.bin", std::vector<uint8_t>(1000, 3));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, before);
    EXPECT_FALSE(large.ok());
    EXPECT_TRUE(fitting.ok());
    EXPECT_EQ(*readFile(path, 100), (std::vector<uint8_t>{1, 2}));
    EXPECT_EQ(entries(), 2U);
}

#endif

}  // namespace
}  // namespace glimmer
