#include "editor/window/property_panels.h"

#include <wx/settings.h>
#include <wx/sizer.h>

#include "editor/window/annotation_panels.h"
#include "editor/window/editing_form.h"
#include "editor/window/panel_controls.h"
#include "editor/window/pens_panel.h"

namespace glimmer {

namespace {

constexpr int panelWidth = 216;  // at 96 dots per inch

}  // namespace

PropertyPanels::PropertyPanels(EditingForm& form, wxWindow* parent) : form_(form) {
    Hide();  // until it is filled
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL | wxTAB_TRAVERSAL, "pnlProperties");
    SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    SetScrollRate(0, FromDIP(20));
    SetMinSize({FromDIP(panelWidth), -1});
}

PropertyPanels::~PropertyPanels() = default;

void PropertyPanels::fill() {
    if (annotation_ != nullptr) return;
    annotation_ = new AnnotationPanels(form_, this);
    pens_ = std::make_unique<PensPanel>(form_, this);
    pnlCapturing_ = makeCapturing();
    pens_->panel()->Hide();
    pnlCapturing_->Hide();
    auto* all = new wxBoxSizer(wxVERTICAL);
    for (wxWindow* panel : {static_cast<wxWindow*>(annotation_), static_cast<wxWindow*>(pens_->panel()),
                            static_cast<wxWindow*>(pnlCapturing_)})
        all->Add(panel, 0, wxEXPAND | wxALL, FromDIP(panelGap + 2));
    // What a screen reader calls them; without that it would be the names of the controls.
    SetLabel("Properties");
    for (wxWindow* group : {static_cast<wxWindow*>(annotation_), FindWindow("tbQuickShapes"), FindWindow("tbAlignment"),
                            FindWindow("tbPens")})
        group->SetLabel("");
    SetSizer(all);
    Layout();
    FitInside();
    showState();
    Show();
}

wxPanel* PropertyPanels::makeCapturing() {
    wxPanel* panel = makePanel(this, "pnlCapturing", "Capture");
    const auto add = [&](const char* name, const char* icon, const char* caption, const char* hint, bool take) {
        ToolButton::Look look;
        look.icon = icon;
        look.caption = caption;
        look.hint = hint;
        auto* made = new ToolButton(panel, name, look);
        made->Bind(wxEVT_BUTTON, [this, take](wxCommandEvent&) { form_.controller().endCapture(take); });
        panel->GetSizer()->Add(made, 0, wxBOTTOM, FromDIP(panelGap));
    };
    add("tbtnCapture", "capture", "Capture  ", "Capture Selection", true);
    add("tbtnCancel", "cancel", "Cancel", "Cancel Capturing", false);
    return panel;
}

void PropertyPanels::showState() {
    if (annotation_ == nullptr) return;
    const CanvasMode mode = form_.controller().mode();
    const bool changed = annotation_->IsShown() != (mode == CanvasMode::Annotation) ||
                         pens_->panel()->IsShown() != (mode == CanvasMode::FreeDrawing);
    if (changed) {
        annotation_->Show(mode == CanvasMode::Annotation);
        pens_->panel()->Show(mode == CanvasMode::FreeDrawing);
        pnlCapturing_->Show(mode == CanvasMode::Capture);
        Layout();
        FitInside();
    }
    pens_->showState();
    annotation_->showState();
}

}  // namespace glimmer
