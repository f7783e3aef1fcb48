#include "editor/window/panel_controls.h"

#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>

#include "common/accessible_name.h"
#include "common/link_colour.h"
#include "editor/window/editing_form.h"

namespace glimmer {

wxPanel* makePanel(wxWindow* parent, const char* name, const char* title, int tag) {
    auto* panel = new wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, name);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the panel's tag
    panel->SetClientData(reinterpret_cast<void*>(static_cast<intptr_t>(tag)));
    panel->SetLabel(title);  // a screen reader would say the control's name
    panel->SetSizer(new wxBoxSizer(wxVERTICAL));
    return panel;
}

ToolButton* makeButton(wxWindow* parent, const char* name, const char* icon, const wxString& hint,
                       std::function<void()> pressed, ToolButton::Kind kind, int tag) {
    ToolButton::Look look;
    look.icon = icon;
    look.hint = hint;
    look.kind = kind;
    auto* made = new ToolButton(parent, name, look, tag);
    made->Bind(wxEVT_BUTTON, [pressed = std::move(pressed)](wxCommandEvent&) { pressed(); });
    return made;
}

wxStaticText* makeLink(wxWindow* parent, const char* name, const char* text, const std::function<void()>& pressed) {
    auto* link = new wxStaticText(parent, wxID_ANY, text, wxDefaultPosition, wxDefaultSize,
                                  wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE, name);
    link->SetForegroundColour(linkColour());
    link->SetCursor(wxCursor(wxCURSOR_HAND));
    link->Bind(wxEVT_LEFT_DOWN, [pressed](wxMouseEvent&) { pressed(); });
    link->Bind(wxEVT_SYS_COLOUR_CHANGED, [link](wxSysColourChangedEvent& event) {
        link->SetForegroundColour(linkColour());
        event.Skip();
    });
    return link;
}

wxChoice* makeNumberChoice(wxWindow* parent, const char* name, const char* hint, std::span<const int32_t> numbers,
                           std::function<void(int32_t)> chosen) {
    // All at once: a list that grows item by item is measured anew for each.
    wxArrayString texts;
    for (const int32_t number : numbers) texts.Add(wxString::Format("%d", number));
    auto* choice = new wxChoice(parent, wxID_ANY, wxDefaultPosition, parent->FromDIP(wxSize(56, -1)), texts, 0,
                                wxDefaultValidator, name);
    choice->SetToolTip(hint);
    choice->Bind(wxEVT_CHOICE, [numbers, chosen = std::move(chosen)](wxCommandEvent& event) {
        chosen(numbers[static_cast<size_t>(event.GetSelection())]);
    });
    return choice;
}

wxSizer* captioned(wxWindow* panel, const char* caption, wxSlider* slider) {
    auto* label = new wxStaticText(panel, wxID_ANY, caption);
    setAccessibleName(*slider, caption);
    label->SetMinSize({panel->GetTextExtent("Opacity").x + panel->FromDIP(2), -1});
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(label, 0, wxALIGN_CENTRE_VERTICAL);
    row->Add(slider, 1, wxALIGN_CENTRE_VERTICAL);
    return row;
}

namespace {

/// The handler that all swatches share: lets the user pick the colour of the property that the swatch stands for.
void imgShapeForegroundMouseDown(EditingForm& form, wxWindow& swatch, const std::function<Colour()>& now,
                                 const std::function<void(Colour)>& apply) {
    form.pickColourAt(swatch, now(), apply);
}

}  // namespace

ColourSwatch* makeSwatch(EditingForm& form, wxWindow* parent, const char* name, const char* caption,
                         std::function<Colour()> now, std::function<void(Colour)> apply) {
    const auto press = [&form, now = std::move(now), apply = std::move(apply)](ColourSwatch& swatch) {
        imgShapeForegroundMouseDown(form, swatch, now, apply);
    };
    auto* swatch = new ColourSwatch(parent, name, caption, press);
    setAccessibleName(*swatch, parent->GetLabel() + ": " + caption, PressedControl::Button,
                      [swatch, press] { press(*swatch); });
    return swatch;
}

wxSizer* underCaption(ColourSwatch* swatch, const char* caption) {
    auto* cell = new wxBoxSizer(wxVERTICAL);
    cell->Add(swatch, 0, wxALIGN_CENTRE);
    cell->Add(new wxStaticText(swatch->GetParent(), wxID_ANY, caption), 0, wxALIGN_CENTRE | wxTOP, swatch->FromDIP(1));
    return cell;
}

}  // namespace glimmer
