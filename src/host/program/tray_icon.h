#pragma once

#include <wx/taskbar.h>

#include <functional>
#include <string>
#include <vector>

class wxMenu;

namespace glimmer {

/// A command of the icon's menu.
struct TrayItem {
    std::string caption;
    std::function<void()> click;
    bool apart = false;  ///< with a line above it
    /// What opens beside it instead of a click, asked for each time; none without.
    std::function<std::vector<TrayItem>()> more{};
};

/// Adds the commands to a menu.
void appendItems(wxMenu& menu, const std::vector<TrayItem>& items);

/// The program's icon in the notification area. A click is the first command; the menu has all of them.
class TrayIcon : public wxTaskBarIcon {
public:
    /// The first item is that of a click on the icon itself, too.
    explicit TrayIcon(std::vector<TrayItem> items);

protected:
    wxMenu* CreatePopupMenu() override;  // the toolkit destroys the menu

private:
    std::vector<TrayItem> items_;
};

}  // namespace glimmer
