#include "common/link_colour.h"

#include <wx/settings.h>

#include <algorithm>
#include <cmath>

namespace glimmer {

namespace {

/// Relative luminance by WCAG 2.1, 0 to 1.
double luminance(const wxColour& colour) {
    const auto linear = [](unsigned char channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.Red()) + 0.7152 * linear(colour.Green()) + 0.0722 * linear(colour.Blue());
}

/// Contrast ratio by WCAG 2.1, 1 to 21; text wants 4.5.
double contrast(const wxColour& a, const wxColour& b) {
    const double x = luminance(a);
    const double y = luminance(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

}  // namespace

wxColour linkColour() {
    wxColour system = wxSystemSettings::GetColour(wxSYS_COLOUR_HOTLIGHT);
    const wxColour background = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    if (contrast(system, background) >= 4.5) return system;
    const wxColour dark(0x1A, 0x5F, 0xB4);
    const wxColour light(0x8A, 0xBE, 0xF7);
    return contrast(dark, background) >= contrast(light, background) ? dark : light;
}

}  // namespace glimmer
