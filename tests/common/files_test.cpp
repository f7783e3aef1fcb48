#include "common/files.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "common/file_racer.h"
#include "support/child_process.h"
#include "support/scratch_folder.h"

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

namespace glimmer {
namespace {

namespace fs = std::filesystem;

class Files : public testing::Test {
protected:
    Files() { fs::create_directories(folder_); }
    [[nodiscard]] size_t entries() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }
    const test::ScratchFolder scratch_{"files"};
    const fs::path folder_ = scratch_.path() / pathFromUtf8("\xc3\xa9\xe2\x82\xac");
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

/// The number in the name of the temporary file that lies in the folder.
int numberOfTheTemporary(const fs::path& folder) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = utf8FromPath(entry.path().filename());
        if (name.ends_with(".tmp")) return std::stoi(name.substr(name.rfind('-') + 1));
    }
    return -1;
}

// A process of the same number that was killed, or another machine on the same share, had those names.
TEST_F(Files, TemporaryFilesOfOthersAreSteppedOver) {
    const fs::path path = folder_ / "a.bin";
    std::string prefix;
    int number = 0;
    {
        const TemporaryOutput output(path);
        number = numberOfTheTemporary(folder_);
        prefix = utf8FromPath(fs::directory_iterator(folder_)->path().filename());
        prefix.resize(prefix.rfind('-') + 1);
    }
    std::vector<fs::path> others;
    for (int i = 1; i <= 3; ++i) {
        others.push_back(folder_ / (prefix + std::to_string(number + i) + ".tmp"));
        std::ofstream(others.back()) << "theirs";
    }
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>(3, 2)).ok());
    EXPECT_EQ(entries(), 4U);
    for (const fs::path& other : others) EXPECT_EQ(readFile(other, 100)->size(), 6U);
}

TEST_F(Files, WithoutOverwritingTheNextNameIsTaken) {
    const fs::path path = folder_ / "a.bin";
    TemporaryOutput output(path, {.overwrite = false});
    ASSERT_TRUE(output.write(std::vector<uint8_t>(3, 2)));
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>(5, 1)));  // in the meantime
    EXPECT_FALSE(output.commit());
    EXPECT_EQ(output.trouble(), FileTrouble::Exists);
    EXPECT_EQ(readFile(path, 100)->size(), 5U);
    output.rename("b.bin");
    EXPECT_TRUE(output.commit());
    EXPECT_EQ(*readFile(folder_ / "b.bin", 100), std::vector<uint8_t>(3, 2));
    EXPECT_EQ(entries(), 2U);
}

// Two processes that give away the same hundred names at the same time.
TEST_F(Files, TwoProcessesNeverOverwriteEachOther) {
    constexpr int files = 100;
    const test::ScratchFolder scratch("racing");  // a name that any code page has, for the command line
    test::ChildProcess other(test::testProgram("file_racer"), {scratch.path(), std::to_string(files)});
    EXPECT_EQ(test::writeWithoutOverwriting(scratch.path(), files, 1), files);
    EXPECT_EQ(other.wait(60000), std::optional(files));
    std::map<uintmax_t, int> bySize;
    for (const auto& entry : fs::directory_iterator(scratch.path())) ++bySize[entry.file_size()];
    EXPECT_EQ(bySize, (std::map<uintmax_t, int>{{1, files}, {2, files}}));
}

/// A system that fails so many times, and counts.
struct Stand {
    static inline int calls = 0;
    static inline int failures = 0;
    static inline FileTrouble trouble = FileTrouble::None;
    static std::FILE* create(const fs::path& path, FileTrouble& why) {
        ++calls;
        if (calls > failures) return portableFileOperations().create(path, why);
        why = trouble;
        return nullptr;
    }
    static FileTrouble replace(const fs::path& file, const fs::path& target, bool inherits) {
        ++calls;
        return calls > failures ? portableFileOperations().replace(file, target, inherits) : trouble;
    }
    static std::string explain(const fs::path& /*target*/, FileTrouble why) {
        return why == FileTrouble::InUse ? "It is open in Photos." : "";
    }
};

TEST_F(Files, WhatOnlyLooksAtAFileIsWaitedForAndNothingElse) {
    const FileOperations portable = portableFileOperations();
    const FileOperations refusing{Stand::create, portable.replace, portable.place, Stand::explain};
    const FileOperations busy{portable.create, Stand::replace, portable.place, Stand::explain};
    constexpr int always = 1000000;
    struct Case {
        const FileOperations& system;
        FileTrouble trouble;
        int failures;
        bool patient;
        bool written;
        int leastCalls;
        int mostCalls;
    };
    for (const Case& c :
         {Case{busy, FileTrouble::InUse, 3, true, true, 4, 4}, Case{busy, FileTrouble::Refused, 3, true, true, 4, 4},
          Case{busy, FileTrouble::InUse, always, true, false, 5, 50},
          Case{busy, FileTrouble::InUse, always, false, false, 1, 1},
          Case{busy, FileTrouble::Other, always, true, false, 1, 1},
          Case{refusing, FileTrouble::Exists, 3, true, true, 4, 4},
          Case{refusing, FileTrouble::Refused, always, true, false, 1, 1}}) {
        Stand::calls = 0;
        Stand::failures = c.failures;
        Stand::trouble = c.trouble;
        setFileOperations(&c.system);
        const Status written = writeFile(folder_ / "a.bin", std::vector<uint8_t>(3), {.patient = c.patient});
        setFileOperations(nullptr);
        EXPECT_EQ(written.ok(), c.written) << written.message();
        EXPECT_GE(Stand::calls, c.leastCalls);
        EXPECT_LE(Stand::calls, c.mostCalls);
        const bool named = written.message().ends_with("\r\nIt is open in Photos.");
        EXPECT_EQ(named, !c.written && c.patient && c.trouble == FileTrouble::InUse);
        EXPECT_EQ(entries(), c.written ? 1U : 0U);
        fs::remove(folder_ / "a.bin");
    }
}

TEST_F(Files, WhatDeadProcessesLeftIsRemoved) {
    const auto make = [this](const char* name, int minutesAgo) {
        std::ofstream(folder_ / name) << "x";
        fs::last_write_time(folder_ / name, fs::file_time_type::clock::now() - std::chrono::minutes(minutesAgo));
        return folder_ / name;
    };
    const fs::path old = make("~gp77-3.tmp", 61);
    const std::vector<fs::path> others{make("~gp77-4.tmp", 50), make("~gp77-3.old", 6000), make("gp77-3.tmp", 6000)};
    fs::create_directory(folder_ / "~gp1-1.tmp");
    const fs::path outdated = make("~gp77-former-gp77-3.tmp.old", 61);
    const fs::path lost = make("~gp77-former-a - b.png.old", 61);
    removeAbandonedOutputs(folder_);
    EXPECT_FALSE(fs::exists(outdated) || fs::exists(lost));
    EXPECT_TRUE(fs::remove(folder_ / "a - b.png"));
    EXPECT_FALSE(fs::exists(old));
    for (const fs::path& other : others) EXPECT_TRUE(fs::exists(other)) << other;
    EXPECT_EQ(entries(), 4U);
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
