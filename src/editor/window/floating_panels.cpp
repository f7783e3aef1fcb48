#include "editor/window/floating_panels.h"

#include <wx/display.h>
#include <wx/sizer.h>

#include <algorithm>

#include "editor/window/placing.h"

namespace glimmer {

FloatingPanels::FloatingPanels(wxWindow* form, wxWindow* panels)
    : wxMiniFrame(form, wxID_ANY, "Properties", wxDefaultPosition, wxDefaultSize,
                  wxCAPTION | wxFRAME_TOOL_WINDOW | wxFRAME_FLOAT_ON_PARENT | wxFRAME_NO_TASKBAR | wxRESIZE_BORDER,
                  "wndFloatingPanels") {
    panels->Reparent(this);
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(panels, 1, wxEXPAND);
    SetSizer(all);
    const wxSize whole = panels->GetSizer()->CalcMin();
    SetClientSize(std::max(panels->GetMinSize().x, whole.x), whole.y);
}

void FloatingPanels::giveBack(wxWindow* form, wxWindow* panels) {
    GetSizer()->Detach(panels);
    panels->Reparent(form);
}

void FloatingPanels::place(AnnotationId selected, const wxRect& owner, bool follow) {
    const auto* form = dynamic_cast<wxTopLevelWindow*>(wxGetTopLevelParent(GetParent()));
    const bool wanted = GetParent()->IsShownOnScreen() && (form == nullptr || !form->IsIconized());
    if (!placed_ || (follow && selected != noAnnotation && selected != placedFor_)) {
        const int display = wxDisplay::GetFromPoint(owner.GetTopLeft());
        const wxRect screen = wxDisplay(static_cast<unsigned>(std::max(0, display))).GetClientArea();
        const wxSize size = GetSize();
        const int gap = FromDIP(12);
        const int x = placedBeside(owner.x, owner.GetRight(), size.x, screen.GetRight(), gap);
        SetPosition({placedWithin(x, size.x, screen.x, screen.GetRight()),
                     placedWithin(owner.y, size.y, screen.y, screen.GetBottom())});
        placed_ = true;
    }
    placedFor_ = selected;
    if (wanted && !IsShown()) ShowWithoutActivating();
    if (!wanted && IsShown()) Hide();
}

}  // namespace glimmer
