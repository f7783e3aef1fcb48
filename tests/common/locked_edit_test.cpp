#include "common/locked_edit.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/scratch_folder.h"

namespace glimmer {
namespace {

using Changed = Result<NewContent>;

TEST(LockedEdit, LosesNobodysChange) {
    const test::ScratchFolder folder("locked edit");
    const std::filesystem::path path = folder.path() / "list";
    constexpr int editors = 4;
    constexpr int changes = 20;
    std::vector<std::thread> threads;
    for (int i = 0; i < editors; ++i)
        threads.emplace_back([&path, i] {
            const auto append = [i](const FileContent& now) -> Changed {
                NewContent content = *now;
                content->push_back(static_cast<uint8_t>(i));
                return content;
            };
            for (int change = 0; change < changes; ++change) EXPECT_TRUE(editLockedFile(path, append).ok());
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(readFile(path, 1000)->size(), size_t{editors} * changes);
}

TEST(LockedEdit, LeavesTheFileWhenTheChangeSaysSo) {
    const test::ScratchFolder folder("locked edit");
    const std::filesystem::path path = folder.path() / "list";
    const auto none = [](const FileContent& now) -> Changed {
        EXPECT_TRUE(now && now->empty());
        return NewContent();
    };
    EXPECT_TRUE(editLockedFile(path, none).ok());
    EXPECT_FALSE(std::filesystem::exists(path));
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>(10)).ok());
    const auto refuse = [](const FileContent& now) -> Changed { return now ? Failure{"Full."} : now.failure(); };
    EXPECT_EQ(editLockedFile(path, refuse).message(), "Full.");
    LockedEdit small;
    small.limit = 9;
    EXPECT_NE(editLockedFile(path, refuse, small).message(), "Full.");
    EXPECT_EQ(readFile(path, 10)->size(), 10U);
}

}  // namespace
}  // namespace glimmer
