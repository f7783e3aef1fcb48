// A page that is scrolled and grabbed piece by piece, from a window that is built like a browser's.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "support/not_copied.h"
#include "support/windows/host_fixture.h"

namespace glimmer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int areaWidth = 120;
constexpr int areaHeight = 90;

/// What the page shows at a place.
COLORREF pageColour(int x, int y) { return RGB(x % 200, y % 200, (x / 10 + y / 10) % 2 * 255); }
uint32_t pagePixel(int x, int y) {
    const COLORREF colour = pageColour(x, y);
    return static_cast<uint32_t>(GetRValue(colour)) << 16U | static_cast<uint32_t>(GetGValue(colour)) << 8U |
           GetBValue(colour);
}

/// A top-level window with a frame and a render area in it, as the browser nests them; the area shows a page.
class FakeBrowser : NotCopied {
public:
    /// Today's browsers are a frame themselves; they keep the areas of hidden pages, and give side bars areas too.
    enum class Nesting { InFrame, IsFrame, Today };
    explicit FakeBrowser(Nesting nesting = Nesting::InFrame) {
        const bool withFrame = nesting == Nesting::InFrame;
        const wchar_t* const frame = nesting == Nesting::Today ? L"Chrome_WidgetWin_1" : L"Chrome_WidgetWin_0";
        registerClass(L"GlimmerTestBrowser", DefWindowProcW);
        registerClass(L"Chrome_WidgetWin_1", DefWindowProcW);
        registerClass(L"Chrome_WidgetWin_0", DefWindowProcW);
        registerClass(L"Chrome_RenderWidgetHostHWND", &FakeBrowser::areaProc);
        window_ = CreateWindowExW(WS_EX_TOPMOST, withFrame ? L"GlimmerTestBrowser" : frame, L"browser",
                                  WS_POPUP | WS_VISIBLE, 40, 50, 300, 200, nullptr, nullptr, nullptr, nullptr);
        HWND parent = window_;
        if (withFrame) {
            child(window_, L"Static", 0, 0, 10, 10);
            parent = child(window_, L"Chrome_WidgetWin_0", 10, 20, 280, 170);
            child(window_, L"Chrome_WidgetWin_0", 0, 0, 5, 5);  // a second one is not asked
        }
        if (nesting == Nesting::Today) {
            ShowWindow(child(parent, L"Chrome_RenderWidgetHostHWND", 0, 0, 290, 190), SW_HIDE);
            child(parent, L"Chrome_RenderWidgetHostHWND", 200, 9, 60, areaHeight);
        }
        area_ = child(parent, L"Chrome_RenderWidgetHostHWND", 7, 9, areaWidth, areaHeight);
        bringForward(window_);
        scrollTo(0, 0);
    }
    ~FakeBrowser() { DestroyWindow(window_); }

    void scrollTo(int x, int y) const {
        scroll_ = {x, y};
        RedrawWindow(area_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        pump();
    }
    [[nodiscard]] HWND window() const { return window_; }
    void closeArea() const { DestroyWindow(area_); }

private:
    static void registerClass(const wchar_t* name, WNDPROC procedure) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = name;
        RegisterClassW(&windowClass);
    }
    static HWND child(HWND parent, const wchar_t* name, int x, int y, int width, int height) {
        return CreateWindowExW(0, name, L"", WS_CHILD | WS_VISIBLE, x, y, width, height, parent, nullptr, nullptr,
                               nullptr);
    }
    static LRESULT CALLBACK areaProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_PAINT) return DefWindowProcW(window, message, wParam, lParam);
        PAINTSTRUCT paint{};
        const HDC context = BeginPaint(window, &paint);
        std::vector<uint32_t> pixels;
        for (int y = 0; y < areaHeight; ++y)
            for (int x = 0; x < areaWidth; ++x) pixels.push_back(pagePixel(x + scroll_.x, y + scroll_.y));
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = areaWidth;
        info.bmiHeader.biHeight = -areaHeight;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        SetDIBitsToDevice(context, 0, 0, areaWidth, areaHeight, 0, 0, 0, areaHeight, pixels.data(), &info,
                          DIB_RGB_COLORS);
        EndPaint(window, &paint);
        return 0;
    }

    static inline POINT scroll_{};
    HWND window_ = nullptr;
    HWND area_ = nullptr;
};

class Tiles : public HostTest {
protected:
    [[nodiscard]] int32_t init() const { return host_.json(L"captureInit", "{}"); }
    [[nodiscard]] int32_t tab() const { return host_.json(L"captureTab", "{}"); }
    /// Takes the pieces at these places of the page, in this order.
    void grab(const FakeBrowser& browser, std::initializer_list<std::pair<int, int>> places) const {
        // What the captures before have brought up stands aside.
        ASSERT_TRUE(bringForward(browser.window()));
        browser.scrollTo(0, 0);
        ASSERT_EQ(init(), 1);
        for (const auto& [x, y] : places) {
            browser.scrollTo(x, y);
            ASSERT_EQ(tab(), 1);
        }
    }
    /// "captureDone" with encoding as its action; the picture of it.
    [[nodiscard]] RgbPicture join(const std::string& members, int32_t code = GLIMMERPAD_ENCODE_IMAGE) const {
        EXPECT_EQ(host_.json(L"captureDone", "{\"action\":" + std::to_string(code) + "," + members + "}"), 1)
            << members;
        return encodedPicture();
    }
    static RgbPicture page(uint32_t left, uint32_t top, uint32_t width, uint32_t height) {
        return makePicture(width, height, [=](uint32_t x, uint32_t y) {
            return pagePixel(static_cast<int>(left + x), static_cast<int>(top + y));
        });
    }
};

