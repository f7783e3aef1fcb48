#include "main_window/selection_panel.h"

#include <wx/hyperlink.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/wrapsizer.h>
#include <wx/wupdlock.h>

#include <span>
#include <utility>

#include "common/accessible_name.h"
#include "common/link_colour.h"
#include "common/sound.h"
#include "main_window/output_commands.h"

namespace glimmer {

namespace {

struct Label {
    const char* control;
    const char* text;
    SelectionPanel::Action action;
};

struct Row {
    const char* heading;
    std::span<const Label> labels;
};

constexpr Label selecting[] = {{"lblSelectAll", "All", ListAction::SelectAll},
                               {"lblSelectCurrent", "Current", ListAction::SelectCurrent},
                               {"lblSelectOther", "Other", ListAction::SelectOther}};
constexpr Label deleting[] = {{"lblDeleteSelected", "Selected", ListAction::DeleteSelected},
                              {"lblDeleteAll", "All", ListAction::DeleteAll},
                              {"lblDeleteOther", "Other", ListAction::DeleteOther}};
constexpr Label output[] = {{"lblThenUpload", "Upload", uploadCaptures},
                            {"lblThenSave", "Save", saveCaptures},
                            {"lblThenCopy", "Copy", copyCaptures},
                            {"lblThenMail", "E-Mail", mailCaptures},
                            {"lblThenEdit", "Edit", launchCaptures}};
constexpr Row rows[] = {{"Select:", selecting}, {"Delete:", deleting}, {"Then:", output}};

}  // namespace

SelectionPanel::SelectionPanel(wxWindow* parent, std::function<void(const Action&)> clicked)
    : clicked_(std::move(clicked)) {
    Hide();
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlSelection");
}

void SelectionPanel::click(const Action& action) {
    playSound(Sound::Click);
    clicked_(action);
}

bool SelectionPanel::fill() {
    if (GetSizer() != nullptr) return false;
    const wxWindowUpdateLocker atOnce(this);
    auto* grid = new wxFlexGridSizer(2, FromDIP(3), FromDIP(6));
    grid->AddGrowableCol(1);
    for (const Row& row : rows) {
        grid->Add(new wxStaticText(this, wxID_ANY, row.heading));
        auto* line = new wxWrapSizer(wxHORIZONTAL, wxREMOVE_LEADING_SPACES);
        for (const Label& label : row.labels) {
            // An address is required but never opened: the click is handled here.
            auto* text = new wxGenericHyperlinkCtrl(this, wxID_ANY, label.text, label.control, wxDefaultPosition,
                                                    wxDefaultSize, wxHL_ALIGN_LEFT | wxNO_BORDER, label.control);
            text->SetToolTip(wxString(row.heading) + " " + label.text);
            setAccessibleName(*text, text->GetToolTipText(), PressedControl::Link,
                              [this, &label] { click(label.action); });
            text->Bind(wxEVT_HYPERLINK, [this, &label](wxHyperlinkEvent&) { click(label.action); });
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
