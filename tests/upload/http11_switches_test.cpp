// The system's switches come back, whatever becomes of those who change them.

#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <thread>

#include "support/child_process.h"
#include "support/scratch_folder.h"
#include "support/windows/forms.h"
#include "support/windows/own_registry.h"
#include "support/windows/test_account.h"
#include "upload/http/http11_switches.h"

using namespace glimmer;
using namespace glimmer::test;

namespace {

constexpr const wchar_t* settingsKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr const wchar_t* ordinary = L"EnableHttp1_1";
constexpr const wchar_t* forProxy = L"ProxyHttp1.1";

std::optional<DWORD> read(const wchar_t* name) {
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, settingsKey, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    return status == ERROR_SUCCESS ? std::optional(value) : std::nullopt;
}

void write(const wchar_t* name, std::optional<DWORD> value) {
    if (value)
        RegSetKeyValueW(HKEY_CURRENT_USER, settingsKey, name, REG_DWORD, &*value, sizeof *value);
    else
        RegDeleteKeyValueW(HKEY_CURRENT_USER, settingsKey, name);
}

bool noteIsThere() {
    return RegGetValueW(HKEY_CURRENT_USER, L"Software\\GlimmerpadSwitchedOff", ordinary, RRF_RT_ANY, nullptr, nullptr,
                        nullptr) == ERROR_SUCCESS;
}

}  // namespace

TEST(Http11Switches, AreOffForAMomentAndOnlyWhereTheyWereOn) {
    const OwnRegistry registry;
    for (const bool proxies : {false, true}) {
        write(ordinary, 1);
        write(forProxy, 1);
        {
            Http11Switches switches;
            EXPECT_TRUE(switches.switchOff(proxies));
            EXPECT_EQ(read(ordinary), 0U);
            EXPECT_EQ(read(forProxy), proxies ? 0U : 1U);
            EXPECT_TRUE(noteIsThere());
            std::thread([] { restoreHttp11Switches(); }).join();
            EXPECT_EQ(read(ordinary), 0U) << "somebody is at work";
        }
        EXPECT_EQ(read(ordinary), 1U);
        EXPECT_EQ(read(forProxy), 1U);
        EXPECT_FALSE(noteIsThere());
    }
    for (const std::optional<DWORD> off : {std::optional<DWORD>(0), std::optional<DWORD>()}) {
        write(ordinary, off);
        Http11Switches switches;
        EXPECT_FALSE(switches.switchOff(false));
        switches.restore();
        EXPECT_EQ(read(ordinary), off);
    }
}

TEST(Http11Switches, ComeBackWhenAProcessIsKilledInBetween) {
    if (!isTestMachine()) GTEST_SKIP() << "changes a setting that all programs of the user see";
    const ScratchFolder folder("switches");
    const std::optional<DWORD> before = read(ordinary);
    for (const bool waiting : {false, true}) {
        write(ordinary, 1);
        const std::filesystem::path sign = folder.path() / (waiting ? "second" : "first");
        ChildProcess victim(testProgram("switch_victim"), std::vector<std::filesystem::path>{sign});
        ASSERT_TRUE(pumpUntil([&] { return std::filesystem::exists(sign); }));
        EXPECT_EQ(read(ordinary), 0U);
        restoreHttp11Switches();
        EXPECT_EQ(read(ordinary), 0U) << "not while the other one works";
        if (!waiting) {
            victim.kill();
            restoreHttp11Switches();
            EXPECT_EQ(read(ordinary), 1U);
            continue;
        }
        // A process that waits for its turn: what the one before it left is put back by it.
        bool done = false;
        std::thread other([&done] {
            Http11Switches switches;
            done = switches.switchOff(false) && read(ordinary) == 0U;
        });
        victim.kill();
        other.join();
        EXPECT_TRUE(done);
        EXPECT_EQ(read(ordinary), 1U);
        EXPECT_FALSE(noteIsThere());
    }
    write(ordinary, before);
}
