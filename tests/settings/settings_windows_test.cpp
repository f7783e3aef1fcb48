// What only the real system shows: protected passwords, two processes on one file, and the user's
// code page.

#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
// clang-format on

#include <string>
#include <vector>

#include "common/files.h"
#include "common/text.h"
#include "settings/file_text.h"
#include "settings/secrets.h"
#include "settings/settings.h"
#include "settings/system_text.h"
#include "support/child_process.h"
#include "support/scratch_folder.h"

namespace glimmer {
namespace {

namespace fs = std::filesystem;

constexpr const char* section = "\\Software\\Glimmerpad for Firefox\\Uploader";

class SystemSettings : public testing::Test {
protected:
    [[nodiscard]] std::string content() const {
        const auto bytes = readFile(path_, 1U << 24U);
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
    }
    const test::ScratchFolder folder_{"system settings"};
    const fs::path path_ = folder_.path() / pathFromUtf8("\xC3\xA9\xE2\x82\xAC.ini");
};

TEST_F(SystemSettings, PasswordsAreNeverInClear) {
    const std::string password = "p\xC3\xA4ss w=rd];";
    {
        TCachedMemIniFile store(path_);
        ASSERT_TRUE(writeSecret(store, section, "Password", password).ok());
        EXPECT_EQ(readSecret(store, section, "Password"), password);
    }
    EXPECT_EQ(content().find("w=rd"), std::string::npos);
    TCachedMemIniFile store(path_);
    EXPECT_EQ(readSecret(store, section, "Password"), password);
    for (const std::string& damaged :
         {std::string("secret"), std::string("AAAA"), store.readString(section, "Password").substr(4)}) {
        store.writeString(section, "Password", damaged);
        EXPECT_EQ(readSecret(store, section, "Password"), "");
    }
    ASSERT_TRUE(writeSecret(store, section, "Password", "").ok());
    EXPECT_FALSE(store.keyExists(section, "Password"));
}

TEST_F(SystemSettings, TheUsersCodePageIsRead) {
    useSystemCodePage();
    const wchar_t word[] = L"caf\u00e9";
    char bytes[16] = {};
    ASSERT_GT(WideCharToMultiByte(CP_ACP, 0, word, -1, bytes, sizeof bytes, nullptr, nullptr), 0);
    const std::string text(bytes);
    EXPECT_EQ(textFromFileBytes(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size())),
              GetACP() == CP_UTF8 || text.size() == 4 ? "caf\xC3\xA9" : text);
}

/// Two processes raise their own counters in one file, saving after each step.
TEST_F(SystemSettings, TwoProcessesThatWriteAtOnceLoseNothing) {
    constexpr int steps = 40;
    const fs::path writer = test::testProgram("settings_writer");
    test::ChildProcess first(writer, {path_, "first", std::to_string(steps)});
    test::ChildProcess second(writer, {path_, "second", std::to_string(steps)});
    for (test::ChildProcess* process : {&first, &second})
        EXPECT_EQ(process->wait(600000), 0) << "the writer's count of failed saves";
    const TCachedMemIniFile store(path_);
    for (const char* name : {"first", "second"}) {
        EXPECT_EQ(store.readInteger(name, "count", 0), steps) << name;
        for (int i = 0; i < steps; ++i)
            EXPECT_TRUE(store.readBool(name, "step" + std::to_string(i), false)) << name << i;
    }
    EXPECT_EQ(folder_.entries(), 1U);
}

}  // namespace
}  // namespace glimmer
