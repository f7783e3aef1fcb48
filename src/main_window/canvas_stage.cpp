#include "main_window/canvas_stage.h"

#include <wx/dcclient.h>
#include <wx/settings.h>
#include <wx/sizer.h>

#include <utility>

#include "common/contrast.h"
#include "common/inside_modal.h"
#include "editor/window/uEditor.h"

namespace glimmer {

CanvasStage::CanvasStage(wxWindow* parent, Events events)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlCanvas"),
      events_(std::move(events)) {
    takeColours();
    SetSizer(new wxBoxSizer(wxVERTICAL));
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { paint(); });
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        if (canvas_ == nullptr) Refresh();
        event.Skip();
    });
}

void CanvasStage::takeColours() { SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_APPWORKSPACE)); }

void CanvasStage::paint() {
    wxPaintDC dc(this);
    if (canvas_ != nullptr) return;
    dc.SetTextForeground(readableOn(GetBackgroundColour()));
    dc.SetFont(wxGetTopLevelParent(this)->GetFont().Scaled(1.3F));
    dc.DrawLabel("Open a picture or project with Ctrl + O, or drop one here.", GetClientRect(), wxALIGN_CENTRE);
}

bool CanvasStage::free() const { return events_.quiet() && !canvas_->busy() && !insideModal(); }

void CanvasStage::show(CaptureDocument& capture) {
    if (canvas_ != nullptr) {
        places_[&canvas_->document()] = canvas_->place();
        canvas_->show(capture, places_[&capture]);
        return;
    }
    canvas_ = new TEditForm(this, capture);
    canvas_->onChanged(events_.changed);
    canvas_->onPointerMoved(events_.pointerMoved);
    GetSizer()->Add(canvas_, 1, wxEXPAND);
    Layout();
}

void CanvasStage::clear() {
    canvas_->finishEditing();
    GetSizer()->Detach(canvas_);
    canvas_->Destroy();
    canvas_ = nullptr;
}

}  // namespace glimmer
