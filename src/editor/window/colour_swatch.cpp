#include "editor/window/colour_swatch.h"

#include <wx/dcbuffer.h>
#include <wx/settings.h>

namespace glimmer {

ColourSwatch::ColourSwatch(wxWindow* parent, const char* name, const wxString& hint,
                           const std::function<void(ColourSwatch&)>& pressed) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE | wxWANTS_CHARS, wxDefaultValidator, name);
    SetLabel(hint);
    SetToolTip(hint);
    SetInitialSize();
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { paint(); });
    Bind(wxEVT_SET_FOCUS, [this](wxFocusEvent& event) { Refresh(), event.Skip(); });
    Bind(wxEVT_KILL_FOCUS, [this](wxFocusEvent& event) { Refresh(), event.Skip(); });
    Bind(wxEVT_LEFT_DOWN, [this, pressed](wxMouseEvent&) {
        SetFocus();
        pressed(*this);
    });
    Bind(wxEVT_KEY_DOWN, [this, pressed](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_SPACE || event.GetKeyCode() == WXK_RETURN)
            pressed(*this);
        else if (event.GetKeyCode() == WXK_TAB)
            Navigate(event.ShiftDown() ? wxNavigationKeyEvent::IsBackward : wxNavigationKeyEvent::IsForward);
        else
            event.Skip();
    });
}

void ColourSwatch::setColour(Colour colour) {
    if (colour_ == colour) return;
    colour_ = colour;
    Refresh();
}

void ColourSwatch::paint() {
    wxAutoBufferedPaintDC dc(this);
    dc.SetBackground(wxBrush(GetParent()->GetBackgroundColour()));
    dc.Clear();
    const wxColour line = HasFocus() ? wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT)
                                     : wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
    dc.SetPen(wxPen(line, HasFocus() ? FromDIP(2) : 1));
    const wxColour fill(redOf(colour_), greenOf(colour_), blueOf(colour_));
    dc.SetBrush(IsThisEnabled() ? wxBrush(fill) : wxBrush(GetParent()->GetBackgroundColour()));
    dc.DrawRoundedRectangle(GetClientRect().Deflate(HasFocus() ? 1 : 0), FromDIP(3));
}

}  // namespace glimmer
