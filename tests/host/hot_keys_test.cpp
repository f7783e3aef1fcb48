#include "host/hot_keys.h"

#include <gtest/gtest.h>
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <vector>

#include "settings/hot_key.h"
#include "settings/settings_path.h"

namespace glimmer {
namespace {

constexpr int32_t longest = hotKeyCtrl | hotKeyShift | hotKeyAlt | 0x2C;

class HotKeysTest : public testing::Test {
protected:
    void SetUp() override {
        setSettingsPath("");
        OptionsHolder() = Options();
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

    HWND window_ = makeWindow();
    HWND other_ = makeWindow();
    std::vector<std::string> reports_;
    std::vector<std::string> run_;
    std::vector<HotKeys::Command> commands_{
        {"hotCreateZK", [this] { run_.emplace_back("new"); }},
        {"hotContinueEditing", [this] { run_.emplace_back("continue"); }},
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

}  // namespace
}  // namespace glimmer
