#pragma once

#include <wx/string.h>

#include <functional>

class wxWindow;

namespace glimmer {

/// What a screen reader calls a control of the system whose own text does not say it.
void setAccessibleName(wxWindow& window, const wxString& name);

/// The same for a control that we draw ourselves, and what it is: something to press.
enum class PressedControl { Button, Link };
void setAccessibleName(wxWindow& window, const wxString& name, PressedControl kind, std::function<void()> press);

}  // namespace glimmer
