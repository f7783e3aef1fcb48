#include "capture/overlay/overlay_window.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "capture/screen_area.h"
#include "capture/window_grab.h"
#include "support/windows/forms.h"

namespace glimmer {
namespace {

constexpr Colour frameColour = rgb(0x20, 0x40, 0x60);

/// A window with a control in it, both of known stripes.
class Striped {
public:
    Striped() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &Striped::procedure;
        windowClass.lpszClassName = L"GlimmerTestStripes";
        RegisterClassW(&windowClass);
        handle = CreateWindowExW(WS_EX_TOPMOST | WS_EX_NOACTIVATE, L"GlimmerTestStripes", L"Stripes",
                                 WS_OVERLAPPEDWINDOW, 120, 80, 400, 300, nullptr, nullptr, nullptr, nullptr);
        control = CreateWindowExW(0, L"GlimmerTestStripes", L"", WS_CHILD | WS_VISIBLE, 40, 30, 120, 90, handle,
                                  nullptr, nullptr, nullptr);
        ShowWindow(handle, SW_SHOWNOACTIVATE);
        RedrawWindow(handle, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        test::pump();
    }
    ~Striped() { DestroyWindow(handle); }
    Striped(const Striped&) = delete;
    Striped& operator=(const Striped&) = delete;
    Striped(Striped&&) = delete;
    Striped& operator=(Striped&&) = delete;

    static Colour stripe(int32_t y) { return y % 4 < 2 ? frameColour : rgb(250, 240, static_cast<uint32_t>(y)); }

    HWND handle = nullptr;
    HWND control = nullptr;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_ERASEBKGND) return DefWindowProcW(window, message, wParam, lParam);
        RECT area{};
        GetClientRect(window, &area);
        for (LONG y = 0; y < area.bottom; ++y) {
            const RECT line{0, y, area.right, y + 1};
            SetDCBrushColor(reinterpret_cast<HDC>(wParam), stripe(y));
            FillRect(reinterpret_cast<HDC>(wParam), &line, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        }
        return 1;
    }
};

struct Input {
    UINT message;
    WPARAM wParam = 0;
    Point at{};  // of the screen
};

class OverlayTest : public testing::Test {
protected:
    std::optional<OverlayChoice> choose(const std::vector<Input>& inputs) {
        const Rect screen = wholeScreen();
        test::pump();  // what the overlay before has uncovered is painted
        picture = grabScreen(screen).take();
        WindowTree windows;
        OverlayOptions options;
        options.shown = [&](void* window) {
            for (const Input& input : inputs)
                PostMessageW(static_cast<HWND>(window), input.message, input.wParam,
                             MAKELPARAM(input.at.x - screen.left, input.at.y - screen.top));
        };
        return *chooseArea(picture, {screen.left, screen.top}, windows, options);
    }
    /// Whether the chosen part of the screen is stripes from the first on.
    bool striped(const Rect& area, int32_t first) {
        const Rect screen = wholeScreen();
        const TBitmap part = picture.cropped(area.moved(-screen.left, -screen.top)).take();
        for (int32_t y = 0; y < part.height(); ++y)
            for (int32_t x = 0; x < part.width(); ++x)
                if (part.pixel(x, y) != Striped::stripe(first + y)) return false;
        return true;
    }
    TBitmap picture;
};

TEST_F(OverlayTest, TakesAControlItsWindowOrAnAreaPixelForPixel) {
    const Striped window;
    const Rect client = clientFrame(window.handle);
    const Point inControl{client.left + 60, client.top + 50};
    const Input hover{WM_MOUSEMOVE, 0, inControl};
    const Input press{WM_LBUTTONDOWN, MK_LBUTTON, inControl};
    const Input release{WM_LBUTTONUP, 0, inControl};
    const Input outwards{WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), inControl};

    const auto control = choose({hover, press, release});
    ASSERT_TRUE(control);
    EXPECT_EQ(control->area, (Rect{client.left + 40, client.top + 30, client.left + 160, client.top + 120}));
    EXPECT_EQ(control->window, window.control);
    EXPECT_TRUE(striped(control->area, 0));

    const auto inside = choose({hover, outwards, press, release});
    ASSERT_TRUE(inside);
    EXPECT_EQ(inside->area, client);
    const auto whole = choose({hover, outwards, outwards, {WM_KEYDOWN, VK_RETURN}});
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->area, visibleFrame(window.handle));
    EXPECT_EQ(whole->window, window.handle);

    const Point from{client.left + 200, client.top + 7};
    const auto area = choose({{WM_MOUSEMOVE, 0, from},
                              {WM_LBUTTONDOWN, MK_LBUTTON, from},
                              {WM_MOUSEMOVE, MK_LBUTTON, {from.x + 99, from.y + 149}},
                              {WM_LBUTTONUP, 0, {from.x + 99, from.y + 149}}});
    ASSERT_TRUE(area);
    EXPECT_EQ(area->area, (Rect{from.x, from.y, from.x + 100, from.y + 150}));
    EXPECT_EQ(area->window, nullptr);
    EXPECT_TRUE(striped(area->area, 7));

    EXPECT_FALSE(choose({hover, {WM_RBUTTONUP, 0, inControl}}));
    EXPECT_FALSE(choose({hover, {WM_KEYDOWN, VK_ESCAPE}}));
    EXPECT_FALSE(overlayOpen());
}

}  // namespace
}  // namespace glimmer
