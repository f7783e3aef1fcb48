#include "host/program/tray_icon.h"

#include <wx/menu.h>
#include <wx/settings.h>

#include <utility>

#include "common/icons.h"

namespace glimmer {

namespace {

constexpr int trayIconSize = 16;  // pixels at 96 dpi

}  // namespace

TrayIcon::TrayIcon(std::vector<TrayItem> items) : items_(std::move(items)) {
    SetIcon(icon("capture", trayIconSize), "Glimmerpad");
    Bind(wxEVT_TASKBAR_LEFT_UP, [this](wxTaskBarIconEvent&) { items_.front().click(); });
}

wxMenu* TrayIcon::CreatePopupMenu() {
    auto* menu = new wxMenu;
    appendItems(*menu, items_);
    return menu;
}

void appendItems(wxMenu& menu, const std::vector<TrayItem>& items) {
    for (const TrayItem& item : items) {
        if (item.apart) menu.AppendSeparator();
        if (item.more) {
            auto* inside = new wxMenu;
            appendItems(*inside, item.more());
            menu.AppendSubMenu(inside, wxString::FromUTF8(item.caption));
            continue;
        }
        const wxMenuItem* entry = menu.Append(wxID_ANY, wxString::FromUTF8(item.caption));
        menu.Bind(
            wxEVT_MENU, [click = item.click](wxCommandEvent&) { click(); }, entry->GetId());
    }
}

}  // namespace glimmer
