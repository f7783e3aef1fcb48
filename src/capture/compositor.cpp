#include "capture/compositor.h"

#include <windows.h>
// After windows.h, which it needs.
#include <dwmapi.h>

#include "common/system_library.h"
#include "common/system_version.h"

namespace glimmer {

namespace {

// Of later systems than the one that the headers are asked for.
constexpr DWORD attributeCloaked = 14;           // DWMWA_CLOAKED
constexpr DWORD excludedFromCapture = 0x11;      // WDA_EXCLUDEFROMCAPTURE
constexpr UINT printFullContent = 0x02;          // PW_RENDERFULLCONTENT
constexpr uint32_t firstBuildToExclude = 19041;  // Windows 10, version 2004

const wchar_t* const dwm = L"dwmapi.dll";

/// Before that build the system takes the wish for another one, and blackens the window in the picture.
bool systemCanExclude() { return systemBuild() >= firstBuildToExclude; }

DWORD affinityOf(HWND window) {
    DWORD affinity = WDA_NONE;
    return GetWindowDisplayAffinity(window, &affinity) != FALSE ? affinity : WDA_NONE;
}

template <class Value>
bool readAttribute(HWND window, DWORD attribute, Value& value) {
    static const auto read = systemFunction<decltype(&DwmGetWindowAttribute)>(dwm, "DwmGetWindowAttribute");
    return read != nullptr && SUCCEEDED(read(window, attribute, &value, sizeof value));
}

class SystemCompositor : public Compositor {
public:
    std::optional<Rect> frame(void* window) override {
        RECT frame{};
        if (!readAttribute(static_cast<HWND>(window), DWMWA_EXTENDED_FRAME_BOUNDS, frame) ||
            IsRectEmpty(&frame) != FALSE)
            return std::nullopt;
        return Rect{frame.left, frame.top, frame.right, frame.bottom};
    }

    bool cloaked(void* window) override {
        DWORD why = 0;
        return readAttribute(static_cast<HWND>(window), attributeCloaked, why) && why != 0;
    }

    bool leaveOut(void* window, bool out) override {
        const auto handle = static_cast<HWND>(window);
        if (!out) return SetWindowDisplayAffinity(handle, WDA_NONE) != FALSE;
        if (!systemCanExclude() || SetWindowDisplayAffinity(handle, excludedFromCapture) == FALSE) return false;
        // Some say yes and do nothing.
        if (affinityOf(handle) == excludedFromCapture) return true;
        SetWindowDisplayAffinity(handle, WDA_NONE);
        return false;
    }

    bool leftOut(void* window) override {
        return systemCanExclude() && affinityOf(static_cast<HWND>(window)) == excludedFromCapture;
    }

    void setTransitions(void* window, bool animated) override {
        static const auto write = systemFunction<decltype(&DwmSetWindowAttribute)>(dwm, "DwmSetWindowAttribute");
        const BOOL disabled = animated ? FALSE : TRUE;
        if (write != nullptr)
            write(static_cast<HWND>(window), DWMWA_TRANSITIONS_FORCEDISABLED, &disabled, sizeof disabled);
    }

    void awaitScreen() override {
        static const auto flush = systemFunction<decltype(&DwmFlush)>(dwm, "DwmFlush");
        // The first may end the frame that was begun before.
        for (int frames = 0; flush != nullptr && frames < 2; ++frames) flush();
    }

    bool print(void* window, void* context) override {
        return PrintWindow(static_cast<HWND>(window), static_cast<HDC>(context), printFullContent) != FALSE;
    }
};

Compositor* replaced = nullptr;

}  // namespace

Compositor& compositor() {
    static SystemCompositor ofSystem;
    if (replaced != nullptr) return *replaced;
    return ofSystem;
}

void setCompositor(Compositor* replacement) { replaced = replacement; }

}  // namespace glimmer