TEST_F(Tiles, WithoutABrowserInFrontTheUserIsTold) {
    const std::wstring message =
        L"Error: An error occured while capturing from Chrome.\nMake sure Chrome browser is active when capturing.";
    const HWND other =
        CreateWindowExW(0, L"Static", L"host", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(bringForward(other));
    EXPECT_EQ(tab(), 0) << "nothing was looked for yet";
    EXPECT_EQ(init(), 0);
    EXPECT_THAT(takeDialogs(), ElementsAre(message));
    EXPECT_EQ(tab(), 0);
    EXPECT_EQ(host_.json(L"captureDone", R"({"rows":1,"cols":1,"width":5,"height":5})"), 0);
    {
        const FakeBrowser browser;
        ASSERT_TRUE(bringForward(other));
        EXPECT_EQ(init(), 0) << "the browser is there, but behind";
        EXPECT_EQ(takeDialogs().size(), 1U);
        ASSERT_TRUE(bringForward(browser.window()));
        EXPECT_EQ(init(), 1);
        EXPECT_EQ(tab(), 1);
        browser.closeArea();
        EXPECT_EQ(tab(), 0) << "the area has gone in between";
    }
    {
        const FakeBrowser browser(FakeBrowser::Nesting::IsFrame);
        EXPECT_EQ(init(), 1) << "the window itself is the frame";
    }
    host_.hostShutdown();
    EXPECT_EQ(tab(), 0);
    EXPECT_THAT(takeDialogs(), IsEmpty());
    DestroyWindow(other);
}

TEST_F(Tiles, TodaysBrowsersAreFoundToo) {
    const FakeBrowser browser(FakeBrowser::Nesting::Today);
    grab(browser, {{0, 0}});
    EXPECT_EQ(join(R"("width":120,"height":90,"cw":120,"ch":90,"rows":1,"cols":1)"), page(0, 0, 120, 90));
    ShowWindow(browser.window(), SW_MINIMIZE);
    EXPECT_EQ(tab(), 0);
    EXPECT_THAT(takeDialogs(), ElementsAre(L"Error: The window is minimized. Restore it, and take the picture again."));
    EXPECT_EQ(tab(), 0) << "told once";
}

TEST_F(Tiles, APageOfTwoByTwoPiecesIsJoinedAtItsEdges) {
    const FakeBrowser browser;
    // The last column and row lie at the page's edges, over the ones before.
    grab(browser, {{0, 0}, {80, 0}, {0, 60}, {80, 60}});
    EXPECT_EQ(join(R"("width":200,"height":150,"cw":120,"ch":90,"rows":2,"cols":2)"), page(0, 0, 200, 150));
    EXPECT_EQ(takeSounds(), 1);
    // The pieces were used up.
    EXPECT_EQ(host_.json(L"captureDone", R"({"rows":2,"cols":2,"width":200,"height":150})"), 0);

    grab(browser, {{0, 0}, {80, 0}, {0, 60}, {80, 60}});
    EXPECT_EQ(join(R"("width":200,"height":150,"cw":120,"ch":90,"rows":2,"cols":2,"crop":1,"cropLeft":30,)"
                   R"("cropTop":20,"cropRight":190,"cropBottom":100)",
                   GLIMMERPAD_ENCODE_IMAGE + GLIMMERPAD_SILENT),
              page(30, 20, 160, 80));
    EXPECT_EQ(takeSounds(), 1) << "on this way the hundred asks for nothing";
}

TEST_F(Tiles, ScrollBarsAreCutOffAndAnImpossiblePageAnswersNothing) {
    const FakeBrowser browser;
    const auto bar = static_cast<uint32_t>(GetSystemMetrics(SM_CXVSCROLL));
    grab(browser, {{0, 0}});
    EXPECT_EQ(
        join(R"("width":60,"height":45,"cw":60,"ch":45,"rows":1,"cols":1,"forced":1,"vScrollbar":1,"hScrollbar":1)"),
        page(0, 0, areaWidth - bar, areaHeight - bar));
    host_.hostShutdown();
    grab(browser, {{0, 0}});
    EXPECT_EQ(host_.json(L"captureDone", R"({"rows":1,"cols":1,"width":0,"height":0})"), 0);
    EXPECT_EQ(takeDialogs().size(), 1U);
    EXPECT_FALSE(host_.resumeAvailable());
}

}  // namespace
}  // namespace glimmer::test
