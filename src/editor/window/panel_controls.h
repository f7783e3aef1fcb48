#pragma once

#include <wx/panel.h>

#include <functional>
#include <span>

#include "common/colour.h"
#include "common/tool_button.h"
#include "editor/window/colour_swatch.h"

class wxChoice;
class wxSizer;
class wxSlider;
class wxStaticText;

namespace glimmer {

class EditingForm;

// The controls that the property panels are made of.

constexpr int panelGap = 6;  ///< between controls, at 96 dots per inch

/// A group of properties; `title` is what a screen reader calls it, `tag` the part that it stands for, 0 for none.
wxPanel* makePanel(wxWindow* parent, const char* name, const char* title, int tag = 0);

/// A button with an icon and a hint, which calls `pressed`.
ToolButton* makeButton(wxWindow* parent, const char* name, const char* icon, const wxString& hint,
                       std::function<void()> pressed, ToolButton::Kind kind = ToolButton::Kind::Push, int tag = 0);

/// A text that opens a picker; a press calls `pressed`. In the colour of links, also after a change of theme.
wxStaticText* makeLink(wxWindow* parent, const char* name, const char* text, const std::function<void()>& pressed);

/// A list of numbers, all put in at once.
wxChoice* makeNumberChoice(wxWindow* parent, const char* name, const char* hint, std::span<const int32_t> numbers,
                           std::function<void(int32_t)> chosen);

/// A slider with its caption before it; all sliders begin at the same place.
wxSizer* captioned(wxWindow* panel, const char* caption, wxSlider* slider);

/// A swatch that picks another colour for what `now` answers and `apply` sets.
ColourSwatch* makeSwatch(EditingForm& form, wxWindow* parent, const char* name, const char* caption,
                         std::function<Colour()> now, std::function<void(Colour)> apply);
/// The swatch over its caption.
wxSizer* underCaption(ColourSwatch* swatch, const char* caption);

}  // namespace glimmer
