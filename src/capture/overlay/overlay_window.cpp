#include "capture/overlay/overlay_window.h"

#include <windows.h>
#include <windowsx.h>

#include <array>
#include <cstring>
#include <memory>
#include <utility>

#include "capture/overlay/area_selection.h"
#include "capture/overlay/frozen_screen.h"
#include "capture/overlay/magnifier.h"
#include "capture/overlay/overlay_panels.h"
#include "common/at_end.h"
#include "common/boundary.h"
#include "common/foreground.h"
#include "common/inside_modal.h"
#include "common/library_module.h"
#include "common/modal_scope.h"
#include "common/monitors.h"
#include "common/opened_clipboard.h"
#include "common/wide_text.h"

// Each pixel is drawn once in each repaint: the panels first, then the frame, the area, the rest, each cut out of what
// comes after it. So nothing flickers, and no second picture of the screen has to be kept. Repainted is what differs
// between what is to be seen and what was.

namespace glimmer {

namespace {

constexpr wchar_t className[] = L"GlimmerpadOverlay";
constexpr COLORREF frameColour = RGB(0x1E, 0x90, 0xFF);
constexpr int32_t frameWidth = 2;

RECT toSystem(const Rect& area) { return {area.left, area.top, area.right, area.bottom}; }

struct DeleteRegion {
    void operator()(HRGN region) const { DeleteObject(region); }
};
using Region = std::unique_ptr<std::remove_pointer_t<HRGN>, DeleteRegion>;
Region regionOf(const Rect& area) {
    return Region(area.empty() ? CreateRectRgn(0, 0, 0, 0)
                               : CreateRectRgn(area.left, area.top, area.right, area.bottom));
}

/// What is to be seen, in pixels of the window.
struct Look {
    Rect outer;  ///< the area with its frame
    Rect inner;  ///< without
    Rect magnifier;
    Rect hint;
};

SelectionModifiers heldKeys() {
    const auto down = [](int key) { return GetKeyState(key) < 0; };
    return {down(VK_SHIFT), down(VK_CONTROL), down(VK_SPACE)};
}

void copyText(const std::string& text) {
    const OpenedClipboard clipboard;
    if (!clipboard) return;
    const std::wstring wide = toWide(text);
    const size_t bytes = (wide.size() + 1) * sizeof(wchar_t);
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (memory == nullptr) return;
    std::memcpy(GlobalLock(memory), wide.c_str(), bytes);
    GlobalUnlock(memory);
    EmptyClipboard();
    if (SetClipboardData(CF_UNICODETEXT, memory) == nullptr) GlobalFree(memory);
}

class Overlay {
public:
    Overlay(FrozenScreen screen, WindowTree& windows, const OverlayOptions& options, Point pointer)
        : screen_(std::move(screen)),
          windows_(windows),
          options_(options),
          selection_(screen_.area(), pointer, options.adjusts),
          monitors_(monitors()),
          hint_(options.hint) {}
    ~Overlay() {
        if (window_ != nullptr) DestroyWindow(window_);
    }
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;
    Overlay(Overlay&&) = delete;
    Overlay& operator=(Overlay&&) = delete;

    bool open();
    std::optional<OverlayChoice> run();

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer);
    bool handleKey(UINT message, WPARAM wParam);
    bool handleButton(UINT message);
    void pointerAt(Point place);
    void wheel(int delta);
    void changed();
    [[nodiscard]] Look currentLook();
    void repaint(const Look& before);
    void paint();
    void switchHint();
    [[nodiscard]] bool over() const {
        return selection_.state() == AreaSelection::State::Taken || selection_.state() == AreaSelection::State::Left;
    }
    [[nodiscard]] Rect toWindow(const Rect& area) const { return area.moved(-screen_.origin().x, -screen_.origin().y); }
    [[nodiscard]] const Monitor& monitorAt(Point place) const;

    FrozenScreen screen_;
    WindowTree& windows_;
    const OverlayOptions& options_;
    AreaSelection selection_;
    std::vector<Monitor> monitors_;
    std::vector<WindowPart> parts_;
    MagnifierPanel magnifier_;
    HintPanel hintPanel_;
    Look look_;
    bool hint_;
    int turned_ = 0;  // of the wheel, what is no whole step yet
    HWND window_ = nullptr;
};

bool Overlay::open() {
    WNDCLASSW windowClass{};
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = &Overlay::procedure;
    windowClass.hInstance = static_cast<HINSTANCE>(libraryModule());
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32515));  // IDC_CROSS
    windowClass.lpszClassName = className;
    RegisterClassW(&windowClass);  // fails harmlessly from the second time on
    const Rect area = screen_.area();
    window_ = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, className, L"Glimmerpad", WS_POPUP, area.left, area.top,
                              area.width(), area.height(), nullptr, nullptr, windowClass.hInstance, nullptr);
    if (window_ == nullptr) return false;
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    pointerAt(selection_.pointer());
    SetWindowPos(window_, HWND_TOPMOST, area.left, area.top, area.width(), area.height(), SWP_SHOWWINDOW);
    takeForeground(window_);
    SetWindowPos(window_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    SetFocus(window_);
    UpdateWindow(window_);
    return true;
}

