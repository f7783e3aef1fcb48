#pragma once

#include <wx/control.h>

#include <functional>

#include "common/colour.h"

namespace glimmer {

/// A field that shows a colour; a press or Space asks for another one.
class ColourSwatch : public wxControl {
public:
    ColourSwatch(wxWindow* parent, const char* name, const wxString& hint,
                 const std::function<void(ColourSwatch&)>& pressed);
    [[nodiscard]] Colour colour() const { return colour_; }
    void setColour(Colour colour);
    bool AcceptsFocus() const override { return IsEnabled() && IsShown(); }
    bool AcceptsFocusFromKeyboard() const override { return AcceptsFocus(); }

protected:
    wxSize DoGetBestClientSize() const override { return FromDIP(wxSize(30, 20)); }

private:
    void paint();

    Colour colour_ = 0;
};

}  // namespace glimmer
