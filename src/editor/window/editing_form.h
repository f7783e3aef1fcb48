#pragma once

#include <functional>

#include "editor/canvas/canvas_controller.h"

class wxWindow;

namespace glimmer {

/// The canvas's form as its parts know it (panels, toolbar, label editor, menu): the capture that is shown, its
/// behaviour, and what only the form can do.
class EditingForm {
public:
    virtual ~EditingForm() = default;
    virtual CaptureDocument& document() = 0;
    virtual CanvasController& controller() = 0;
    /// Per cent.
    [[nodiscard]] virtual int32_t zoom() const = 0;
    /// A rectangle of the picture in the canvas's window coordinates.
    [[nodiscard]] virtual Rect inView(const Rect& picture) const = 0;
    /// Scrolls by the smallest way that shows that part of the picture.
    virtual void reveal(const Rect& area) = 0;
    /// What is selected (empty: nothing).
    [[nodiscard]] virtual Rect selectedArea() const = 0;
    /// Runs a command of a menu, button or shortcut, the clipboard's included; false when there is nothing to do.
    virtual bool executeCommand(EditCommand command) = 0;
    [[nodiscard]] virtual bool canExecute(EditCommand command) const = 0;
    /// Ends what is being typed, dragged or drawn, keeping it; before saving, switching or closing.
    virtual void finishEditing() = 0;
    /// The list dialog behind "Renumber..." and "Reorder...".
    virtual void mnuNumberSetClick() = 0;
    /// The window that pickers belong to.
    virtual wxWindow& window() = 0;
    /// Lets the user pick a colour beside that window. `picked` is called at any later time, or never, and only while
    /// the same capture is shown.
    virtual void pickColourAt(wxWindow& owner, Colour initial, std::function<void(Colour)> picked) = 0;
    /// Asks, at any later time, whether the form is there and still shows the capture that it shows now: an answer
    /// that comes later is for that capture, or for nobody.
    [[nodiscard]] virtual std::function<bool()> stillShown() = 0;
};

}  // namespace glimmer
