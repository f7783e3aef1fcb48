#include <cstdio>

#include "facts.h"

namespace glimmer::facts {

void Report::heading(const char* text) {
    text_.append("\n# ").append(text).append("\n");
    std::printf("\n# %s\n", text);
    std::fflush(stdout);
}

void Report::set(const std::string& key, const std::string& value) {
    const std::string line = key + " = " + value + "\n";
    text_ += line;
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
}

Window::Window(const wchar_t* caption, const RECT& place, COLORREF colour, DWORD style)
    : brush_(CreateSolidBrush(colour)) {
    static constexpr const wchar_t* name = L"Glimmerpad facts";
    WNDCLASSW type = {};
    type.lpfnWndProc = &Window::procedure;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = name;
    RegisterClassW(&type);  // the second time it is there already
    handle_ =
        CreateWindowExW(WS_EX_TOPMOST | WS_EX_NOACTIVATE, name, caption, style, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, nullptr, nullptr, type.hInstance, nullptr);
    SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

Window::~Window() {
    SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
    DestroyWindow(handle_);
    DeleteObject(brush_);
}

void Window::show() const {
    ShowWindow(handle_, SW_SHOWNOACTIVATE);
    UpdateWindow(handle_);
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* self = reinterpret_cast<const Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    if (self->filter && self->filter(message, wParam, lParam)) return 0;
    if (message == WM_ERASEBKGND) {
        RECT area = {};
        GetClientRect(window, &area);
        FillRect(reinterpret_cast<HDC>(wParam), &area, self->brush_);
        return 1;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void pumpFor(DWORD milliseconds) {
    const ULONGLONG end = GetTickCount64() + milliseconds;
    for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
    }
}

Canvas::Canvas(int width, int height) : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    former_ = SelectObject(dc_, bitmap_);
    pixels_ = static_cast<uint32_t*>(bits);
}

Canvas::~Canvas() {
    SelectObject(dc_, former_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
}

void Canvas::fill(uint32_t pixel) {
    for (int at = 0; at < width_ * height_; ++at) pixels_[at] = pixel;
}

uint32_t Canvas::pixel(int x, int y) const {
    GdiFlush();
    return pixels_[y * width_ + x] & 0xFFFFFFU;
}

int Canvas::othersThan(uint32_t colour) const {
    GdiFlush();
    int count = 0;
    for (int at = 0; at < width_ * height_; ++at) count += (pixels_[at] & 0xFFFFFFU) != colour ? 1 : 0;
    return count;
}

std::string colourText(uint32_t pixel) {
    char text[10];
    std::snprintf(text, sizeof text, "#%06X", static_cast<unsigned>(pixel));
    return text;
}

OwnControls::OwnControls() {
    ACTCTXW wanted = {};
    wanted.cbSize = sizeof wanted;
    wanted.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    wanted.hModule = GetModuleHandleW(nullptr);
    wanted.lpResourceName = MAKEINTRESOURCEW(2);
    context_ = CreateActCtxW(&wanted);
    if (context_ != INVALID_HANDLE_VALUE) ActivateActCtx(context_, &cookie_);
}

OwnControls::~OwnControls() {
    if (cookie_ != 0) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace glimmer::facts
