#pragma once

#include <wx/gdicmn.h>

#include <memory>
#include <string_view>

#include "settings/form_state.h"

class wxWindow;
class wxTopLevelWindow;

namespace glimmer {

/// A window as a control whose state is kept; null for one of another class. No window is a programming error.
std::unique_ptr<FormControl> formControl(wxWindow* window);

/// Writes the state of every control in a form that has a name of its own, by its class; see form_state.h. Controls
/// that still have their toolkit's name are nobody's options and are left out.
void saveControls(TCachedMemIniFile& store, std::string_view section, wxWindow& form);
void restoreControls(const TCachedMemIniFile& store, std::string_view section, wxWindow& form);

/// The same for one control; null is a programming error.
void saveControl(TCachedMemIniFile& store, std::string_view section, wxWindow* control);
void restoreControl(const TCachedMemIniFile& store, std::string_view section, wxWindow* control);

/// A form's bounds and whether it is maximised; the bounds alone of any other window, as they are on the screen.
void saveGeometry(TCachedMemIniFile& store, std::string_view section, const wxWindow& window);
/// Puts a form where it was, on a monitor that exists. To be called before it is shown.
void restoreGeometry(const TCachedMemIniFile& store, std::string_view section, wxTopLevelWindow& form);
/// The same for a form that has no place yet: what the store does not know, it gets in that size (at the form's scale)
/// in the middle of the first monitor.
void restoreGeometry(const TCachedMemIniFile& store, std::string_view section, wxTopLevelWindow& form, wxSize standard);

/// Both at once into the section named after the form, in the shared store, which is then written: for a form's close.
void saveForm(wxTopLevelWindow& form);
void restoreForm(wxTopLevelWindow& form);

}  // namespace glimmer
