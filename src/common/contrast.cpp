#include "common/contrast.h"

#include <wx/settings.h>
// After the toolkit's headers, which choose its version.
#include <windows.h>

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

}  // namespace

double contrast(const wxColour& a, const wxColour& b) {
    const double x = luminance(a);
    const double y = luminance(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

wxColour readableOn(const wxColour& background) {
    wxColour best;
    double most = 0;
    for (const wxSystemColour which : {wxSYS_COLOUR_BTNTEXT, wxSYS_COLOUR_WINDOWTEXT, wxSYS_COLOUR_HIGHLIGHTTEXT}) {
        const wxColour candidate = wxSystemSettings::GetColour(which);
        const double here = contrast(candidate, background);
        if (here <= most) continue;
        best = candidate;
        most = here;
        if (most >= readable) break;
    }
    return best;
}

bool usesContrastTheme() {
    HIGHCONTRASTW theme{};
    theme.cbSize = sizeof theme;
    if (SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof theme, &theme, 0) != FALSE &&
        (theme.dwFlags & HCF_HIGHCONTRASTON) != 0)
        return true;
    return wxSystemSettings::GetAppearance().IsUsingDarkBackground();
}

}  // namespace glimmer
