#pragma once

#include "common/modal_dialog.h"

class wxSlider;
class wxTextCtrl;

namespace glimmer {

/// JPEG quality as the user set it last, 1 to 100.
int jpegQuality();
void setJpegQuality(int quality);

/// Asks for the JPEG quality; the answer OK keeps it.
class TJPEGSettings : public ModalDialog {
public:
    explicit TJPEGSettings(wxWindow* parent);
    [[nodiscard]] int quality() const;

private:
    void sliderMoved();
    void textChanged();

    wxSlider* slider_;
    wxTextCtrl* edit_;
};

}  // namespace glimmer
