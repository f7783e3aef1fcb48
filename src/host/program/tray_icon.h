#pragma once

#include <wx/taskbar.h>

#include <functional>
#include <vector>

namespace glimmer {

/// A command of the icon's menu.
struct TrayItem {
    const char* caption;
    std::function<void()> click;
    bool apart = false;  ///< with a line above it
};

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
