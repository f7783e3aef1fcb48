#include "host/program/tray_icon.h"

#include <wx/menu.h>
#include <wx/settings.h>

#include <array>

#include "common/icons.h"
#include "host/program/uMForm.h"

namespace glimmer {

namespace {

constexpr int trayIconSize = 16;  // pixels at 96 dpi

struct Item {
    const char* name;
    const char* caption;
    void (TMForm::*click)();
};

constexpr std::array items = {
    Item{"mnuContinue", "&Continue Editing", &TMForm::mnuContinueClick},
    Item{"mnuNewCapture", "&New Screenshot", &TMForm::mnuNewCaptureClick},
    Item{"mnuOpen", "&Open Project or File...", &TMForm::mnuOpenClick},
    Item{"mnuOptions", "O&ptions...", &TMForm::mnuOptionsClick},
    Item{"mnuExit", "E&xit", &TMForm::mnuExitClick},
};

}  // namespace

TrayIcon::TrayIcon(TMForm& form) : form_(form) {
    SetIcon(icon("capture", trayIconSize), "Glimmerpad");
    Bind(wxEVT_TASKBAR_LEFT_UP, [this](wxTaskBarIconEvent&) { form_.mnuContinueClick(); });
}

wxMenu* TrayIcon::CreatePopupMenu() {
    auto* menu = new wxMenu;
    for (const Item& item : items) {
        // Apart from the rest: what ends the program.
        if (item.click == &TMForm::mnuExitClick) menu->AppendSeparator();
        const wxMenuItem* entry = menu->Append(wxID_ANY, item.caption);
        menu->Bind(
            wxEVT_MENU, [this, click = item.click](wxCommandEvent&) { (form_.*click)(); }, entry->GetId());
    }
    return menu;
}

}  // namespace glimmer
