#pragma once

#include <wx/taskbar.h>

namespace glimmer {

class TMForm;

/// The program's icon in the notification area. A click brings the editor back; the menu has the other commands.
class TrayIcon : public wxTaskBarIcon {
public:
    /// `form` outlives the icon.
    explicit TrayIcon(TMForm& form);

protected:
    wxMenu* CreatePopupMenu() override;  // the toolkit destroys the menu

private:
    TMForm& form_;
};

}  // namespace glimmer
