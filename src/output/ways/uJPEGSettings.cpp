#include "output/ways/uJPEGSettings.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/valtext.h>

#include <algorithm>

#include "common/accessible_name.h"
#include "imaging/picture_file.h"
#include "settings/settings.h"

namespace glimmer {

namespace {
constexpr int leastQuality = 1;
constexpr int bestQuality = 100;
constexpr int tickDistance = 10;
constexpr std::string_view qualityKey = "tbCompressionQ";
}  // namespace

int jpegQuality() {
    return settings().readInteger(settingsSection(group::jpegSettings), qualityKey, EncodeOptions::defaultJpegQuality,
                                  leastQuality, bestQuality);
}

void setJpegQuality(int quality) {
    settings().writeInteger(settingsSection(group::jpegSettings), qualityKey,
                            std::clamp(quality, leastQuality, bestQuality));
}

TJPEGSettings::TJPEGSettings(wxWindow* parent) : ModalDialog(parent, wxID_ANY, "JPEG Settings") {
    SetName("JPEGSettings");
    const int gap = FromDIP(12);
    auto* label = new wxStaticText(this, wxID_ANY, "Set JPEG compression Quality:");
    slider_ = new wxSlider(this, wxID_ANY, jpegQuality(), leastQuality, bestQuality, wxDefaultPosition,
                           FromDIP(wxSize(280, -1)), wxSL_HORIZONTAL | wxSL_AUTOTICKS);
    slider_->SetName("tbCompressionQ");
    slider_->SetTickFreq(tickDistance);
    slider_->SetPageSize(tickDistance);
    edit_ = new wxTextCtrl(this, wxID_ANY, wxString::Format("%d", jpegQuality()), wxDefaultPosition,
                           FromDIP(wxSize(48, -1)), wxTE_RIGHT, wxTextValidator(wxFILTER_DIGITS));
    edit_->SetName("edtCompressionQ");
    edit_->SetMaxLength(3);
    setAccessibleName(*edit_, "JPEG compression quality");
    slider_->Bind(wxEVT_SLIDER, [this](wxCommandEvent&) { sliderMoved(); });
    edit_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { textChanged(); });
    Bind(
        wxEVT_BUTTON,
        [this](wxCommandEvent& event) {
            setJpegQuality(quality());
            event.Skip();
        },
        wxID_OK);

    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(slider_, 1, wxALIGN_CENTRE_VERTICAL);
    row->Add(edit_, 0, wxALIGN_CENTRE_VERTICAL | wxLEFT, gap);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(label, 0, wxLEFT | wxRIGHT | wxTOP, gap);
    sizer->Add(row, 0, wxEXPAND | wxALL, gap);
    sizer->Add(newOkAndCancel(), 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, gap);
    SetSizerAndFit(sizer);
    CentreOnParent();
}

int TJPEGSettings::quality() const { return slider_->GetValue(); }

void TJPEGSettings::sliderMoved() { edit_->ChangeValue(wxString::Format("%d", slider_->GetValue())); }

/// A number outside the range, or none while the user types, leaves the slider at the nearest quality.
void TJPEGSettings::textChanged() {
    long number = 0;
    if (edit_->GetValue().ToLong(&number))
        slider_->SetValue(static_cast<int>(std::clamp<long>(number, leastQuality, bestQuality)));
}

}  // namespace glimmer
