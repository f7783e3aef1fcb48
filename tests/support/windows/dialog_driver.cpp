#include "support/windows/dialog_driver.h"

#include <gtest/gtest.h>

#include <chrono>
#include <utility>

#include "common/wide_text.h"

namespace glimmer::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Only bounds a test that hangs.
constexpr milliseconds patience{20000};

/// Without a message to the window: its thread may be at work.
std::wstring titleOf(HWND window) {
    wchar_t title[512] = {};
    InternalGetWindowText(window, title, 512);
    return title;
}

BOOL CALLBACK noteOurs(HWND window, LPARAM list) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window) != FALSE)
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

BOOL CALLBACK noteVisible(HWND window, LPARAM list) {
    if (IsWindowVisible(window) != FALSE) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

}  // namespace

DialogDriver::DialogDriver(std::deque<Step> steps) : steps_(std::move(steps)), thread_([this] { run(); }) {}

DialogDriver::~DialogDriver() {
    ending_ = true;
    thread_.join();
    for (const Step& step : steps_) ADD_FAILURE() << "no window came up titled " << fromWide(step.title);
}

void DialogDriver::run() {
    auto end = steady_clock::now() + patience;
    while (!steps_.empty() && !ending_ && steady_clock::now() < end) {
        bool done = false;
        std::vector<HWND> windows;
        EnumWindows(noteOurs, reinterpret_cast<LPARAM>(&windows));
        for (HWND window : windows) {
            done = titleOf(window) == steps_.front().title && steps_.front().act(window);
            if (done) break;
        }
        if (done) {
            steps_.pop_front();
            end = steady_clock::now() + patience;
        } else {
            Sleep(5);
        }
    }
}

std::vector<HWND> childrenOf(HWND window, const wchar_t* className) {
    std::vector<HWND> children;
    EnumChildWindows(window, noteVisible, reinterpret_cast<LPARAM>(&children));
    std::erase_if(children, [className](HWND child) {
        wchar_t name[64] = {};
        GetClassNameW(child, name, 64);
        return lstrcmpiW(name, className) != 0;
    });
    return children;
}

std::wstring textOf(HWND control) {
    wchar_t text[1024] = {};
    SendMessageW(control, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text));
    return text;
}

bool clickButton(HWND window, const std::wstring& caption) {
    for (HWND button : childrenOf(window, L"Button")) {
        std::wstring text = textOf(button);
        std::erase(text, L'&');
        if (text != caption) continue;
        PostMessageW(button, BM_CLICK, 0, 0);  // what the click starts may show the next window
        return true;
    }
    return false;
}

}  // namespace glimmer::test
