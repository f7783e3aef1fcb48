#include "settings/dialog/options_page.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include "common/link_colour.h"
#include "common/wx_text.h"
#include "settings/dialog/option_controls.h"
#include "settings/dialog/option_help.h"
#include "settings/option_table.h"

namespace glimmer {

namespace {

// Device-independent pixels.
constexpr int gap = 6;          // between lines
constexpr int groupMargin = 8;  // around a group's content
constexpr int noteWidth = 470;

const Option& optionOf(std::string_view control) { return optionTable()[optionIndex(control)]; }

/// A text that may be of any length gets the room that is left.
bool grows(const Option& option) {
    return option.kind == OptionKind::Text && option.control != "cmbAnnotationCtlFont" &&
           option.control != "edtFontName";
}

}  // namespace

OptionsPage::OptionsPage(wxWindow* parent, std::string_view title)
    : wxPanel(parent), column_(new wxBoxSizer(wxVERTICAL)), current_(column_), place_(this) {
    SetName(wxText(title));
    auto* heading = new wxStaticText(this, wxID_ANY, wxText(title));
    heading->SetFont(heading->GetFont().Scaled(1.4F));
    column_->Add(heading, 0, wxBOTTOM, FromDIP(4));
    SetSizer(column_);
    // Taken by the dialog itself: Pages and Apply.
    keys_ = {'P', 'A'};
}

wxString OptionsPage::withAccessKey(std::string_view caption) {
    const wxString plain = wxText(caption);
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
    wxWindow* window =
        makeOptionControl(place_, option, carriesCaption ? withAccessKey(option.caption) : wxString(), style);
    window->SetName(wxText(control));
    window->SetToolTip(wxText(optionHelp(control)));
    return window;
}

wxWindow* OptionsPage::caption(std::string_view control) {
    return new wxStaticText(place_, wxID_ANY, withAccessKey(optionOf(control).caption));
}

wxWindow* OptionsPage::unitText(std::string_view unit) { return new wxStaticText(place_, wxID_ANY, wxText(unit)); }

wxButton* OptionsPage::namedButton(const char* name, const char* buttonCaption) {
    auto* button = new wxButton(place_, wxID_ANY, withAccessKey(buttonCaption));
    button->SetName(name);
    return button;
}

template <class Item>
void OptionsPage::append(Item* item, int proportion) {
    if (!current_->IsEmpty()) current_->AddSpacer(FromDIP(gap));
    current_->Add(item, proportion, wxEXPAND);
}

void OptionsPage::line(wxSizer* content) {
    rows_ = nullptr;
    append(content);
}

wxFlexGridSizer* OptionsPage::rows() {
    if (rows_ == nullptr) {
        auto* grid = new wxFlexGridSizer(2, FromDIP(wxSize(8, gap)));
        grid->AddGrowableCol(1);
        line(grid);
        rows_ = grid;
    }
    return rows_;
}

void OptionsPage::openGroup(wxSizer& parent, std::string_view heading, int proportion) {
    auto* box = new wxStaticBoxSizer(wxVERTICAL, this, wxText(heading));
    auto* inner = new wxBoxSizer(wxVERTICAL);
    box->Add(inner, 1, wxEXPAND | wxALL, FromDIP(groupMargin));
    parent.Add(box, proportion, wxEXPAND);
    current_ = inner;
    place_ = box->GetStaticBox();
}

void OptionsPage::group(std::string_view heading) {
    endGroup();
    column_->AddSpacer(FromDIP(groupMargin));
    groups_ = new wxBoxSizer(wxHORIZONTAL);
    // What stands beside the only group grows with the page.
    column_->Add(groups_, 0, wxEXPAND);
    openGroup(*groups_, heading, 1);
}

void OptionsPage::groupBeside(std::string_view heading) {
    endGroup();
    groups_->GetItem(size_t{0})->SetProportion(0);
    column_->GetItem(groups_)->SetProportion(1);
    groups_->AddSpacer(FromDIP(groupMargin));
    openGroup(*groups_, heading, 1);
}

void OptionsPage::endGroup() {
    current_ = column_;
    place_ = this;
    rows_ = nullptr;
}

void OptionsPage::check(std::string_view control) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(make(control));
    line(content);
}

void OptionsPage::radios(std::initializer_list<std::string_view> controls) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    for (const std::string_view control : controls)
        content->Add(make(control, control == *controls.begin() ? wxRB_GROUP : 0), 0, wxRIGHT, FromDIP(16));
    line(content);
}

void OptionsPage::checkWithSpin(std::string_view checkControl, std::string_view spinControl) {
    wxWindow* check = make(checkControl);
    // Made before the box that it stands behind: a screen reader takes the text before a box for its name.
    wxWindow* unit = unitText(optionOf(spinControl).caption);
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    for (wxWindow* window : {check, make(spinControl), unit})
        content->Add(window, 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT, FromDIP(gap));
    line(content);
}

void OptionsPage::row(std::string_view control, std::string_view unit) {
    wxFlexGridSizer* grid = rows();
    grid->Add(caption(control), 0, wxALIGN_CENTRE_VERTICAL);
    cell_ = new wxBoxSizer(wxHORIZONTAL);
    cell_->Add(make(control), grows(optionOf(control)) ? 1 : 0, wxALIGN_CENTRE_VERTICAL);
    grid->Add(cell_, 0, wxEXPAND);
    if (!unit.empty()) behind(unitText(unit));
}

void OptionsPage::behind(wxWindow* window) { cell_->Add(window, 0, wxALIGN_CENTRE_VERTICAL | wxLEFT, FromDIP(8)); }

// The order of making is the order of the Tab key.

void OptionsPage::rowWithButton(std::string_view control, const char* buttonName, const char* buttonCaption) {
    row(control);
    behind(namedButton(buttonName, buttonCaption));
}

void OptionsPage::rowOfTwo(std::string_view first, std::string_view second, std::string_view unit) {
    row(first);
    cell_->AddSpacer(FromDIP(8));
    behind(caption(second));
    behind(make(second));
    behind(unitText(unit));
}

void OptionsPage::note(std::string_view content) {
    rows_ = nullptr;
    auto* label = new wxStaticText(place_, wxID_ANY, wxText(content));
    label->Wrap(FromDIP(noteWidth));
    label->SetForegroundColour(quietTextColour());
    append(label);
}

void OptionsPage::add(wxWindow* window, bool grow) {
    rows_ = nullptr;
    append(window, grow ? 1 : 0);
}

void OptionsPage::button(const char* name, const char* buttonCaption) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(namedButton(name, buttonCaption));
    line(content);
}

}  // namespace glimmer
