#include <gtest/gtest.h>
#include <windows.h>
#include <wx/frame.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

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

/// Looks at the flash's window at its faintest, when it is about to go: where it is, and what the screen shows there.
class FlashWatch {
public:
    FlashWatch() : hook_(SetWindowsHookExW(WH_CALLWNDPROC, &FlashWatch::look, nullptr, GetCurrentThreadId())) {
        seen.clear();
    }
    ~FlashWatch() { UnhookWindowsHookEx(hook_); }
    FlashWatch(const FlashWatch&) = delete;
    FlashWatch& operator=(const FlashWatch&) = delete;
    FlashWatch(FlashWatch&&) = delete;
    FlashWatch& operator=(FlashWatch&&) = delete;

    static inline std::vector<std::pair<Rect, TBitmap>> seen;

private:
    static LRESULT CALLBACK look(int code, WPARAM wParam, LPARAM lParam) {
        const auto& call = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (code == HC_ACTION && call.message == WM_WINDOWPOSCHANGING &&
            (reinterpret_cast<const WINDOWPOS*>(call.lParam)->flags & SWP_HIDEWINDOW) != 0 &&
            (GetWindowLongW(call.hwnd, GWL_EXSTYLE) & WS_EX_LAYERED) != 0) {
            RECT place{};
            GetWindowRect(call.hwnd, &place);
            const Rect area{place.left, place.top, place.right, place.bottom};
            seen.emplace_back(area, grabScreen(area).take());
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }
    HHOOK hook_;
};

TEST_F(OwnCapture, TheFlashOfLightIsSeenAndLeavesTheScreenAsItWas) {
    OptionsHolder().setOn("chkPlayPhotoSound", false);
    window_->SetBackgroundColour(*wxBLACK);
    window_->Refresh();
    test::pump();
    const Rect area{120, 130, 320, 240};
    const TBitmap before = grabScreen(area).take();
    ASSERT_EQ(before.pixel(150, 90), rgb(0, 0, 0));
    const FlashWatch watch;
    announceCapture(area);
    EXPECT_TRUE(FlashWatch::seen.empty()) << "not asked for";
    OptionsHolder().setOn("chkFlashlight", true);
    announceCapture(area);
    ASSERT_EQ(FlashWatch::seen.size(), 1U);
    const auto& [place, lit] = FlashWatch::seen[0];
    EXPECT_EQ(place, area);
    for (const Point at : {Point{0, 0}, Point{150, 90}, Point{199, 109}})
        EXPECT_GT(lit.pixel(at.x, at.y) & 0xFFU, 0U) << at.x;
    EXPECT_TRUE(test::pumpUntil([&] { return std::ranges::equal(grabScreen(area)->bytes(), before.bytes()); }));
    OptionsHolder() = Options();
}

}  // namespace
}  // namespace glimmer
