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

namespace glimmer {
namespace {

namespace fs = std::filesystem;

constexpr const char* section = "\\Software\\Glimmerpad for Firefox\\Uploader";

class SystemSettings : public testing::Test {
protected:
    void SetUp() override {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }
    [[nodiscard]] std::string content() const {
        const auto bytes = readFile(path_, 1U << 24U);
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
    }
    fs::path folder_ = fs::temp_directory_path() / pathFromUtf8("glimmer settings \xC3\xA9\xE2\x82\xAC");
    fs::path path_ = folder_ / "a.ini";
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
    std::vector<HANDLE> processes;
    for (const wchar_t* name : {L"first", L"second"}) {
        std::wstring command =
            L"tests\\settings_writer.exe \"" + path_.wstring() + L"\" " + name + L" " + std::to_wstring(steps);
        wchar_t own[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, own, MAX_PATH);
        const fs::path program = fs::path(own).parent_path() / "settings_writer.exe";
        command.replace(0, command.find(L' '), L"\"" + program.wstring() + L"\"");
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        ASSERT_NE(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                 &startup, &process),
                  FALSE);
        CloseHandle(process.hThread);
        processes.push_back(process.hProcess);
    }
    for (const HANDLE process : processes) {
        WaitForSingleObject(process, INFINITE);
        DWORD code = 1;
        GetExitCodeProcess(process, &code);
        EXPECT_EQ(code, 0U);  // the writer's count of failed saves
        CloseHandle(process);
    }
    const TCachedMemIniFile store(path_);
    for (const char* name : {"first", "second"}) {
        EXPECT_EQ(store.readInteger(name, "count", 0), steps) << name;
        for (int i = 0; i < steps; ++i)
            EXPECT_TRUE(store.readBool(name, "step" + std::to_string(i), false)) << name << i;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 1);
}

}  // namespace
}  // namespace glimmer
