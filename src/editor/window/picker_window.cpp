#include "editor/window/picker_window.h"

#include <wx/display.h>
#include <wx/frame.h>

#include <algorithm>

#include "editor/window/placing.h"

namespace glimmer {

PickerWindow::PickerWindow(wxWindow* parent, const wxString& title, const char* name)
    : wxDialog(parent, wxID_ANY, title, wxDefaultPosition, wxDefaultSize,
               wxBORDER_SIMPLE | wxFRAME_FLOAT_ON_PARENT | wxFRAME_NO_TASKBAR, name) {
    Bind(wxEVT_ACTIVATE, [this](wxActivateEvent& event) {
        event.Skip();
        if (!event.GetActive() && IsShown()) CallAfter([this] { finish(); });
    });
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_ESCAPE)
            finish();
        else
            event.Skip();
    });
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { finish(); });
}

void PickerWindow::openAt(const wxRect& owner) {
    Fit();
    const int index = wxDisplay::GetFromPoint(owner.GetTopLeft());
    const wxRect screen = wxDisplay(static_cast<unsigned>(std::max(0, index))).GetClientArea();
    const wxSize size = GetSize();
    const int y = placedBeside(owner.y, owner.GetBottom(), size.y, screen.GetBottom(), FromDIP(2));
    SetPosition({placedWithin(owner.x, size.x, screen.x, screen.GetRight()),
                 placedWithin(y, size.y, screen.y, screen.GetBottom())});
    Show();
    SetFocus();
}

void PickerWindow::finish() {
    if (finished_) return;
    finished_ = true;
    Hide();
    if (GetParent() != nullptr) GetParent()->SetFocus();
    Destroy();
}

}  // namespace glimmer