std::optional<OverlayChoice> Overlay::run() {
    if (options_.shown) options_.shown(window_);
    while (!over()) {
        MSG message;
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            if (got == 0) passQuitOn(static_cast<int>(message.wParam));
            selection_.leave();
            break;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (GetCapture() == window_) ReleaseCapture();
    ShowWindow(window_, SW_HIDE);
    if (selection_.state() != AreaSelection::State::Taken) return std::nullopt;
    OverlayChoice choice{selection_.area()};
    if (const std::optional<size_t> framed = selection_.framed(); framed && *framed < parts_.size())
        choice.window = parts_[*framed].window;
    return choice;
}

LRESULT CALLBACK Overlay::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return guarded(LRESULT{0}, [=]() -> LRESULT {
        auto* overlay = reinterpret_cast<Overlay*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        LRESULT answer = 0;
        if (overlay != nullptr && overlay->handle(message, wParam, lParam, answer)) return answer;
        return DefWindowProcW(window, message, wParam, lParam);
    });
}

bool Overlay::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
    constexpr UINT dpiChanged = 0x02E0;  // WM_DPICHANGED: the window keeps its pixels
    switch (message) {
        case WM_PAINT:
            paint();
            return true;
        case WM_ERASEBKGND:
            answer = 1;
            return true;
        case dpiChanged:
            return true;
        case WM_MOUSEMOVE:
            pointerAt({GET_X_LPARAM(lParam) + screen_.origin().x, GET_Y_LPARAM(lParam) + screen_.origin().y});
            return true;
        case WM_MOUSEWHEEL:
            wheel(GET_WHEEL_DELTA_WPARAM(wParam));
            return true;
        case WM_CLOSE:
            selection_.leave();
            return true;
        case WM_ACTIVATEAPP:
            // Another program has come in front: the overlay would only be in its way.
            if (wParam == FALSE && IsWindowVisible(window_) != FALSE) selection_.leave();
            return false;
        default:
            return handleButton(message) || handleKey(message, wParam);
    }
}

bool Overlay::handleButton(UINT message) {
    switch (message) {
        case WM_LBUTTONDOWN:
            SetCapture(window_);
            selection_.press();
            break;
        case WM_LBUTTONUP:
            if (GetCapture() == window_) ReleaseCapture();
            selection_.release(heldKeys());
            break;
        case WM_LBUTTONDBLCLK:
            selection_.doubleClick();
            if (!over()) selection_.press();
            break;
        case WM_RBUTTONUP:
            selection_.leave();
            break;
        default:
            return false;
    }
    changed();
    return true;
}

bool Overlay::handleKey(UINT message, WPARAM wParam) {
    static constexpr std::array<std::pair<WPARAM, SelectionKey>, 7> keys = {{{VK_LEFT, SelectionKey::Left},
                                                                             {VK_RIGHT, SelectionKey::Right},
                                                                             {VK_UP, SelectionKey::Up},
                                                                             {VK_DOWN, SelectionKey::Down},
                                                                             {VK_RETURN, SelectionKey::Enter},
                                                                             {VK_ESCAPE, SelectionKey::Escape},
                                                                             {VK_BACK, SelectionKey::Backspace}}};
    if (message == WM_CHAR) {
        if (wParam == 'c' || wParam == 'C') {
            const Point at{selection_.pointer().x - screen_.origin().x, selection_.pointer().y - screen_.origin().y};
            copyText(colourText(screen_.picture().pixel(at.x, at.y)));
        } else if (wParam < 128) {
            selection_.type(static_cast<char>(wParam));
            changed();
        }
        return true;
    }
    if (message != WM_KEYDOWN) return false;
    if (wParam == VK_F1) {
        switchHint();
        return true;
    }
    for (const auto& [code, key] : keys) {
        if (code != wParam) continue;
        const std::optional<Point> pointer = selection_.key(key, heldKeys());
        if (pointer) {
            SetCursorPos(pointer->x, pointer->y);
            pointerAt(*pointer);
        } else {
            changed();
        }
        return true;
    }
    return false;
}

void Overlay::pointerAt(Point place) {
    FramesUnderPointer frames;
    if (selection_.state() == AreaSelection::State::Hovering) {
        parts_ = windows_.at(place);
        for (const WindowPart& part : parts_) frames.push_back(part.frame);
    }
    selection_.move(place, frames, heldKeys());
    changed();
}

void Overlay::wheel(int delta) {
    turned_ += delta;
    const int steps = turned_ / WHEEL_DELTA;
    turned_ -= steps * WHEEL_DELTA;
    selection_.wheel(steps);
    changed();
}

