#include "common/icons.h"

#include <wx/settings.h>
// After the toolkit's headers, which choose its version.
#include <windows.h>

#include <cstring>
#include <string>

#include "common/assertion.h"
#include "common/icon_data.h"
#include "common/library_module.h"
#include "common/text.h"

namespace glimmer {

namespace {

/// The outline colour of every drawing; the accent colour serves light and dark backgrounds alike.
constexpr const char* outline = "#33475b";

}  // namespace

wxBitmapBundle icon(const char* name, int dip) {
    for (std::size_t i = 0; i < iconCount; ++i) {
        if (std::strcmp(iconData[i].name, name) != 0) continue;
        std::string svg = iconData[i].svg;
        if (wxSystemSettings::GetAppearance().IsUsingDarkBackground()) svg = replaceAll(svg, outline, "#dce4ec");
        return wxBitmapBundle::FromSVG(svg.c_str(), wxSize(dip, dip));
    }
    throw AssertionFailure("icon exists", "icons", __LINE__);
}

wxIconBundle applicationIcons() {
    // Without the resource (a test's program) the toolkit would complain on the screen.
    if (FindResourceW(static_cast<HMODULE>(libraryModule()), L"APPICON", RT_GROUP_ICON) == nullptr) return {};
    return {"APPICON", static_cast<WXHINSTANCE>(libraryModule())};
}

}  // namespace glimmer
