#pragma once

#include <wx/panel.h>

class wxChoice;

namespace glimmer {

class ColourSwatch;
class EditingForm;
class ToolButton;

/// What the panels show in free-drawing mode: pen, eraser, ink and "Apply".
class PensPanel {
public:
    PensPanel(EditingForm& form, wxWindow* parent);
    [[nodiscard]] wxPanel* panel() const { return panel_; }
    void showState();

private:
    wxWindow* makeTools();
    wxSizer* makeWidth();
    void endPenDrawing();

    EditingForm& form_;
    wxPanel* panel_;
    ToolButton* tbtnPen_ = nullptr;
    ToolButton* tbtnEraser_ = nullptr;
    ColourSwatch* imgInkColor_ = nullptr;
    wxChoice* cmbInkWidth_ = nullptr;
};

}  // namespace glimmer
