#include "common/link_colour.h"

#include <wx/settings.h>

#include "common/contrast.h"

namespace glimmer {

wxColour linkColour() {
    wxColour system = wxSystemSettings::GetColour(wxSYS_COLOUR_HOTLIGHT);
    const wxColour background = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    if (contrast(system, background) >= readable) return system;
    const wxColour dark(0x1A, 0x5F, 0xB4);
    const wxColour light(0x8A, 0xBE, 0xF7);
    return contrast(dark, background) >= contrast(light, background) ? dark : light;
}

wxColour quietTextColour() {
    wxColour text = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT);
    const wxColour background = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    if (usesContrastTheme()) return text;
    const auto mixed = [](unsigned char ink, unsigned char paper) {
        return static_cast<unsigned char>((ink * 3 + paper * 2) / 5);
    };
    const wxColour quiet(mixed(text.Red(), background.Red()), mixed(text.Green(), background.Green()),
                         mixed(text.Blue(), background.Blue()));
    return contrast(quiet, background) >= readable ? quiet : text;
}

}  // namespace glimmer
