#include "host/program/hot_keys.h"

#include <gtest/gtest.h>
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <vector>

#include "settings/hot_key.h"
#include "settings/settings_path.h"
#include "support/windows/own_registry.h"

namespace glimmer {
namespace {

constexpr int32_t longest = hotKeyCtrl | hotKeyShift | hotKeyAlt | 0x2C;

class HotKeysTest : public testing::Test {
protected:
    void SetUp() override {
        setSettingsPath("");
        OptionsHolder() = Options();
        OptionsHolder().setOn("chkAskForContinueKey", false);  // the user has agreed
        keepPrintScreen(0);
    }
    /// The user's setting: 1 the system keeps the key, 0 not.
    static void keepPrintScreen(DWORD kept) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, keyboard, setting, REG_DWORD, &kept, sizeof kept), ERROR_SUCCESS);
    }
    void TearDown() override {
        OptionsHolder() = Options();
        DestroyWindow(other_);
        DestroyWindow(window_);
    }
    static HWND makeWindow() {
        return CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    }
    /// Whether another program could have the key now.
    bool isFree(UINT modifiers, UINT key) {
        const bool taken = RegisterHotKey(other_, 99, modifiers, key) != FALSE;
        UnregisterHotKey(other_, 99);
        return taken;
    }

    static constexpr const wchar_t* keyboard = L"Control Panel\\Keyboard";
    static constexpr const wchar_t* setting = L"PrintScreenKeyForSnippingEnabled";
    const test::OwnRegistry registry_;  // a person's setting stays as it is
    HWND window_ = makeWindow();
    HWND other_ = makeWindow();
    std::vector<std::string> reports_;
    std::vector<std::string> run_;
    std::vector<HotKeys::Command> commands_{
        {"hotCreateZK", [this] { run_.emplace_back("new"); }},
        {"hotContinueEditing", [this] { run_.emplace_back("continue"); }, "chkAskForContinueKey"},
        {"hotCaptureTopWindow", [this] { run_.emplace_back("top"); }},
        {"hotSilentCapture", [this] { run_.emplace_back("silent"); }},
    };
};

TEST_F(HotKeysTest, AreHeldAsTheOptionsSayAndGivenBack) {
    {
        HotKeys keys(window_, commands_, nullptr);
        EXPECT_FALSE(isFree(MOD_CONTROL, 'D'));
        OptionsHolder().setNumber("hotContinueEditing", hotKeyAlt | 0x77);
        saveOptions();
        EXPECT_TRUE(isFree(MOD_CONTROL, 'D'));
        EXPECT_FALSE(isFree(MOD_ALT, 0x77));
        keys.suspend(true);
        OptionsHolder().setNumber("hotContinueEditing", 0);
        saveOptions();
        EXPECT_TRUE(isFree(MOD_ALT, 0x77));
        EXPECT_TRUE(isFree(0, 0x2C));
        keys.suspend(false);
        EXPECT_TRUE(isFree(MOD_ALT, 0x77));
        EXPECT_FALSE(isFree(0, 0x2C));
        keys.pressed(3);
        keys.pressed(4);
        EXPECT_EQ(run_, std::vector<std::string>{"silent"});
    }
    EXPECT_TRUE(isFree(0, 0x2C));
}

