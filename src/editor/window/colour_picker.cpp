#include "editor/window/colour_picker.h"

#include <wx/button.h>
#include <wx/clrpicker.h>
#include <wx/colordlg.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <vector>

#include "editor/window/colour_swatch.h"
#include "editor/window/palette.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

constexpr const char* lastColoursKey = "lastColor%d";

std::string lastColourKey(size_t index) {
    return wxString::Format(lastColoursKey, static_cast<int>(index)).utf8_string();
}

std::vector<Colour> lastColours() {
    std::vector<Colour> colours;
    const std::string section = settingsSection(group::editorSettings);
    for (size_t i = 0; i < lastColoursKept; ++i) {
        const int32_t value = settings().readInteger(section, lastColourKey(i), -1, -1, 0xFFFFFF);
        if (value >= 0) colours.push_back(static_cast<Colour>(value));
    }
    return colours;
}

void keepColour(Colour used) {
    std::vector<Colour> colours = lastColours();
    rememberColour(colours, used);
    const std::string section = settingsSection(group::editorSettings);
    for (size_t i = 0; i < colours.size(); ++i)
        settings().writeInteger(section, lastColourKey(i), static_cast<int32_t>(colours[i]));
}

class ColourPicker final : public PickerWindow {
public:
    ColourPicker(wxWindow* parent, Colour initial, std::function<void(Colour)> picked)
        : PickerWindow(parent, "Colors", "ColorPicker"), picked_(std::move(picked)), initial_(initial) {
        auto* all = new wxBoxSizer(wxVERTICAL);
        addGrid(*all, {palette.begin(), palette.end()}, "palette");
        const std::vector<Colour> last = lastColours();
        if (!last.empty()) {
            all->Add(new wxStaticText(this, wxID_ANY, "Last used"), 0, wxLEFT | wxTOP, FromDIP(8));
            addGrid(*all, last, "last");
        }
        auto* more = new wxButton(this, wxID_ANY, "More Colors...", wxDefaultPosition, wxDefaultSize, 0,
                                  wxDefaultValidator, "btnMoreColors");
        more->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { askSystem(); });
        all->Add(more, 0, wxEXPAND | wxALL, FromDIP(8));
        SetSizer(all);
        if (standard_ != nullptr) standard_->SetFocus();
    }

private:
    void addGrid(wxSizer& to, const std::vector<Colour>& colours, const char* name) {
        auto* grid = new wxGridSizer(paletteColumns, FromDIP(3), FromDIP(3));
        const auto first = static_cast<int>(fields_.size());
        for (const Colour colour : colours) {
            const wxString hint = wxString::Format("%d, %d, %d", redOf(colour), greenOf(colour), blueOf(colour));
            auto* field = new ColourSwatch(this, name, hint, [this](ColourSwatch& pressed) { take(pressed.colour()); });
            field->setColour(colour);
            field->SetMinSize(FromDIP(wxSize(22, 22)));
            field->Bind(wxEVT_KEY_DOWN, &ColourPicker::walk, this);
            if (standard_ == nullptr || (colour == initial_ && standard_->colour() != initial_)) standard_ = field;
            fields_.push_back(field);
            grid->Add(field, 0, wxEXPAND);
        }
        static_cast<void>(first);
        to.Add(grid, 0, wxALL, FromDIP(8));
    }

    void walk(wxKeyEvent& event) {
        const auto at = std::find(fields_.begin(), fields_.end(), event.GetEventObject()) - fields_.begin();
        std::ptrdiff_t to = at;
        switch (event.GetKeyCode()) {
            case WXK_LEFT:
                to -= 1;
                break;
            case WXK_RIGHT:
                to += 1;
                break;
            case WXK_UP:
                to -= paletteColumns;
                break;
            case WXK_DOWN:
                to += paletteColumns;
                break;
            default:
                event.Skip();
                return;
        }
        if (to >= 0 && to < std::ssize(fields_)) fields_[static_cast<size_t>(to)]->SetFocus();
    }

    void take(Colour colour) {
        keepColour(colour);
        const std::function<void(Colour)> picked = std::move(picked_);
        picked_ = nullptr;
        finish();
        if (picked) picked(colour);
    }

    void askSystem() {
        wxColourData data;
        data.SetChooseFull(true);
        data.SetColour(wxColour(redOf(initial_), greenOf(initial_), blueOf(initial_)));
        // The dialog takes the activation, which would close this window; its parent is ours.
        const std::function<void(Colour)> picked = std::move(picked_);
        picked_ = nullptr;
        wxWindow* parent = GetParent();
        finish();
        wxColourDialog dialog(parent, &data);
        if (dialog.ShowModal() != wxID_OK || !picked) return;
        const wxColour chosen = dialog.GetColourData().GetColour();
        const Colour colour = rgb(chosen.Red(), chosen.Green(), chosen.Blue());
        keepColour(colour);
        picked(colour);
    }

    std::function<void(Colour)> picked_;
    Colour initial_;
    std::vector<ColourSwatch*> fields_;
    ColourSwatch* standard_ = nullptr;
};

}  // namespace

void openColourPicker(wxWindow* parent, const wxRect& owner, Colour initial, std::function<void(Colour)> picked) {
    auto* picker = new ColourPicker(parent, initial, std::move(picked));  // goes when it is closed
    picker->openAt(owner);
}

}  // namespace glimmer
