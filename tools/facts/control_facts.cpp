#include <windows.h>
// After windows.h, which it needs.
#include <commctrl.h>

#include "facts.h"

namespace glimmer::facts {

namespace {

constexpr const wchar_t* classes[] = {TOOLTIPS_CLASSW,  WC_LISTVIEWW,    UPDOWN_CLASSW,
                                      STATUSCLASSNAMEW, TRACKBAR_CLASSW, PROGRESS_CLASSW};

/// How many of them a window can be made of.
std::string usableClasses() {
    int made = 0;
    DWORD error = 0;
    for (const wchar_t* name : classes) {
        const HWND window =
            CreateWindowExW(0, name, L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        if (window == nullptr)
            error = GetLastError();
        else
            ++made;
        DestroyWindow(window);
    }
    std::string text = std::to_string(made) + " of " + std::to_string(std::size(classes));
    if (error != 0) text += ", error " + std::to_string(error);
    return text;
}

/// Loads the common controls that the thread's context names, and has them make their classes known.
void loadControls() {
    using Init = BOOL(WINAPI*)(const INITCOMMONCONTROLSEX*);
    const HMODULE library = LoadLibraryW(L"comctl32.dll");
    const auto init = reinterpret_cast<Init>(reinterpret_cast<void*>(GetProcAddress(library, "InitCommonControlsEx")));
    const INITCOMMONCONTROLSEX all = {sizeof all, ICC_WIN95_CLASSES};
    if (init != nullptr) init(&all);
}

}  // namespace

void askControlClasses(Report& report) {
    report.set("controls.before-any-library", usableClasses());
    {
        const OwnControls context;
        report.set("controls.context", context.active() ? "made" : "refused");
        loadControls();
        report.set("controls.with-our-context", usableClasses());
    }
    report.set("controls.without-a-context", usableClasses());
}

void askIconView(Report& report) {
    const OwnControls context;
    const Window frame(L"Glimmerpad: a list of icons", {50, 50, 450, 250}, RGB(255, 255, 255));
    const HWND list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_ICON | LVS_AUTOARRANGE, 0, 0,
                                      380, 150, frame.handle(), nullptr, GetModuleHandleW(nullptr), nullptr);
    if (list == nullptr) {
        report.set("icons.order", "no list");
        return;
    }
    frame.show();
    const auto insert = [list](int at, wchar_t name) {
        wchar_t text[] = {name, 0};
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = at;
        item.pszText = text;
        SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    };
    for (int at = 0; at < 3; ++at) insert(at, static_cast<wchar_t>(L'a' + at));
    insert(0, L'n');
    // As the program asks for it after moving an item.
    SendMessageW(list, LVM_ARRANGE, LVA_DEFAULT, 0);
    std::string order;
    int last = -1;
    for (int place = 0; place < 4; ++place) {  // from left to right
        int next = -1;
        POINT nextAt = {};
        for (int item = 0; item < 4; ++item) {
            POINT at = {};
            SendMessageW(list, LVM_GETITEMPOSITION, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&at));
            if (at.x > last && (next < 0 || at.x < nextAt.x)) {
                next = item;
                nextAt = at;
            }
        }
        last = nextAt.x;
        order += next < 0 ? '?' : "nabc"[next];
    }
    // "nabc": by index. "abcn": what was inserted in front stands at the end.
    report.set("icons.order", order);
}

}  // namespace glimmer::facts
