#include "settings/options_page.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/clrpicker.h>
#include <wx/combobox.h>
#include <wx/fontenum.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "common/link_colour.h"
#include "settings/hot_key_control.h"
#include "settings/option_help.h"
#include "settings/option_table.h"

namespace glimmer {

namespace {

wxString text(std::string_view utf8) { return wxString::FromUTF8(utf8.data(), utf8.size()); }

const Option& optionOf(std::string_view control) { return optionTable()[optionIndex(control)]; }

wxArrayString fontNames() {
    wxArrayString names = wxFontEnumerator::GetFacenames();
    names.Sort();
    // Faces that stand upright; the others are the same ones turned for vertical text.
    for (size_t i = names.size(); i-- > 0;)
        if (names[i].StartsWith("@")) names.RemoveAt(i);
    return names;
}

wxWindow* makeControl(wxWindow* parent, const Option& option, const wxString& caption, long style) {
    switch (option.kind) {
        case OptionKind::Check:
            return new wxCheckBox(parent, wxID_ANY, caption);
        case OptionKind::Radio:
            return new wxRadioButton(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, style);
        case OptionKind::Combo: {
            auto* choice = new wxChoice(parent, wxID_ANY);
            for (const std::string_view item : option.texts) choice->Append(text(item));
            return choice;
        }
        case OptionKind::Spin: {
            const wxSize size(parent->FromDIP(76), -1);
            return new wxSpinCtrl(parent, wxID_ANY, wxString(), wxDefaultPosition, size, wxSP_ARROW_KEYS, option.least,
                                  option.most, option.standard);
        }
        case OptionKind::Colour:
            return new wxColourPickerCtrl(parent, wxID_ANY);
        case OptionKind::HotKey:
            return new THotKey(parent, wxID_ANY);
        case OptionKind::Text:
            if (option.control == "cmbAnnotationCtlFont")
                return new wxComboBox(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, fontNames());
            auto* edit = new wxTextCtrl(parent, wxID_ANY);
            if (option.control == "edtFontName") edit->AutoComplete(fontNames());
            return edit;
    }
    return nullptr;
}

}  // namespace

OptionsPage::OptionsPage(wxWindow* parent, std::string_view title)
    : wxPanel(parent), column_(new wxBoxSizer(wxVERTICAL)), current_(column_), place_(this) {
    SetName(text(title));
    auto* heading = new wxStaticText(this, wxID_ANY, text(title));
    heading->SetFont(heading->GetFont().MakeBold().Scaled(1.25F));
    column_->Add(heading, 0, wxBOTTOM, FromDIP(8));
    SetSizer(column_);
    // Taken by the dialog itself.
    keys_ = {'P'};
}

wxString OptionsPage::withAccessKey(std::string_view caption) {
    const wxString plain = text(caption);
    wxString escaped = plain;
    escaped.Replace("&", "&&");
    if (escaped != plain) return escaped;
    const auto isFree = [&](size_t at) {
        const wxChar key = wxToupper(plain[at]);
        return key >= 'A' && key <= 'Z' && keys_.count(key) == 0;
    };
    // The first letter of a word reads best.
    for (const bool anywhere : {false, true}) {
        for (size_t at = 0; at < plain.size(); ++at) {
            const bool wordStart = at == 0 || plain[at - 1] == ' ';
            if ((!anywhere && !wordStart) || !isFree(at)) continue;
            keys_.insert(wxToupper(plain[at]));
            return plain.substr(0, at) + "&" + plain.substr(at);
        }
    }
    return plain;
}

wxWindow* OptionsPage::make(std::string_view control, long style) {
    const Option& option = optionOf(control);
    const bool carriesCaption = option.kind == OptionKind::Check || option.kind == OptionKind::Radio;
    wxWindow* window = makeControl(place_, option, carriesCaption ? withAccessKey(option.caption) : wxString(), style);
    window->SetName(text(control));
    window->SetToolTip(text(optionHelp(control)));
    return window;
}

wxWindow* OptionsPage::caption(std::string_view control) {
    return new wxStaticText(place_, wxID_ANY, withAccessKey(optionOf(control).caption));
}

void OptionsPage::line(wxSizer* content) {
    rows_ = nullptr;
    current_->Add(content, 0, wxEXPAND | wxBOTTOM, FromDIP(6));
}

wxFlexGridSizer* OptionsPage::rows() {
    if (rows_ == nullptr) {
        auto* grid = new wxFlexGridSizer(3, FromDIP(wxSize(8, 6)));
        grid->AddGrowableCol(1);
        line(grid);
        rows_ = grid;
    }
    return rows_;
}

void OptionsPage::group(std::string_view heading) {
    endGroup();
    auto* box = new wxStaticBoxSizer(wxVERTICAL, this, text(heading));
    auto* inner = new wxBoxSizer(wxVERTICAL);
    box->Add(inner, 1, wxEXPAND | wxALL, FromDIP(8));
    column_->Add(box, 0, wxEXPAND | wxBOTTOM, FromDIP(8));
    current_ = inner;
    place_ = box->GetStaticBox();
}

void OptionsPage::endGroup() {
    current_ = column_;
    place_ = this;
    rows_ = nullptr;
}

wxWindow* OptionsPage::check(std::string_view control) {
    wxWindow* window = make(control);
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(window);
    line(content);
    return window;
}

void OptionsPage::radios(std::initializer_list<std::string_view> controls) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    for (const std::string_view control : controls)
        content->Add(make(control, control == *controls.begin() ? wxRB_GROUP : 0), 0, wxRIGHT, FromDIP(16));
    line(content);
}

