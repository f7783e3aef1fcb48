#include "capture/overlay/countdown.h"

#include <windows.h>

#include <string>

#include "capture/own_capture.h"
#include "common/at_end.h"
#include "common/boundary.h"
#include "common/inside_modal.h"
#include "common/library_module.h"
#include "common/modal_scope.h"
#include "common/monitors.h"

namespace glimmer {

namespace {

constexpr wchar_t className[] = L"GlimmerpadCountdown";
constexpr int side = 96;  // at 96 dpi
constexpr UINT_PTR timer = 1;

struct Count {
    ULONGLONG end = 0;  // of GetTickCount64()
    int dotsPerInch = 96;
    bool calledOff = false;
};

int secondsLeft(const Count& count) {
    constexpr ULONGLONG second = 1000;
    const ULONGLONG now = GetTickCount64();
    return now >= count.end ? 0 : static_cast<int>((count.end - now + second - 1) / second);
}

void writeCentred(HDC context, const RECT& area, const std::wstring& text, int height, COLORREF colour) {
    HFONT font = CreateFontW(-height, 0, 0, 0, FW_SEMIBOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                             CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Segoe UI");
    HGDIOBJ before = SelectObject(context, font);
    SetTextColor(context, colour);
    RECT place = area;
    DrawTextW(context, text.c_str(), -1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(context, before);
    DeleteObject(font);
}

void paint(HWND window, const Count& count) {
    constexpr COLORREF ground = RGB(32, 34, 37);
    PAINTSTRUCT painting{};
    const HDC context = BeginPaint(window, &painting);
    RECT area{};
    GetClientRect(window, &area);
    SetDCBrushColor(context, ground);
    FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    SetBkMode(context, TRANSPARENT);
    const auto scaled = [&count](int pixels) { return MulDiv(pixels, count.dotsPerInch, 96); };
    const RECT number{area.left, area.top, area.right, area.bottom - scaled(20)};
    const RECT what{area.left, area.bottom - scaled(28), area.right, area.bottom - scaled(6)};
    writeCentred(context, number, std::to_wstring(secondsLeft(count)), scaled(44), RGB(255, 255, 255));
    writeCentred(context, what, L"Click: cancel", scaled(11), RGB(170, 175, 180));
    EndPaint(window, &painting);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return guarded(LRESULT{0}, [=]() -> LRESULT {
        auto* count = reinterpret_cast<Count*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (count == nullptr) return DefWindowProcW(window, message, wParam, lParam);
        switch (message) {
            case WM_PAINT:
                paint(window, *count);
                return 0;
            case WM_ERASEBKGND:
                return 1;
            case WM_TIMER:
                InvalidateRect(window, nullptr, FALSE);
                return 0;
            case WM_MOUSEACTIVATE:
                return MA_NOACTIVATE;
            case WM_LBUTTONUP:
            case WM_CLOSE:
                count->calledOff = true;
                return 0;
            default:
                return DefWindowProcW(window, message, wParam, lParam);
        }
    });
}

HWND open(Count& count) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = static_cast<HINSTANCE>(libraryModule());
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32649));  // IDC_HAND
    windowClass.lpszClassName = className;
    RegisterClassW(&windowClass);  // fails harmlessly from the second time on
    POINT pointer{};
    GetCursorPos(&pointer);
    Rect work{0, 0, side, side};
    for (const Monitor& monitor : monitors()) {
        if (!monitor.bounds.contains({pointer.x, pointer.y})) continue;
        work = monitor.work;
        count.dotsPerInch = monitor.dotsPerInch;
    }
    const int extent = MulDiv(side, count.dotsPerInch, 96);
    const int distance = extent / 4;
    HWND window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, className, L"Glimmerpad",
                                  WS_POPUP, work.right - extent - distance, work.bottom - extent - distance, extent,
                                  extent, nullptr, nullptr, windowClass.hInstance, nullptr);
    if (window == nullptr) return nullptr;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&count));
    constexpr UINT look = 100;  // milliseconds
    SetTimer(window, timer, look, nullptr);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    return window;
}

}  // namespace

bool countDown(int32_t seconds) {
    constexpr ULONGLONG second = 1000;
    static bool counting = false;
    if (seconds <= 0) return true;
    if (counting) return false;
    counting = true;
    const AtEnd ended([] { counting = false; });
    const OwnSurroundings ours;
    Count count;
    count.end = GetTickCount64() + static_cast<ULONGLONG>(seconds) * second;
    HWND window = open(count);
    if (window == nullptr) return false;
    const AtEnd gone([window] { DestroyWindow(window); });
    while (!count.calledOff && secondsLeft(count) > 0) {
        MSG message;
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            if (got == 0) passQuitOn(static_cast<int>(message.wParam));
            return false;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (!count.calledOff) awaitGone(window);
    return !count.calledOff;
}

}  // namespace glimmer
