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

/// The least contrast that text wants.
constexpr double readable = 4.5;

/// Contrast ratio by WCAG 2.1, 1 to 21.
double contrast(const wxColour& a, const wxColour& b) {
    const double x = luminance(a);
    const double y = luminance(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

}  // namespace

wxColour linkColour() {
    wxColour system = wxSystemSettings::GetColour(wxSYS_COLOUR_HOTLIGHT);
    const wxColour background = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    if (contrast(system, background) >= readable) return system;
    const wxColour dark(0x1A, 0x5F, 0xB4);
    const wxColour light(0x8A, 0xBE, 0xF7);
    return contrast(dark, background) >= contrast(light, background) ? dark : light;
}

wxColour quietTextColour() {
    const wxColour text = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT);
    const wxColour background = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    const auto mixed = [](unsigned char ink, unsigned char paper) {
        return static_cast<unsigned char>((ink * 3 + paper * 2) / 5);
    };
    const wxColour quiet(mixed(text.Red(), background.Red()), mixed(text.Green(), background.Green()),
                         mixed(text.Blue(), background.Blue()));
    return contrast(quiet, background) >= readable ? quiet : text;
}

}  // namespace glimmer