void OptionsPage::checkWithSpin(std::string_view checkControl, std::string_view spinControl) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(make(checkControl), 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT, FromDIP(6));
    content->Add(make(spinControl), 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT, FromDIP(6));
    content->Add(new wxStaticText(place_, wxID_ANY, text(optionOf(spinControl).caption)), 0, wxALIGN_CENTRE_VERTICAL);
    line(content);
}

wxWindow* OptionsPage::row(std::string_view control) {
    wxFlexGridSizer* grid = rows();
    grid->Add(caption(control), 0, wxALIGN_CENTRE_VERTICAL);
    const OptionKind kind = optionOf(control).kind;
    const bool wide = kind == OptionKind::Text || kind == OptionKind::HotKey || kind == OptionKind::Combo;
    wxWindow* window = make(control);
    grid->Add(window, wide ? wxSizerFlags().Expand() : wxSizerFlags().CentreVertical());
    grid->AddSpacer(0);
    return window;
}

wxButton* OptionsPage::rowWithButton(std::string_view control, const char* buttonName, const char* buttonCaption) {
    wxFlexGridSizer* grid = rows();
    grid->Add(caption(control), 0, wxALIGN_CENTRE_VERTICAL);
    grid->Add(make(control), 0, wxEXPAND);
    auto* button = new wxButton(place_, wxID_ANY, withAccessKey(buttonCaption));
    button->SetName(buttonName);
    grid->Add(button);
    return button;
}

void OptionsPage::rowOfTwo(std::string_view first, std::string_view second) {
    wxFlexGridSizer* grid = rows();
    grid->Add(caption(first), 0, wxALIGN_CENTRE_VERTICAL);
    auto* pair = new wxBoxSizer(wxHORIZONTAL);
    pair->Add(make(first), 0, wxALIGN_CENTRE_VERTICAL);
    pair->Add(caption(second), 0, wxALIGN_CENTRE_VERTICAL | wxLEFT | wxRIGHT, FromDIP(12));
    pair->Add(make(second), 0, wxALIGN_CENTRE_VERTICAL);
    grid->Add(pair);
    grid->AddSpacer(0);
}

void OptionsPage::note(std::string_view content) {
    rows_ = nullptr;
    auto* label = new wxStaticText(place_, wxID_ANY, text(content));
    label->Wrap(FromDIP(470));
    label->SetForegroundColour(quietTextColour());
    current_->Add(label, 0, wxBOTTOM, FromDIP(6));
}

void OptionsPage::add(wxWindow* window, bool grow) {
    rows_ = nullptr;
    current_->Add(window, grow ? 1 : 0, wxEXPAND | wxBOTTOM, FromDIP(6));
}

wxButton* OptionsPage::button(const char* name, const char* buttonCaption) {
    auto* button = new wxButton(place_, wxID_ANY, withAccessKey(buttonCaption));
    button->SetName(name);
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(button);
    line(content);
    return button;
}

}  // namespace glimmer
