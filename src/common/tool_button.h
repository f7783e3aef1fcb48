#pragma once

#include <wx/bmpbndl.h>
#include <wx/control.h>
#include <wx/menu.h>

#include <memory>

namespace glimmer {

/// A hint as a tool tip shows it. Hints are written with a carriage return between their lines.
wxString tipText(wxString hint);

/// A flat button with an icon, a caption or both, as tool bars and property panels use it: it lights up under the
/// pointer, can stay down (check and radio kinds), can open a menu with its arrow, takes the keyboard (Space, Enter,
/// Down for the menu) and has an accessible name. Sends wxEVT_BUTTON when it is pressed; a check or radio button has
/// changed its state by then.
class ToolButton : public wxControl {
public:
    enum class Kind : uint8_t { Push, Check, Radio };

    struct Look {
        const char* icon = nullptr;  ///< name for icon(); none for a button of text
        wxString caption;            ///< shown beside or below the icon; may be empty
        wxString hint;
        Kind kind = Kind::Push;
        int iconDip = 16;
        bool captionBelow = false;
    };

    /// `name` is the control's name in the design; `tag` tells buttons apart that share a handler.
    ToolButton(wxWindow* parent, const char* name, Look look, int tag = 0);

    /// The height of any button with that icon (device-independent pixels) and its caption below, in a window's font.
    static int heightWithCaptionBelow(const wxWindow& window, int iconDip, bool captionShown);

    [[nodiscard]] int tag() const { return tag_; }
    [[nodiscard]] bool down() const { return down_; }
    /// Sends no event. A radio button that goes down takes its radio siblings (of the same parent) up.
    void setDown(bool down);
    void setCaption(const wxString& caption);
    void setIcon(const char* icon, int dip);
    /// Shows the caption or only the icon.
    void showCaption(bool show);
    /// A menu that opens below when the arrow is clicked; the rest of the button stays a button.
    void setMenu(std::unique_ptr<wxMenu> menu);
    [[nodiscard]] const wxMenu* menu() const { return menu_.get(); }
    /// As if the user had chosen that item of the menu.
    void choose(int id);
    /// Opens the menu now. Does nothing without one.
    void popUp();
    /// As if the user had pressed it: changes the state and sends the event. Does nothing while disabled.
    void press();

    bool AcceptsFocus() const override { return IsEnabled() && IsShown(); }
    bool AcceptsFocusFromKeyboard() const override { return AcceptsFocus(); }
    /// A caption that begins with a blank is drawn without it.
    [[nodiscard]] const wxString& caption() const { return look_.caption; }
    bool Enable(bool enable = true) override;

protected:
    wxSize DoGetBestClientSize() const override;

private:
    void paint();
    void mouse(wxMouseEvent& event);
    void key(wxKeyEvent& event);
    [[nodiscard]] wxString shownCaption() const;
    [[nodiscard]] bool onArrow(int x) const;
    [[nodiscard]] int arrowWidth() const;

    Look look_;
    wxBitmapBundle picture_;
    std::unique_ptr<wxMenu> menu_;
    int tag_;
    bool down_ = false;
    bool hot_ = false;
    bool pressed_ = false;
    bool captionShown_ = true;
};

}  // namespace glimmer
