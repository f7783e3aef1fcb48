#include <gtest/gtest.h>
#include <windows.h>
#include <wx/frame.h>

#include <algorithm>
#include <array>

#include "host/mouse_cursor.h"
#include "host/own_capture.h"
#include "host/screen_area.h"
#include "settings/options.h"
#include "settings/settings_path.h"
#include "support/windows/forms.h"

namespace glimmer {
namespace {

class OwnCapture : public testing::Test {
protected:
    void SetUp() override {
        window_->Show();
        window_->Raise();
        test::pump();
    }
    void TearDown() override {
        window_->Destroy();
        test::pump();
        setSettingsPath({});
    }
    wxFrame* window_ = new wxFrame(nullptr, wxID_ANY, "page", wxPoint(100, 100), wxSize(300, 200));
};

// Columns of eight pixels: black, white, see-through, turning the screen's colours round.
TEST_F(OwnCapture, ThePointerComesWithItsTransparencyAndItsPlace) {
    std::array<uint8_t, 128> andMask{};
    std::array<uint8_t, 128> xorMask{};
    for (size_t row = 0; row < 32; ++row) {
        andMask[row * 4 + 2] = andMask[row * 4 + 3] = 0xFF;
        xorMask[row * 4 + 1] = xorMask[row * 4 + 3] = 0xFF;
    }
    HCURSOR cursor = CreateCursor(GetModuleHandleW(nullptr), 5, 7, 32, 32, andMask.data(), xorMask.data());
    ASSERT_NE(cursor, nullptr);
    POINT before{};
    GetCursorPos(&before);
    SetCursorPos(200, 190);
    test::pump();
    HCURSOR former = SetCursor(cursor);
    const std::optional<MouseCursor> shown = visibleMouseCursor();
    SetCursor(former);
    SetCursorPos(before.x, before.y);
    DestroyCursor(cursor);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->at, (Point{195, 183}));
    ASSERT_EQ(shown->picture.size(), (Size{32, 32}));
    const std::span<const uint8_t> bytes = shown->picture.bytes();
    const auto pixel = [bytes](size_t x) { return std::array{bytes[x * 4], bytes[x * 4 + 3]}; };
    EXPECT_EQ(pixel(3), (std::array<uint8_t, 2>{0, 255}));
    EXPECT_EQ(pixel(11), (std::array<uint8_t, 2>{255, 255}));
    EXPECT_EQ(pixel(19)[1], 0);
    EXPECT_EQ(pixel(27), (std::array<uint8_t, 2>{0, 255}));
}

TEST_F(OwnCapture, TheFlashOfLightLeavesTheScreenAsItWas) {
    OptionsHolder().setOn("chkPlayPhotoSound", false);
    OptionsHolder().setOn("chkFlashlight", true);
    const Rect area{120, 130, 320, 240};
    const TBitmap before = grabScreen(area).take();
    announceCapture(area);
    test::pump();
    const TBitmap after = grabScreen(area).take();
    EXPECT_TRUE(std::ranges::equal(after.bytes(), before.bytes()));
    OptionsHolder() = Options();
}

}  // namespace
}  // namespace glimmer
