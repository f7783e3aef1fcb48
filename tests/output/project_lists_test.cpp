#include "output/files/project_lists.h"

#include <gtest/gtest.h>

namespace glimmer {
namespace {

TEST(ProjectLists, ComeBackExactly) {
    const std::vector<CaptureInfo> captures{
        {"http://a/\tb", "A \\ title\\n", "One\r\nname", "", 1700000000},
        {"", "", "", "", 0},
        {"\xed\xa0\x80", "\xe4\xb8\xad", "\xf0\x9f\x98\x80 \\", "", -1},
    };
    const auto back = projectInfos(projectNames(captures), projectPages(captures));
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(*back, captures);
    const auto namesOnly = projectInfos(projectNames(captures), "");
    ASSERT_TRUE(namesOnly.has_value());
    EXPECT_EQ((*namesOnly)[0].name, "One\r\nname");
    EXPECT_EQ((*namesOnly)[0].url, "");
}

TEST(ProjectLists, DamageIsSeen) {
    struct Row {
        const char* names;
        const char* pages;
    };
    const Row rows[] = {
        {"a\\", ""},                    // an escape without its letter
        {"a\\q\n", ""},                 // one that is none
        {"a\nb\n", "0\tu\tt\n"},        // fewer pages than names
        {"a\n", "0\tu\tt\n0\tu\tt\n"},  // more
        {"a\n", "x\tu\tt\n"},           // no time
        {"a\n", "99999999999999999999\tu\tt\n"},
        {"a\n", "0\tu\\\tt\n"},
    };
    for (const Row& row : rows) EXPECT_FALSE(projectInfos(row.names, row.pages).has_value()) << row.names << row.pages;
}

}  // namespace
}  // namespace glimmer
