#pragma once

#include "capture/capture_options.h"
#include "common/modal_dialog.h"

class wxCheckBox;
class wxRadioButton;
class wxSpinCtrl;

namespace glimmer {

/// The form for the options of captures that a host delivers. OK stores them.
class TIECaptureOptions : public ModalDialog {
public:
    explicit TIECaptureOptions(wxWindow* parent);

    /// What the controls show.
    [[nodiscard]] CaptureOptions shown() const;

private:
    void show(const CaptureOptions& options);
    void enableSizes();
    void btnOKClick();

    wxCheckBox* chkPlaySound_;
    wxCheckBox* chkPerformUpdateCheck_;
    wxRadioButton* radPercent_;
    wxSpinCtrl* spnPercent_;
    wxRadioButton* radFixedWidth_;
    wxSpinCtrl* spnFixedWidth_;
};

}  // namespace glimmer
