#include "output/places/working_folder.h"

#include <gtest/gtest.h>

#include "common/files.h"
#include "support/scratch_folder.h"

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using std::chrono::hours;

class WorkingFiles : public testing::Test {
protected:
    WorkingFiles() { fs::create_directories(folder_ / "mail"); }
    /// A file that was last changed `age` ago.
    fs::path make(const fs::path& path, hours age) {
        EXPECT_TRUE(writeFile(path, std::vector<uint8_t>(10)).ok());
        fs::last_write_time(path, now_ - age);
        return path;
    }

    const test::ScratchFolder scratch_{"working files"};
    const fs::path root_ = scratch_.path();
    const fs::path folder_ = root_ / "work";
    fs::file_time_type now_ = fs::file_time_type::clock::now();
    WorkingFolder working_{folder_};
};

TEST_F(WorkingFiles, OnlyOldFilesOfTheProgramAreDeleted) {
    const fs::path old = make(folder_ / "mail" / pathFromUtf8("old \xC3\xA9 1.png"), hours(121));
    const fs::path young = make(folder_ / "young.png", hours(119));
    const fs::path users = make(folder_ / "user's.png", hours(5000));
    const fs::path edited = make(folder_ / "edited.png", hours(5000));
    const fs::path outside = make(root_ / "outside.png", hours(5000));
    for (const fs::path& path : {old, young, edited, young}) EXPECT_TRUE(working_.remember(path).ok()) << path;
    EXPECT_FALSE(working_.remember(outside).ok());
    EXPECT_FALSE(working_.remember(folder_ / "none.png").ok());
    ASSERT_TRUE(writeFile(edited, std::vector<uint8_t>(20)).ok());
    fs::last_write_time(edited, now_ - hours(4000));

    EXPECT_EQ(working_.cleanUp(hours(120), now_), 1U);
    EXPECT_FALSE(fs::exists(old));
    for (const fs::path& path : {young, users, edited, outside}) EXPECT_TRUE(fs::exists(path)) << path;
    EXPECT_EQ(working_.cleanUp(hours(120), now_), 0U);
    EXPECT_EQ(working_.cleanUp(hours(0), now_), 1U);
    EXPECT_FALSE(fs::exists(young));
}

TEST_F(WorkingFiles, AnHourMoreOrLessIsTheClocksDoing) {
    const fs::path summer = make(folder_ / "summer.png", hours(200));
    const fs::path winter = make(folder_ / "winter.png", hours(200));
    const fs::path edited = make(folder_ / "edited.png", hours(200));
    for (const fs::path& path : {summer, winter, edited}) ASSERT_TRUE(working_.remember(path).ok());
    fs::last_write_time(summer, fs::last_write_time(summer) + hours(1));
    fs::last_write_time(winter, fs::last_write_time(winter) - hours(1));
    fs::last_write_time(edited, fs::last_write_time(edited) + std::chrono::minutes(59));
    EXPECT_EQ(working_.cleanUp(hours(100), now_), 2U);
    EXPECT_TRUE(fs::exists(edited));
}

TEST_F(WorkingFiles, OneSubFolderCanBeCleanedAlone) {
    const fs::path mailed = make(folder_ / "mail" / "a.png", hours(200));
    const fs::path other = make(folder_ / "mail a.png", hours(200));
    for (const fs::path& path : {mailed, other}) ASSERT_TRUE(working_.remember(path).ok());
    EXPECT_EQ(working_.cleanUp(hours(168), now_, "mail"), 1U);
    EXPECT_FALSE(fs::exists(mailed));
    EXPECT_EQ(working_.cleanUp(hours(168), now_), 1U);
    EXPECT_FALSE(fs::exists(other));
}

TEST_F(WorkingFiles, AForgedOrDamagedListReachesNothingElse) {
    const fs::path outside = make(root_ / "outside.png", hours(5000));
    const fs::path inside = make(folder_ / "inside.png", hours(5000));
    ASSERT_TRUE(working_.remember(inside).ok());
    const std::string time = std::to_string(fs::last_write_time(outside).time_since_epoch().count());
    const auto listed = *readFile(folder_ / "Glimmerpad files.lst", 1000);
    const std::string forged = "10 " + time + " ../outside.png\n10 " + time + " " + utf8FromPath(outside) +
                               "\nrubbish\n\n10\n10 5\n" + std::string(listed.begin(), listed.end()) + "10 " + time;
    ASSERT_TRUE(writeFile(folder_ / "Glimmerpad files.lst",
                          std::span(reinterpret_cast<const uint8_t*>(forged.data()), forged.size()))
                    .ok());
    EXPECT_EQ(working_.cleanUp(hours(120), now_), 1U);
    EXPECT_TRUE(fs::exists(outside));
    EXPECT_FALSE(fs::exists(inside));
    EXPECT_EQ(WorkingFolder(root_ / "none").cleanUp(hours(1), now_), 0U);
}

}  // namespace
}  // namespace glimmer
