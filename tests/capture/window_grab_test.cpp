#include "capture/window_grab.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "capture/screen_area.h"
#include "support/windows/compositor_stand_in.h"
#include "support/windows/forms.h"

namespace glimmer {
namespace {

constexpr Colour green = rgb(0x20, 0xB0, 0x40);
constexpr Colour red = rgb(0xC0, 0x10, 0x20);

/// A window of one colour.
class Sheet {
public:
    Sheet(const Rect& place, Colour colour, DWORD extended = 0, HWND owner = nullptr) {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &Sheet::procedure;
        windowClass.lpszClassName = L"GlimmerTestSheet";
        RegisterClassW(&windowClass);
        handle =
            CreateWindowExW(WS_EX_TOPMOST | WS_EX_NOACTIVATE | extended, L"GlimmerTestSheet", L"", WS_POPUP, place.left,
                            place.top, place.width(), place.height(), owner, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(handle, GWLP_USERDATA, static_cast<LONG_PTR>(colour));
        if ((extended & WS_EX_LAYERED) != 0) SetLayeredWindowAttributes(handle, 0, 255, LWA_ALPHA);
        ShowWindow(handle, SW_SHOWNOACTIVATE);
        UpdateWindow(handle);
        test::pump();
        SetWindowPos(handle, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    ~Sheet() { DestroyWindow(handle); }

    HWND handle = nullptr;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_ERASEBKGND) return DefWindowProcW(window, message, wParam, lParam);
        const auto context = reinterpret_cast<HDC>(wParam);
        RECT area{};
        GetClientRect(window, &area);
        SetDCBrushColor(context, static_cast<COLORREF>(GetWindowLongPtrW(window, GWLP_USERDATA)));
        FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        return 1;
    }
};

bool isAll(const Result<TBitmap>& picture, Colour colour, Size size) {
    if (!picture || picture->size() != size) return false;
    for (int32_t y = 0; y < size.height; ++y)
        for (int32_t x = 0; x < size.width; ++x)
            if (picture->pixel(x, y) != colour) return false;
    return true;
}

class WindowGrab : public testing::Test {
protected:
    static constexpr Rect place{100, 100, 300, 220};
    static constexpr Size whole{200, 120};
    /// From now on the system draws windows so, with the invisible border black.
    void letPrint(Colour colour, const Rect& seen = {0, 0, 200, 120}) {
        compositor_.draw = [colour, seen](void* context) {
            const RECT area{seen.left, seen.top, seen.right, seen.bottom};
            SetDCBrushColor(static_cast<HDC>(context), colour);
            return FillRect(static_cast<HDC>(context), &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH))) != 0;
        };
    }
    test::CompositorStandIn compositor_;
};

// As a browser's: nothing in the window's own device context, what the graphics card draws above it on the screen.
TEST_F(WindowGrab, WhatTheScreenShowsCounts) {
    const Sheet window(place, 0);
    const Sheet drawn(place, green, WS_EX_LAYERED | WS_EX_TRANSPARENT);
    EXPECT_TRUE(isAll(grabWindow(window.handle), green, whole));
    EXPECT_TRUE(isAll(grabClientArea(window.handle), green, whole));
    EXPECT_TRUE(compositor_.calls.empty()) << "nothing else was asked";
}

TEST_F(WindowGrab, WhatCannotBeSeenIsDrawnByTheSystem) {
    const Sheet window(place, 0);
    EXPECT_TRUE(isAll(grabWindow(window.handle), 0, whole)) << "black indeed";
    letPrint(green);
    EXPECT_TRUE(isAll(grabWindow(window.handle), green, whole)) << "black on the screen";
    const Sheet cover({250, 150, 400, 300}, red);
    EXPECT_TRUE(isAll(grabWindow(window.handle), green, whole));
    EXPECT_TRUE(isAll(grabWholeWindow(window.handle), green, whole));
    // What does not hide it, or belongs to it, is no reason.
    compositor_.calls.clear();
    compositor_.asleep.insert(cover.handle);
    EXPECT_EQ(grabWindow(window.handle)->pixel(170, 100), red);
    compositor_.asleep.clear();
    compositor_.absent.insert(cover.handle);
    EXPECT_EQ(grabWindow(window.handle)->pixel(170, 100), red);
    const Sheet menu({250, 150, 400, 300}, green, 0, window.handle);
    EXPECT_EQ(grabWindow(window.handle)->pixel(170, 100), green);
    EXPECT_TRUE(compositor_.calls.empty());
}

TEST_F(WindowGrab, TheInvisibleBorderIsNotInIt) {
    const Sheet window(place, red);
    const Sheet seen({107, 100, 293, 213}, green, WS_EX_LAYERED | WS_EX_TRANSPARENT);
    compositor_.frames[window.handle] = {107, 100, 293, 213};
    EXPECT_EQ(visibleFrame(window.handle), (Rect{107, 100, 293, 213}));
    EXPECT_TRUE(isAll(grabWindow(window.handle), green, {186, 113}));
    const Sheet cover({250, 150, 400, 300}, red);
    letPrint(green, {7, 0, 193, 113});
    EXPECT_TRUE(isAll(grabWindow(window.handle), green, {186, 113}));
}

TEST_F(WindowGrab, AtTheEdgeOfTheScreenItIsWholeOrCut) {
    const Rect screen = wholeScreen();
    const Rect maximized = screen.inflated(8);
    {
        const Sheet window(maximized, green);
        EXPECT_EQ(visibleFrame(window.handle), maximized);
        SetWindowLongW(window.handle, GWL_STYLE, GetWindowLongW(window.handle, GWL_STYLE) | WS_MAXIMIZE);
        EXPECT_TRUE(isAll(grabWindow(window.handle), green, {screen.width(), screen.height()}));
    }
    const Sheet window({screen.right - 50, 100, screen.right + 150, 220}, red);
    EXPECT_EQ(grabWholeWindow(window.handle)->size(), whole);
    EXPECT_EQ(grabWindow(window.handle)->pixel(49, 60), red);
    letPrint(green);
    EXPECT_TRUE(isAll(grabWindow(window.handle), green, whole));
}

TEST_F(WindowGrab, WhatIsNotOnTheScreenIsRefusedInWords) {
    const Sheet window(place, green);
    ShowWindow(window.handle, SW_HIDE);
    EXPECT_EQ(grabWindow(window.handle).message(), "The window is hidden.");
    ShowWindow(window.handle, SW_SHOWMINNOACTIVE);
    EXPECT_EQ(grabClientArea(window.handle).message(),
              "The window is minimized. Restore it, and take the picture again.");
    EXPECT_EQ(grabWindow(nullptr).message(), "The window is no longer there.");
}

// Whatever a version of the system can do of it.
TEST(SystemCompositor, SaysAndDoesWhatItsCallersCountOn) {
    const Sheet window({100, 100, 300, 220}, green);
    const Rect frame = compositor().frame(window.handle).value_or(Rect{100, 100, 300, 220});
    EXPECT_EQ(frame, (Rect{100, 100, 300, 220})) << "a window without borders";
    EXPECT_FALSE(compositor().cloaked(window.handle));
    EXPECT_EQ(compositor().leaveOut(window.handle, true), compositor().leftOut(window.handle));
    compositor().leaveOut(window.handle, false);
    EXPECT_FALSE(compositor().leftOut(window.handle));
    const Sheet cover({250, 150, 400, 300}, red);
    EXPECT_TRUE(isAll(grabWindow(window.handle), green, {200, 120}));
}

}  // namespace
}  // namespace glimmer