TEST_F(HotKeysTest, OfAnotherProgramAreReportedOnceByName) {
    OptionsHolder().setNumber("hotSilentCapture", longest);
    ASSERT_TRUE(RegisterHotKey(other_, 1, 0, 0x2C));
    ASSERT_TRUE(RegisterHotKey(other_, 2, MOD_CONTROL, 'D'));
    ASSERT_TRUE(RegisterHotKey(other_, 3, MOD_SHIFT, 0x2C));
    ASSERT_TRUE(RegisterHotKey(other_, 4, MOD_CONTROL | MOD_SHIFT | MOD_ALT, 0x2C));
    HotKeys keys(window_, commands_, [this](const std::string& text) { reports_.push_back(text); });
    EXPECT_TRUE(reports_.empty());
    keys.reportTaken();
    keys.reportTaken();
    saveOptions();
    ASSERT_EQ(reports_.size(), 1U);
    EXPECT_EQ(reports_[0],
              "Taken by another program:\nPrint Screen: New screenshot\nCtrl+D: Restore the last editor\n"
              "Shift+Print Screen: Screenshot of the top window\n"
              "Ctrl+Shift+Alt+Print Screen: Screenshot without showing the editor");
    EXPECT_LT(reports_[0].size(), sizeof(NOTIFYICONDATAW::szInfo) / sizeof(wchar_t));
    UnregisterHotKey(other_, 2);
    saveOptions();
    EXPECT_FALSE(isFree(MOD_CONTROL, 'D'));  // had as soon as it can be
    EXPECT_EQ(reports_.size(), 1U);
}

TEST_F(HotKeysTest, PrintScreenIsTheSystemsWhileItsSettingSaysSo) {
    keepPrintScreen(1);
    ASSERT_TRUE(RegisterHotKey(other_, 1, 0, 0x2C));  // as the system does
    HotKeys keys(window_, commands_, [this](const std::string& text) { reports_.push_back(text); });
    keys.reportTaken();
    EXPECT_TRUE(reports_.empty()) << "there is a better place for this than a balloon";
    EXPECT_TRUE(keys.printScreenKept());
    EXPECT_NE(keys.trouble("hotCreateZK", 0x2C).find("kept by Windows"), std::string::npos);
    EXPECT_EQ(keys.trouble("hotCreateZK", 0), "");
    EXPECT_EQ(keys.trouble("hotSilentCapture", hotKeyCtrl | 0x2C), "") << "with another key it is ours";
    EXPECT_NE(keys.trouble("hotCreateZK", hotKeyCtrl | hotKeyShift | 0x2C), keys.trouble("hotCreateZK", 0x2C));
    // What is offered instead is free, and not used by another command.
    constexpr int32_t f12 = 0x7B;
    EXPECT_EQ(keys.freeKey(), hotKeyCtrl | hotKeyShift | f12);
    ASSERT_TRUE(RegisterHotKey(other_, 2, MOD_CONTROL | MOD_SHIFT, f12));
    EXPECT_EQ(keys.freeKey(), hotKeyCtrl | hotKeyAlt | f12);
    EXPECT_NE(keys.trouble("hotCreateZK", hotKeyCtrl | hotKeyShift | f12).find("another program"), std::string::npos);
    // The user switches the setting off, and the system lets go.
    keepPrintScreen(0);
    UnregisterHotKey(other_, 1);
    keys.retry();
    EXPECT_FALSE(isFree(0, 0x2C));
    EXPECT_FALSE(keys.printScreenKept());
}

TEST_F(HotKeysTest, AKeyThatOtherProgramsUseWaitsForTheUser) {
    OptionsHolder() = Options();
    HotKeys keys(window_, commands_, nullptr);
    EXPECT_TRUE(isFree(MOD_CONTROL, 'D'));
    EXPECT_TRUE(keys.waitsForConsent("hotContinueEditing"));
    EXPECT_NE(keys.trouble("hotContinueEditing", hotKeyCtrl | 'D'), "");
    OptionsHolder().setOn("chkAskForContinueKey", false);
    saveOptions();
    EXPECT_FALSE(isFree(MOD_CONTROL, 'D'));
    EXPECT_FALSE(keys.waitsForConsent("hotContinueEditing"));
    // Who chooses keys is not asked, not even about this one.
    OptionsHolder() = Options();
    for (const int32_t key : {0, hotKeyCtrl | 'D'}) {
        OptionsHolder().setNumber("hotContinueEditing", key);
        saveOptions();
    }
    EXPECT_FALSE(isFree(MOD_CONTROL, 'D'));
}

}  // namespace
}  // namespace glimmer
