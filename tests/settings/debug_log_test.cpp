#include "settings/debug_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/debug_channel.h"
#include "common/files.h"
#include "settings/options.h"
#include "settings/settings_path.h"
#include "support/scratch_folder.h"

namespace glimmer {
namespace {

std::string fileText(const std::filesystem::path& path) {
    const auto bytes = readFile(path, 1U << 24U);
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

TEST(DebugLog, HoldsRemarksWhileTheUserWantsThem) {
    const test::ScratchFolder folder("log");
    const std::filesystem::path log = folder.path() / "a.log";
    std::string heard;
    const DebugChannel before = setDebugChannel([&heard](std::string_view text) { heard.append(text); });
    connectDebugLog();
    setSettingsPath(utf8FromPath(folder.path() / "a.ini"));
    debugRemark("quiet");
    debugDetail("https://example.org/page?session=1");
    EXPECT_EQ(heard, "quiet");
    EXPECT_FALSE(std::filesystem::exists(log));

    OptionsHolder().setOn("chkDebugMode", true);
    debugRemark("one\n");
    debugRemark("two");
    const std::string text = fileText(log);
    EXPECT_EQ(std::ranges::count(text, '\n'), 2);
    EXPECT_TRUE(text.find(" one\n") != std::string::npos && text.ends_with(" two\n")) << text;
    EXPECT_EQ(heard, "quietone\ntwo");

    // A file that has grown too large is begun anew.
    ASSERT_TRUE(writeFile(log, std::vector<uint8_t>(size_t{1024} * 1024 + 1, 'x')).ok());
    debugRemark("three");
    EXPECT_LT(fileText(log).size(), 64U);

    setDebugChannel(before);
    setSettingsPath({});
    OptionsHolder() = Options();
}

TEST(DebugLog, DetailsAreWithoutWhatLetsIntoAnAccount) {
    const struct {
        const char* text;
        const char* left;
    } cases[] = {
        {"a: https://u.example/p?token=1#x", "a: https://u.example/p"},
        {"\"http://h/#top\" failed? http://h/b", "\"http://h/\" failed? http://h/b"},
        {"ftp://h/a?b ftp://h/c?d\nWhy?", "ftp://h/a ftp://h/c\nWhy?"},
        {"", ""},
    };
    for (const auto& one : cases) EXPECT_EQ(withoutQueries(one.text), one.left);
}

}  // namespace
}  // namespace glimmer
