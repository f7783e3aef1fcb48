#include "main_window/bring_forward.h"

#include <wx/dialog.h>
#include <wx/frame.h>

#include <windows.h>

#include <vector>

#include "common/foreground.h"
#include "common/modal_scope.h"

namespace glimmer {

namespace {

/// A dialog waits for an answer: in front of it the window would only look dead.
void bringDialogForward() {
    for (wxWindow* top : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<wxDialog*>(top);
        if (dialog != nullptr && dialog->IsShown() && dialog->IsModal() && dialog->IsEnabled())
            takeForeground(dialog->GetHWND());
    }
    const std::vector<void*> ofSystem = ModalScope::windows();
    if (!ofSystem.empty()) takeForeground(ofSystem.front());
}

}  // namespace

void bringWindowForward(wxFrame& frame) {
    if (!frame.IsShown()) return;
    const auto window = static_cast<HWND>(frame.GetHWND());
    if (frame.IsIconized()) ShowWindow(window, SW_RESTORE);
    if (IsWindowEnabled(window) == FALSE) return bringDialogForward();
    takeForeground(window);
}

}  // namespace glimmer
