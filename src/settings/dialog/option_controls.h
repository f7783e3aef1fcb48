#pragma once

#include <wx/string.h>

#include "settings/option_table.h"

class wxWindow;

namespace glimmer {

/// The control of an option, in the state of its default. `caption` is for those that carry one; `style` for radio
/// buttons. The parent owns it.
wxWindow* makeOptionControl(wxWindow* parent, const Option& option, const wxString& caption, long style);

}  // namespace glimmer
