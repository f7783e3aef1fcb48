#include "main_window/selection_panel.h"

#include <wx/hyperlink.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/wrapsizer.h>
#include <wx/wupdlock.h>

#include <utility>

#include "common/accessible_name.h"
#include "common/link_colour.h"
#include "common/sound.h"

namespace glimmer {

namespace {

struct Row {
    const char* heading;
    struct {
        const char* control;
        const char* text;
    } labels[5];
};

constexpr Row rows[] = {
    {"Select:", {{"lblSelectAll", "All"}, {"lblSelectCurrent", "Current"}, {"lblSelectOther", "Other"}, {}, {}}},
    {"Delete:", {{"lblDeleteSelected", "Selected"}, {"lblDeleteAll", "All"}, {"lblDeleteOther", "Other"}, {}, {}}},
    {"Then:",
     {{"lblThenUpload", "Upload"},
      {"lblThenSave", "Save"},
      {"lblThenCopy", "Copy"},
      {"lblThenMail", "E-Mail"},
      {"lblThenEdit", "Edit"}}},
};

}  // namespace

SelectionPanel::SelectionPanel(wxWindow* parent, std::function<void(std::string_view)> clicked)
    : clicked_(std::move(clicked)) {
    Hide();
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlSelection");
}

void SelectionPanel::click(std::string_view control) {
    playSound(Sound::Click);
    clicked_(control);
}

bool SelectionPanel::fill() {
    if (GetSizer() != nullptr) return false;
    const wxWindowUpdateLocker atOnce(this);
    auto* grid = new wxFlexGridSizer(2, FromDIP(3), FromDIP(6));
    grid->AddGrowableCol(1);
    for (const Row& row : rows) {
        grid->Add(new wxStaticText(this, wxID_ANY, row.heading));
        auto* line = new wxWrapSizer(wxHORIZONTAL, wxREMOVE_LEADING_SPACES);
        for (const auto& label : row.labels) {
            if (label.control == nullptr) break;
            // An address is required but never opened: the click is handled here.
            auto* text = new wxGenericHyperlinkCtrl(this, wxID_ANY, label.text, label.control, wxDefaultPosition,
                                                    wxDefaultSize, wxHL_ALIGN_LEFT | wxNO_BORDER, label.control);
            text->SetToolTip(wxString(row.heading) + " " + label.text);
            setAccessibleName(*text, text->GetToolTipText(), PressedControl::Link,
                              [this, control = label.control] { click(control); });
            text->Bind(wxEVT_HYPERLINK, [this, control = label.control](wxHyperlinkEvent&) { click(control); });
            line->Add(text, 0, wxRIGHT, FromDIP(8));
        }
        grid->Add(line, 1, wxEXPAND);
    }
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(grid, 0, wxEXPAND | wxALL, FromDIP(6));
    SetSizer(sizer);
    takeColours();
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        takeColours();
        event.Skip();
    });
    Show();
    // What wraps knows its height only after it was given a width.
    GetParent()->Layout();
    GetParent()->Layout();
    return true;
}

void SelectionPanel::enableAll(bool enable) {
    bool changed = false;
    for (wxWindow* child : GetChildren()) changed = child->Enable(enable) || changed;
    if (changed) takeColours();
}

/// The links are drawn by the toolkit, which does not grey them.
void SelectionPanel::takeColours() {
    const wxColour link = linkColour();
    const wxColour hover = link.ChangeLightness(link.GetLuminance() < 0.5 ? 70 : 130);
    const wxColour grey = wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
    const wxColour quiet = quietTextColour();
    for (wxWindow* child : GetChildren()) {
        auto* text = dynamic_cast<wxGenericHyperlinkCtrl*>(child);
        if (text == nullptr) {
            // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): a child that is no link is there all the same
            if (child->GetForegroundColour() != quiet) child->SetForegroundColour(quiet);
            continue;
        }
        const wxColour& now = child->IsThisEnabled() ? link : grey;
        if (text->GetNormalColour() == now && text->GetHoverColour() == hover) continue;
        text->SetNormalColour(now);
        text->SetVisitedColour(now);
        text->SetHoverColour(hover);
    }
}

}  // namespace glimmer
