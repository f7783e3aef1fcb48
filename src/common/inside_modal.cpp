#include "common/inside_modal.h"

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/modalhook.h>
#include <wx/msw/private.h>
// clang-format off
#include <windows.h>
// clang-format on

#include <memory>
#include <optional>
#include <vector>

#include "common/modal_scope.h"

namespace glimmer {

namespace {

/// Knows the toolkit's modal dialogs that are open. Those of the system that it only wraps have no window before they
/// are shown, and are watched for it.
class ModalDialogs : public wxModalDialogHook {
public:
    [[nodiscard]] bool any() const { return !open_.empty(); }
    void quitReceived(int code) {
        if (any()) quitCode_ = code;
    }

protected:
    int Enter(wxDialog* dialog) override {
        open_.push_back(dialog->GetHWND() == nullptr ? std::make_unique<ModalScope>() : nullptr);
        return wxID_NONE;
    }
    void Exit(wxDialog* /*dialog*/) override {
        if (!open_.empty()) open_.pop_back();  // one that was open before this watched
        // The loop around this one has to hear of it too, up to the host's own.
        if (quitCode_) PostQuitMessage(*quitCode_);
        quitCode_.reset();
    }

private:
    std::vector<std::unique_ptr<ModalScope>> open_;
    std::optional<int> quitCode_;
};

ModalDialogs& modalDialogs() {
    static ModalDialogs dialogs;
    return dialogs;
}

int waits = 0;

}  // namespace

WaitScope::WaitScope() { ++waits; }
WaitScope::~WaitScope() { --waits; }

void watchModalDialogs() {
    static const bool watching = [] {
        modalDialogs().Register();
        return true;
    }();
    static_cast<void>(watching);
}

bool isOurWindow(void* window) {
    return window != nullptr && wxFindWinFromHandle(GetAncestor(static_cast<HWND>(window), GA_ROOT)) != nullptr;
}

bool insideSystemLoop() {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    if (GetGUIThreadInfo(GetCurrentThreadId(), &state) == FALSE) return false;
    constexpr DWORD menu = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE;
    if ((state.flags & menu) != 0) return isOurWindow(state.hwndMenuOwner);
    return (state.flags & GUI_INMOVESIZE) != 0 && isOurWindow(state.hwndMoveSize);
}

bool insideModal() {
    return waits > 0 || ModalScope::any() || modalDialogs().any() || (wxTheApp != nullptr && insideSystemLoop());
}

void passQuitOn(int code) { modalDialogs().quitReceived(code); }

}  // namespace glimmer
