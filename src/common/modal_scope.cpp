#include "common/modal_scope.h"

#include <windows.h>

#include <array>
#include <string_view>

namespace glimmer {

struct ModalScope::Watch {
    static LRESULT CALLBACK see(int code, WPARAM window, LPARAM details) {
        if (code == HCBT_CREATEWND && innermost_ != nullptr && innermost_->window_ == nullptr) {
            std::array<wchar_t, 16> name{};
            GetClassNameW(reinterpret_cast<HWND>(window), name.data(), static_cast<int>(name.size()));
            if (std::wstring_view(name.data()) == L"#32770") innermost_->window_ = reinterpret_cast<void*>(window);
        }
        return CallNextHookEx(nullptr, code, window, details);
    }
};

ModalScope::ModalScope()
    : outer_(innermost_),
      hook_(SetWindowsHookExW(WH_CBT, &Watch::see, nullptr, GetCurrentThreadId())),
      active_(reinterpret_cast<void*>(GetActiveWindow())) {
    innermost_ = this;
}

ModalScope::~ModalScope() {
    innermost_ = outer_;
    if (hook_ != nullptr) UnhookWindowsHookEx(static_cast<HHOOK>(hook_));
    const auto before = static_cast<HWND>(active_);
    if (GetActiveWindow() == nullptr && IsWindowVisible(before) != FALSE && IsWindowEnabled(before) != FALSE)
        SetForegroundWindow(before);
}

std::vector<void*> ModalScope::windows() {
    std::vector<void*> all;
    for (const ModalScope* scope = innermost_; scope != nullptr; scope = scope->outer_)
        if (scope->window_ != nullptr) all.push_back(scope->window_);
    return all;
}

}  // namespace glimmer
