#include <windows.h>
// After windows.h, which it needs.
#include <richedit.h>

#include "common/system_library.h"
#include "editor/labels/text_services.h"
#include "facts.h"

namespace glimmer::facts {

namespace {

constexpr int width = 200;
constexpr int height = 60;
constexpr uint32_t white = 0xFFFFFF;

/// A rich edit without a frame, with a text, on the screen or not.
class Edit {
public:
    Edit(HWND parent, const wchar_t* text)
        : window_(CreateWindowExW(0, L"RICHEDIT50W", text, WS_CHILD | WS_VISIBLE | ES_MULTILINE, 0, 0, width, height,
                                  parent, nullptr, GetModuleHandleW(nullptr), nullptr)) {
        CHARFORMATW format = {};
        format.cbSize = sizeof format;
        format.dwMask = CFM_FACE | CFM_SIZE;
        format.yHeight = 20 * 20;  // twentieths of a point
        lstrcpyW(format.szFaceName, L"Arial");
        send(EM_SETCHARFORMAT, SCF_ALL, reinterpret_cast<LPARAM>(&format));
    }
    ~Edit() { DestroyWindow(window_); }
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;
    Edit(Edit&&) = delete;
    Edit& operator=(Edit&&) = delete;

    [[nodiscard]] HWND handle() const { return window_; }
    LRESULT send(UINT message, WPARAM wParam, LPARAM lParam) const {
        return SendMessageW(window_, message, wParam, lParam);
    }

private:
    HWND window_;
};

std::string covered(const Canvas& canvas) { return std::to_string(canvas.othersThan(white)) + " pixels"; }

std::string byPrintClient(const Edit& edit) {
    Canvas canvas(width, height);
    canvas.fill(white);
    edit.send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    return covered(canvas);
}

std::string byFormatRange(const Edit& edit) {
    Canvas canvas(width, height);
    canvas.fill(white);
    constexpr LONG twipsAnInch = 1440;
    const LONG dots = GetDeviceCaps(canvas.dc(), LOGPIXELSY);
    FORMATRANGE range = {};
    range.hdc = canvas.dc();
    range.hdcTarget = canvas.dc();
    range.rc = {0, 0, width * twipsAnInch / dots, height * twipsAnInch / dots};
    range.rcPage = range.rc;
    range.chrg = {0, -1};
    const LRESULT end = edit.send(EM_FORMATRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
    edit.send(EM_FORMATRANGE, FALSE, 0);
    return covered(canvas) + ", answer " + std::to_string(end);
}

/// As the program draws labels: without a window.
std::string byTextServices() {
    const std::unique_ptr<TextServices> services = TextServices::create();
    if (!services) return "none";
    prepareLabelControl(services->edit());
    setLabelControlText(services->edit(), std::wstring(L"X"));
    services->setWidth(width);
    Canvas canvas(width, height);
    canvas.fill(white);
    services->draw(canvas.dc(), {width, height});
    return canvas.othersThan(white) > 0 ? "drawn" : "nothing";
}

/// From the first line to the second in a control on that monitor, enlarged by nothing.
BOOL CALLBACK measureLine(HMONITOR, HDC, LPRECT place, LPARAM text) {
    const RECT frame = {place->left + 50, place->top + 50, place->left + 50 + 2 * width, place->top + 50 + 2 * height};
    const Window window(L"Glimmerpad: two lines", frame, RGB(255, 255, 255));
    const Edit edit(window.handle(), L"X\r\nX");
    window.show();
    edit.send(EM_SETZOOM, 0, 0);
    POINTL first = {};
    POINTL second = {};
    edit.send(EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&first), 0);
    edit.send(EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&second), 2);
    auto& all = *reinterpret_cast<std::string*>(text);
    if (!all.empty()) all += ", ";
    all += std::to_string(second.y - first.y) + " pixels";
    return TRUE;
}

}  // namespace

void askRichEdit(Report& report) {
    if (systemLibrary(L"msftedit.dll") == nullptr) {
        report.set("rich-edit.library", "none");
        return;
    }
    {
        const Window window(L"Glimmerpad: a text", {50, 50, 400, 250}, RGB(255, 255, 255));
        const Edit edit(window.handle(), L"X");
        report.set("rich-edit.print-client", byPrintClient(edit));
        report.set("rich-edit.format-range", byFormatRange(edit));
        report.set("rich-edit.text-services", byTextServices());
    }
    std::string heights;
    EnumDisplayMonitors(nullptr, nullptr, measureLine, reinterpret_cast<LPARAM>(&heights));
    report.set("rich-edit.line-height-20-points", heights);
}

}  // namespace glimmer::facts
