#pragma once

#include <wx/dialog.h>

namespace glimmer {

/// A small window that opens beside a control, lets the user choose one thing and closes by itself: on a choice, on
/// Esc, and when another window becomes active.
class PickerWindow : public wxDialog {
public:
    /// Shows it below `owner` (a rectangle on the screen), or above where there is no room.
    void openAt(const wxRect& owner);

protected:
    PickerWindow(wxWindow* parent, const wxString& title, const char* name);
    /// Closes the window; it destroys itself.
    void finish();

private:
    bool finished_ = false;
};

}  // namespace glimmer
