#include "capture/uIECaptureOptions.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include "settings/settings.h"

namespace glimmer {

namespace {

constexpr int gap = 10;  // pixels at 96 dpi, between groups and around the form

/// Made before the number that it stands behind: a screen reader takes the text before a box for its name.
wxWindow* newUnit(wxWindow* parent, const wxString& unit) {
    auto* label = new wxStaticText(parent, wxID_ANY, unit);
    label->SetMinSize(parent->FromDIP(wxSize(38, -1)));
    return label;
}

/// A choice with its number and unit in one line.
wxSizer* line(wxWindow* parent, wxWindow* choice, wxWindow* number, wxWindow* unit) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(choice, 1, wxALIGN_CENTER_VERTICAL);
    row->Add(number, 0, wxALIGN_CENTER_VERTICAL | wxLEFT, parent->FromDIP(gap));
    row->Add(unit, 0, wxALIGN_CENTER_VERTICAL | wxLEFT, parent->FromDIP(gap / 2));
    return row;
}

}  // namespace

TIECaptureOptions::TIECaptureOptions(wxWindow* parent)
    : ModalDialog(parent, wxID_ANY, "Capture Options", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
                  "IECaptureOptions") {
    chkPlaySound_ = new wxCheckBox(this, wxID_ANY, "&Play sound when page is captured");
    chkPlaySound_->SetName("chkPlaySound");
    chkPerformUpdateCheck_ = new wxCheckBox(this, wxID_ANY, "Check for &updates");
    chkPerformUpdateCheck_->SetName("chkPerformUpdateCheck");

    auto* box = new wxStaticBoxSizer(wxVERTICAL, this, "Output size");
    wxWindow* inside = box->GetStaticBox();
    const wxSize numberSize = FromDIP(wxSize(80, -1));
    radPercent_ = new wxRadioButton(inside, wxID_ANY, "Pe&rcentage of the page", wxDefaultPosition, wxDefaultSize,
                                    wxRB_GROUP, wxDefaultValidator, "radPercent");
    wxWindow* percent = newUnit(inside, "%");
    spnPercent_ = new wxSpinCtrl(inside, wxID_ANY, {}, wxDefaultPosition, numberSize, wxSP_ARROW_KEYS,
                                 CaptureOptions::leastPercent, CaptureOptions::mostPercent, 100, "spnPercent");
    radFixedWidth_ = new wxRadioButton(inside, wxID_ANY, "Fixed &width, proportions kept", wxDefaultPosition,
                                       wxDefaultSize, 0, wxDefaultValidator, "radFixedWidth");
    wxWindow* pixels = newUnit(inside, "pixels");
    spnFixedWidth_ = new wxSpinCtrl(inside, wxID_ANY, {}, wxDefaultPosition, numberSize, wxSP_ARROW_KEYS, 1,
                                    CaptureOptions::mostWidth, 1024, "spnFixedWidth");
    box->Add(line(inside, radPercent_, spnPercent_, percent), 0, wxEXPAND | wxALL, FromDIP(gap / 2));
    box->Add(line(inside, radFixedWidth_, spnFixedWidth_, pixels), 0, wxEXPAND | wxALL, FromDIP(gap / 2));

    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(chkPlaySound_, 0, wxALL, FromDIP(gap));
    all->Add(chkPerformUpdateCheck_, 0, wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(gap));
    all->Add(box, 0, wxEXPAND | wxLEFT | wxRIGHT, FromDIP(gap));
    all->Add(newOkAndCancel(), 0, wxEXPAND | wxALL, FromDIP(gap));
    SetSizerAndFit(all);

    radPercent_->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { enableSizes(); });
    radFixedWidth_->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { enableSizes(); });
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { btnOKClick(); }, wxID_OK);
    show(CaptureOptions::load(settings()));
    CentreOnParent();
}

void TIECaptureOptions::show(const CaptureOptions& options) {
    chkPlaySound_->SetValue(options.playSound);
    chkPerformUpdateCheck_->SetValue(options.performUpdateCheck);
    const bool fixed = options.outputSize == CaptureOptions::OutputSize::FixedWidth;
    radPercent_->SetValue(!fixed);
    radFixedWidth_->SetValue(fixed);
    spnPercent_->SetValue(options.percent);
    spnFixedWidth_->SetValue(options.fixedWidth);
    enableSizes();
}

CaptureOptions TIECaptureOptions::shown() const {
    CaptureOptions options;
    options.playSound = chkPlaySound_->GetValue();
    options.performUpdateCheck = chkPerformUpdateCheck_->GetValue();
    options.outputSize =
        radFixedWidth_->GetValue() ? CaptureOptions::OutputSize::FixedWidth : CaptureOptions::OutputSize::Percent;
    options.percent = spnPercent_->GetValue();
    options.fixedWidth = spnFixedWidth_->GetValue();
    return options;
}

void TIECaptureOptions::enableSizes() {
    spnPercent_->Enable(radPercent_->GetValue());
    spnFixedWidth_->Enable(radFixedWidth_->GetValue());
}

void TIECaptureOptions::btnOKClick() {
    shown().save(settings());
    settings().save();
    EndModal(wxID_OK);
}

}  // namespace glimmer
