#include <gtest/gtest.h>
#include <windows.h>
#include <wx/frame.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "capture/mouse_cursor.h"
#include "capture/own_capture.h"
#include "capture/screen_area.h"
#include "settings/options.h"
#include "settings/settings_path.h"
#include "support/not_copied.h"
#include "support/windows/compositor_stand_in.h"
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

TEST_F(OwnCapture, ThePointerIsAsLargeAsTheUserHasSetIt) {
    const wchar_t* const key = L"Control Panel\\Cursors";
    const DWORD twice = 64;
    ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, key, L"CursorBaseSize", RRF_RT_ANY, nullptr, nullptr, nullptr),
              ERROR_FILE_NOT_FOUND)
        << "not on somebody's own account";
    const std::optional<MouseCursor> usual = visibleMouseCursor();
    RegSetKeyValueW(HKEY_CURRENT_USER, key, L"CursorBaseSize", REG_DWORD, &twice, sizeof twice);
    const std::optional<MouseCursor> large = visibleMouseCursor();
    RegDeleteKeyValueW(HKEY_CURRENT_USER, key, L"CursorBaseSize");
    POINT at{};
    GetCursorPos(&at);
    ASSERT_TRUE(usual && large);
    EXPECT_EQ(large->picture.width(), 2 * usual->picture.width());
    EXPECT_EQ(large->picture.height(), 2 * usual->picture.height());
    EXPECT_EQ(at.x - large->at.x, 2 * (at.x - usual->at.x)) << "it points at the same place";
}

TEST_F(OwnCapture, OwnWindowsAreLeftOutOrHiddenAndAlwaysComeBack) {
    auto* dialog = new wxFrame(window_, wxID_ANY, "dialog", wxPoint(150, 150), wxSize(100, 80));
    dialog->Show();
    test::pump();
    const std::array<HWND, 2> own{static_cast<HWND>(window_->GetHandle()), static_cast<HWND>(dialog->GetHandle())};
    const auto visible = [&own] {
        return std::ranges::count_if(own, [](HWND w) { return IsWindowVisible(w) != FALSE; });
    };
    takeWithoutOwnWindows([]() -> Result<TBitmap> { return Failure{"what faded before this test is gone"}; });
    test::CompositorStandIn compositor;
    for (const bool canLeaveOut : {true, false}) {
        compositor.canLeaveOut = canLeaveOut;
        for (const bool fails : {false, true}) {
            compositor.calls.clear();
            const auto take = [&]() -> Result<TBitmap> {
                EXPECT_EQ(visible(), canLeaveOut ? 2 : 0);
                EXPECT_EQ(compositor.absent.size(), canLeaveOut ? 2U : 0U);
                EXPECT_EQ(compositor.calls, canLeaveOut ? std::vector<std::string>{"await"}
                                                        : (std::vector<std::string>{"at once", "at once", "await"}));
                EXPECT_EQ(std::ranges::count(own, static_cast<HWND>(windowInFront())), 0);
                if (fails) throw std::bad_alloc();
                return Failure{"none"};
            };
            if (fails) {
                EXPECT_THROW(takeWithoutOwnWindows(take), std::bad_alloc);
            } else {
                EXPECT_EQ(takeWithoutOwnWindows(take).message(), "none");
            }
            EXPECT_EQ(visible(), 2);
            EXPECT_TRUE(compositor.absent.empty());
            EXPECT_EQ(compositor.calls.back(), canLeaveOut ? "await" : "animate");
        }
    }
    takeWithoutOwnWindows([&own]() -> Result<TBitmap> {
        DestroyWindow(own[1]);  // the end of a session does not wait
        return Failure{"none"};
    });
    EXPECT_EQ(visible(), 1);
    const ULONGLONG before = GetTickCount64();
    expectFading();
    takeWithoutOwnWindows([]() -> Result<TBitmap> { return Failure{"none"}; });
    EXPECT_GE(GetTickCount64() - before, 350U) << "the longest that the system takes for a menu";
}

/// Looks at the flash's window at its faintest, when it is about to go: where it is, and what the screen shows there.
class FlashWatch : test::NotCopied {
public:
    FlashWatch() : hook_(SetWindowsHookExW(WH_CALLWNDPROC, &FlashWatch::look, nullptr, GetCurrentThreadId())) {
        seen.clear();
    }
    ~FlashWatch() { UnhookWindowsHookEx(hook_); }

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
