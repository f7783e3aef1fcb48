#pragma once

#include <wx/panel.h>

namespace glimmer {

class EditingForm;

/// The floating panel beside a selection (`pnlSelectionIcons`) with its toolbar `tbShapes`: what can be done with the
/// selected pixels. A strip at the top moves it; until the next selection it then stays where it was put. Its buttons
/// are made when it is shown for the first time.
class SelectionToolbar : public wxPanel {
public:
    SelectionToolbar(EditingForm& form, wxWindow* canvas);

    /// Shows it beside the selection, or hides it when there is none or the mouse is at work.
    void place();
    [[nodiscard]] bool AcceptsFocus() const override { return false; }

private:
    void makeButtons();
    void onBmpOperation(int tag);
    void imgDragHandleMouseDown(wxMouseEvent& event);
    void imgDragHandleMouseMove(wxMouseEvent& event);

    EditingForm& form_;
    wxWindow* imgDragHandle_ = nullptr;
    wxPoint grabbedAt_;
    bool moved_ = false;
};

}  // namespace glimmer