void Overlay::switchHint() {
    hint_ = !hint_;
    if (options_.hintSwitched) options_.hintSwitched(hint_);
    changed();
}

const Monitor& Overlay::monitorAt(Point place) const {
    for (const Monitor& monitor : monitors_)
        if (monitor.bounds.contains(place)) return monitor;
    return monitors_.front();
}

/// Also draws the panels anew. The frame lies around the area; at the edges of the screen inside of it.
Look Overlay::currentLook() {
    const Point pointer = selection_.pointer();
    if (!monitors_.empty()) {
        const Monitor& monitor = monitorAt(pointer);
        magnifier_.show(screen_, selection_, monitor.bounds, monitor.dotsPerInch);
        const bool busy = selection_.state() == AreaSelection::State::Dragging && !selection_.framed();
        if (hint_ && !busy) hintPanel_.show(monitor.bounds, pointer, monitor.dotsPerInch);
        if (!hint_ || busy) hintPanel_.hide();
    }
    const Rect area = selection_.area();
    Look look{{}, {}, toWindow(magnifier_.place()), toWindow(hintPanel_.place())};
    if (area.empty()) return look;
    const Rect outer = area.inflated(frameWidth).intersected(screen_.area());
    const Rect inner = area.intersected(outer.inflated(-frameWidth));
    look.outer = toWindow(outer);
    look.inner =
        inner.empty() ? Rect{look.outer.left, look.outer.top, look.outer.left, look.outer.top} : toWindow(inner);
    return look;
}

void Overlay::changed() {
    if (window_ == nullptr || over()) return;
    const Look before = std::exchange(look_, currentLook());
    repaint(before);
}

/// Has just what differs drawn, at once.
void Overlay::repaint(const Look& before) {
    const Region all = regionOf({});
    const auto add = [&all](HRGN what) { CombineRgn(all.get(), all.get(), what, RGN_OR); };
    if (before.outer != look_.outer) {
        const Region difference = regionOf({});
        CombineRgn(difference.get(), regionOf(before.inner).get(), regionOf(look_.inner).get(), RGN_XOR);
        add(difference.get());
        for (const Look* look : {&before, &std::as_const(look_)}) {
            const Region frame = regionOf({});
            CombineRgn(frame.get(), regionOf(look->outer).get(), regionOf(look->inner).get(), RGN_DIFF);
            add(frame.get());
        }
    }
    add(regionOf(before.magnifier).get());
    add(regionOf(look_.magnifier).get());
    if (before.hint != look_.hint) {
        add(regionOf(before.hint).get());
        add(regionOf(look_.hint).get());
    }
    InvalidateRgn(window_, all.get(), FALSE);
    UpdateWindow(window_);
}

void Overlay::paint() {
    PAINTSTRUCT painting{};
    const HDC context = BeginPaint(window_, &painting);
    const auto copy = [context](const Rect& to, void* from, Point corner) {
        if (to.empty()) return;
        BitBlt(context, to.left, to.top, to.width(), to.height(), static_cast<HDC>(from), corner.x, corner.y, SRCCOPY);
        ExcludeClipRect(context, to.left, to.top, to.right, to.bottom);
    };
    if (magnifier_.shown()) copy(look_.magnifier, magnifier_.deviceContext(), {0, 0});
    if (hintPanel_.shown()) copy(look_.hint, hintPanel_.deviceContext(), {0, 0});
    const RECT dirty = painting.rcPaint;
    const Rect update{dirty.left, dirty.top, dirty.right, dirty.bottom};
    const Rect inner = look_.inner.intersected(update);
    copy(inner, screen_.bright(), {inner.left, inner.top});
    if (!look_.outer.empty()) {
        const RECT frame = toSystem(look_.outer);
        ExcludeClipRect(context, look_.inner.left, look_.inner.top, look_.inner.right, look_.inner.bottom);
        SetDCBrushColor(context, frameColour);
        FillRect(context, &frame, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        ExcludeClipRect(context, frame.left, frame.top, frame.right, frame.bottom);
    }
    copy(update, screen_.dark(), {update.left, update.top});
    EndPaint(window_, &painting);
}

bool open = false;

}  // namespace

bool overlayOpen() { return open; }

Result<std::optional<OverlayChoice>> chooseArea(const TBitmap& screen, Point origin, WindowTree& windows,
                                                const OverlayOptions& options) {
    if (open) return std::optional<OverlayChoice>();
    Result<FrozenScreen> frozen = FrozenScreen::create(screen, origin);
    if (!frozen) return frozen.failure();
    POINT pointer{};
    GetCursorPos(&pointer);
    const OwnSurroundings ours;
    const ModalScope modal;
    Overlay overlay(frozen.take(), windows, options, {pointer.x, pointer.y});
    open = true;
    const AtEnd closed([] { open = false; });
    if (!overlay.open()) return Failure{"The screen cannot be covered for choosing an area."};
    return overlay.run();
}

}  // namespace glimmer
