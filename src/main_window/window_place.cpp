#include "main_window/window_place.h"

#include <wx/frame.h>
#include <wx/gdicmn.h>
#include <wx/splitter.h>

#include <algorithm>
#include <string>

#include "main_window/main_toolbar.h"
#include "settings/form_store.h"
#include "settings/options.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

// Device-independent pixels.
const wxSize standardSize(1180, 780);
const wxSize smallestSize(480, 360);
constexpr int narrowestLeftPanel = 120;
constexpr int widestLeftPanel = 2000;

std::string section() { return settingsSection("MainEditor"); }

}  // namespace

void restorePlace(wxFrame& window) {
    window.SetMinSize(window.FromDIP(smallestSize));
    restoreGeometry(settings(), section(), window, window.FromDIP(standardSize));
}

void restoreToolbar(TMainToolbar& toolbar) {
    const TCachedMemIniFile& store = settings();
    toolbar.setButtonSize(static_cast<ToolbarSize>(store.readInteger(section(), "ToolbarSize", 1, 0, 2)));
    toolbar.setPinned(store.readBool(section(), "btnFix", true));
    toolbar.setFolded(store.readBool(section(), "ToolbarFolded", false));
}

void showLeftPanel(wxSplitterWindow& splitter, wxWindow& panel, wxWindow& rest, bool show) {
    if (show == splitter.IsSplit()) return;
    if (show) {
        splitter.SetMinimumPaneSize(splitter.FromDIP(narrowestLeftPanel));
        const int width = std::clamp(OptionsHolder().number("spnLeftPanelWidth"), narrowestLeftPanel, widestLeftPanel);
        splitter.SplitVertically(&panel, &rest, splitter.FromDIP(width));
    } else {
        splitter.Unsplit(&panel);
    }
}

void storePlace(const wxFrame& window, const TMainToolbar& toolbar, const wxSplitterWindow& splitter) {
    TCachedMemIniFile& store = settings();
    saveGeometry(store, section(), window);
    store.writeInteger(section(), "ToolbarSize", static_cast<int32_t>(toolbar.buttonSize()));
    store.writeBool(section(), "btnFix", toolbar.pinned());
    store.writeBool(section(), "ToolbarFolded", toolbar.folded());
    if (splitter.IsSplit()) OptionsHolder().setNumber("spnLeftPanelWidth", splitter.ToDIP(splitter.GetSashPosition()));
    saveOptions();
}

}  // namespace glimmer
