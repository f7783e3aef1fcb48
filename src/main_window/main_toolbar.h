#pragma once

#include <wx/panel.h>
#include <wx/timer.h>

#include <functional>
#include <string_view>
#include <vector>

#include "common/tool_button.h"
#include "main_window/main_commands.h"

namespace glimmer {

/// How large the buttons are; the smallest have no captions.
enum class ToolbarSize : uint8_t { Small = 0, Medium = 1, Large = 2 };

/// The main tool bar: a button for each command, those that find no room in a menu behind a chevron, and below them a
/// handle that folds the bar away. Folded and not pinned it comes back while the pointer is over it. A window that
/// opens need not wait for thirty buttons: they are made by fill(), in a bar that has its height from the start.
class TMainToolbar : public wxPanel {
public:
    using Run = std::function<void(const MainCommand&)>;
    TMainToolbar(wxWindow* parent, Run run);

    /// Makes the buttons, the first time.
    void fill();
    /// Its timer sleeps while the window is hidden: the window is shown.
    void wake();
    [[nodiscard]] bool filled() const { return more_ != nullptr; }
    /// The button of a command; none before fill().
    [[nodiscard]] ToolButton* button(const MainCommand& command) const;
    /// Enables each button by what its command needs.
    void update(const std::function<bool(CommandNeeds)>& available);

    void setButtonSize(ToolbarSize size);
    [[nodiscard]] ToolbarSize buttonSize() const { return size_; }
    void setPinned(bool pinned);
    [[nodiscard]] bool pinned() const { return pinned_; }
    void setFolded(bool folded);
    /// Gives the focus to the first button that can be pressed. A folded bar stays open as long as it has the focus.
    void takeFocus();
    [[nodiscard]] bool folded() const { return folded_; }
    /// Called when the bar's height has changed.
    void onHeightChange(std::function<void()> changed) { heightChanged_ = std::move(changed); }

protected:
    wxSize DoGetBestClientSize() const override;

private:
    struct Item {
        const MainCommand* command;
        ToolButton* button;
    };

    [[nodiscard]] ToolButton* button(std::string_view control) const;
    ToolButton* makeButton(const char* control, const char* caption, const char* hint, const char* icon,
                           ToolButton::Kind kind);
    void makeButton(const MainCommand& command);
    void dress(ToolButton& button, const char* icon) const;
    void rearrange();
    void arrange();
    void appendHidden(wxMenu& menu, const Item& item);
    void showHidden();
    void showSizeMenu();
    void paintHandle();
    void dimHandle();
    [[nodiscard]] int barHeight() const;
    [[nodiscard]] int handleHeight() const { return FromDIP(9); }
    [[nodiscard]] bool open() const { return !folded_ || peeking_; }
    [[nodiscard]] bool pointerInside() const;

    Run run_;
    std::vector<Item> items_;
    std::vector<const Item*> hidden_;  ///< those behind the chevron
    ToolButton* fix_ = nullptr;
    ToolButton* more_ = nullptr;
    wxWindow* handle_ = nullptr;  // imgHandle
    wxTimer tmrDimHandle_;
    ToolbarSize size_ = ToolbarSize::Medium;
    bool pinned_ = true;
    bool folded_ = false;
    bool peeking_ = false;
    bool keyboard_ = false;  ///< the focus came by takeFocus() and is still here
    int away_ = 0;           ///< ticks since the pointer left
    int brightness_ = 0;     ///< of the handle, 0 to 4
    std::function<void()> heightChanged_;
};

}  // namespace glimmer
