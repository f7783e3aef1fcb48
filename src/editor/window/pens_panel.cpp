#include "editor/window/pens_panel.h"

#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "editor/window/editing_form.h"
#include "editor/window/panel_controls.h"
#include "settings/options.h"

namespace glimmer {

PensPanel::PensPanel(EditingForm& form, wxWindow* parent)
    : form_(form), panel_(makePanel(parent, "pnlPens", "Drawing")) {
    // Two blanks before "annotation", as the text has always had them.
    auto* text = new wxStaticText(panel_, wxID_ANY,
                                  "Perform drawing using mouse.\nWhen you're finished, press \"Apply\" \n"
                                  "button or right-click the screen \nto return to  annotation mode.",
                                  wxDefaultPosition, wxDefaultSize, 0, "lblPens");
    const int gap = panel_->FromDIP(panelGap);
    wxSizer* all = panel_->GetSizer();
    all->Add(text, 0, wxBOTTOM, panel_->FromDIP(2 * panelGap));
    all->Add(makeTools(), 0, wxBOTTOM, gap);
    imgInkColor_ = makeSwatch(
        form, panel_, "imgInkColor", "Ink Color", [&form] { return form.controller().pen().colour; },
        [&form](Colour colour) {
            InkPen pen = form.controller().pen();
            pen.colour = colour;
            form.controller().setPen(pen);
            OptionsHolder().setNumber("clrPenColor", static_cast<int32_t>(colour));
        });
    auto* grid = new wxFlexGridSizer(1, panel_->FromDIP(2), panel_->FromDIP(8));
    grid->Add(underCaption(imgInkColor_, "Ink Color"));
    all->Add(grid, 0, wxBOTTOM, gap);
    all->Add(makeWidth(), 0, wxBOTTOM, panel_->FromDIP(2 * panelGap));
    ToolButton::Look apply;
    apply.icon = "apply";
    apply.caption = "Apply";
    apply.hint = "Apply changes and back to annotation mode";
    auto* btnApply = new ToolButton(panel_, "btnApply", apply);
    btnApply->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { endPenDrawing(); });
    all->Add(btnApply);
}

wxWindow* PensPanel::makeTools() {
    auto* tools = new wxPanel(panel_, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, "tbPens");
    const auto take = [this](bool eraser) {
        InkPen pen = form_.controller().pen();
        pen.eraser = eraser;
        form_.controller().setPen(pen);
    };
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    tbtnPen_ = makeButton(
        tools, "tbtnPen", "pen", "Pen tool", [take] { take(false); }, ToolButton::Kind::Radio);
    tbtnEraser_ = makeButton(
        tools, "tbtnEraser", "eraser", "Eraser tool", [take] { take(true); }, ToolButton::Kind::Radio);
    row->Add(tbtnPen_);
    row->Add(tbtnEraser_);
    row->Add(makeButton(tools, "tbtnNewDrawing", "clear-drawing", "Clear drawing",
                        [this] { form_.controller().clearDrawing(); }));
    tbtnPen_->setDown(true);
    tools->SetSizer(row);
    return tools;
}

wxSizer* PensPanel::makeWidth() {
    auto* width = new wxBoxSizer(wxHORIZONTAL);
    width->Add(new wxStaticText(panel_, wxID_ANY, "Pen width"), 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT,
               panel_->FromDIP(panelGap));
    cmbInkWidth_ = makeNumberChoice(panel_, "cmbInkWidth", "Pen width", penWidths, [this](int32_t pixels) {
        InkPen pen = form_.controller().pen();
        pen.width = pixels;
        form_.controller().setPen(pen);
        OptionsHolder().setNumber("spnPenSize", pixels);
    });
    cmbInkWidth_->SetStringSelection(wxString::Format("%d", initialPenWidth));
    width->Add(cmbInkWidth_, 0, wxALIGN_CENTRE_VERTICAL);
    return width;
}

/// Stores the drawing in the annotation and returns to annotation mode.
void PensPanel::endPenDrawing() { form_.controller().endDrawing(); }

void PensPanel::showState() {
    const InkPen& pen = form_.controller().pen();
    imgInkColor_->setColour(pen.colour);
    cmbInkWidth_->SetStringSelection(wxString::Format("%d", pen.width));
    (pen.eraser ? tbtnEraser_ : tbtnPen_)->setDown(true);
}

}  // namespace glimmer
