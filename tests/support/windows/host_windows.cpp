#include "support/windows/host_windows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "support/windows/own_keys.h"

namespace glimmer::test {

namespace {

constexpr wchar_t dialogClass[] = L"#32770";
constexpr UINT robotPeriod = 10;  // milliseconds

std::function<bool(MSG&)> messageFilter;

BOOL CALLBACK addWindow(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

std::vector<HWND> onlyVisible(std::vector<HWND> windows) {
    std::erase_if(windows, [](HWND window) { return IsWindowVisible(window) == FALSE; });
    return windows;
}

std::wstring withoutAmpersands(std::wstring text) {
    std::erase(text, L'&');
    return text;
}

bool isButton(HWND window) { return _wcsicmp(classOf(window).c_str(), L"Button") == 0; }

/// What a dialog tells: its labels, one a line.
std::wstring labelsOf(HWND dialog) {
    std::wstring all;
    for (const HWND child : childrenOf(dialog)) {
        if (_wcsicmp(classOf(child).c_str(), L"Static") != 0) continue;
        const std::wstring text = textOf(child);
        if (!all.empty() && !text.empty()) all += L'\n';
        all += text;
    }
    return all;
}

INPUT keyInput(WORD key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    // The keys between letters and number pad, from Page Up to Delete, are told from the pad's by this.
    const bool between = (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_INSERT || key == VK_DELETE;
    input.ki.dwFlags = flags | (between ? KEYEVENTF_EXTENDEDKEY : 0U);
    return input;
}

DialogRobot* activeRobot = nullptr;

}  // namespace

void setMessageFilter(std::function<bool(MSG&)> filter) { messageFilter = std::move(filter); }

void pump() {
    MSG message;
    // Bounded: a window that posts to itself for ever shall not keep a test.
    for (int i = 0; i < 1000 && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE; ++i) {
        if (messageFilter && messageFilter(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool pumpUntil(const std::function<bool()>& condition, const char* what, unsigned limitMilliseconds) {
    const ULONGLONG end = GetTickCount64() + limitMilliseconds;
    for (;;) {
        pump();
        if (condition()) return true;
        if (GetTickCount64() > end) {
            ADD_FAILURE() << what << " did not come; the windows are\n" << describeWindows(GetCurrentThreadId());
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
}

bool waitUntil(const std::function<bool()>& condition, const char* what, unsigned limitMilliseconds) {
    const ULONGLONG end = GetTickCount64() + limitMilliseconds;
    while (!condition()) {
        if (GetTickCount64() > end) {
            ADD_FAILURE() << what << " did not come";
            return false;
        }
        Sleep(10);
    }
    return true;
}

std::vector<HWND> allWindowsOfThread(DWORD thread) {
    std::vector<HWND> windows;
    EnumThreadWindows(thread, addWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

std::vector<HWND> windowsOfThread(DWORD thread) { return onlyVisible(allWindowsOfThread(thread)); }

std::vector<HWND> windowsOfProcess(DWORD process) { return onlyVisible(allWindowsOfProcess(process)); }

std::vector<HWND> allWindowsOfProcess(DWORD process) {
    std::vector<HWND> windows;
    EnumWindows(addWindow, reinterpret_cast<LPARAM>(&windows));
    std::erase_if(windows, [process](HWND window) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        return owner != process;
    });
    return windows;
}

std::vector<HWND> childrenOf(HWND window) {
    std::vector<HWND> children;
    EnumChildWindows(window, addWindow, reinterpret_cast<LPARAM>(&children));
    return children;
}

std::wstring textOf(HWND window) {
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::wstring classOf(HWND window) {
    std::array<wchar_t, 256> name{};
    return {name.data(), static_cast<size_t>(GetClassNameW(window, name.data(), static_cast<int>(name.size())))};
}

std::string describeWindows(DWORD thread) {
    std::string all;
    for (const HWND window : windowsOfThread(thread)) {
        std::array<wchar_t, 256> title{};
        InternalGetWindowText(window, title.data(), static_cast<int>(title.size()));
        std::string line = "  ";
        for (const wchar_t unit : classOf(window) + L" \"" + title.data() + L"\"")
            line += unit < 0x7F ? static_cast<char>(unit) : '?';
        all += line + (IsWindowEnabled(window) != FALSE ? "\n" : " (disabled)\n");
    }
    return all.empty() ? "  none\n" : all;
}

HWND mainWindow() {
    for (const HWND window : allWindowsOfThread(GetCurrentThreadId())) {
        const std::wstring title = textOf(window);
        const bool named = title == L"Vistrane" || title.ends_with(L" - Vistrane");
        if (named && classOf(window) != dialogClass) return window;
    }
    return nullptr;
}

bool bringForward(HWND window) {
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    return pumpUntil([window] { return GetForegroundWindow() == window; }, "the window in front");
}

void pressKey(WORD key, std::initializer_list<WORD> held) {
    std::vector<INPUT> inputs;
    for (const WORD one : held) inputs.push_back(keyInput(one, 0));
    inputs.push_back(keyInput(key, 0));
    inputs.push_back(keyInput(key, KEYEVENTF_KEYUP));
    for (const WORD one : held) inputs.push_back(keyInput(one, KEYEVENTF_KEYUP));
    sendToOurWindows(std::move(inputs));
}

bool pressButton(HWND window, const std::wstring& caption) {
    for (const HWND child : childrenOf(window)) {
        if (!isButton(child) || withoutAmpersands(textOf(child)) != caption) continue;
        PostMessageW(child, BM_CLICK, 0, 0);
        return true;
    }
    return false;
}

void refuse(HWND box) {
    for (const wchar_t* caption : {L"Cancel", L"No", L"Close", L"OK"})
        if (pressButton(box, caption)) return;
    PostMessageW(box, WM_CLOSE, 0, 0);
}

DialogRobot::DialogRobot(std::function<void(HWND)> answer)
    : answer_(std::move(answer)),
      timer_(SetTimer(nullptr, 0, robotPeriod, &DialogRobot::tick)),
      outer_(std::exchange(activeRobot, this)) {}

DialogRobot::~DialogRobot() {
    KillTimer(nullptr, timer_);
    activeRobot = outer_;
}

void DialogRobot::tick(HWND, UINT, UINT_PTR, DWORD) {
    if (activeRobot == nullptr) return;
    activeRobot->look();
    // Anew, so that there is a pause however long this took: a timer that is always due keeps a queue from ever being
    // empty, and a dialog's loop empties it before it ends.
    activeRobot->timer_ = SetTimer(nullptr, activeRobot->timer_, robotPeriod, &DialogRobot::tick);
}

void DialogRobot::look() {
    std::vector<HWND> shown = windowsOfThread();
    std::erase_if(shown, [](HWND window) { return classOf(window) != dialogClass; });
    // A handle that is gone may come again with another dialog.
    std::erase_if(handled_, [&shown](HWND box) { return std::find(shown.begin(), shown.end(), box) == shown.end(); });
    for (const HWND box : shown) {
        if (std::find(handled_.begin(), handled_.end(), box) != handled_.end()) continue;
        handled_.push_back(box);
        seen_.push_back({textOf(box), labelsOf(box)});
        answer_(box);
        return;  // what was listed may be gone by now
    }
}

}  // namespace glimmer::test
