#pragma once

#include <wx/scrolwin.h>

#include <memory>

namespace glimmer {

class AnnotationPanels;
class EditingForm;
class PensPanel;

/// The panels beside the canvas: in annotation mode the settings of the selected annotation, which the next one
/// receives too; in free-drawing mode the pens; in capture mode its two buttons. These are sixty windows, and the
/// picture need not wait for them: the panels come up empty, in their width, and are filled when there is time.
class PropertyPanels : public wxScrolledWindow {
public:
    PropertyPanels(EditingForm& form, wxWindow* parent);
    ~PropertyPanels() override;

    /// Makes the controls, the first time; showState() does nothing before.
    void fill();
    /// Brings every control to what the controller says.
    void showState();

private:
    wxPanel* makeCapturing();

    EditingForm& form_;
    AnnotationPanels* annotation_ = nullptr;
    std::unique_ptr<PensPanel> pens_;
    wxPanel* pnlCapturing_ = nullptr;
};

}  // namespace glimmer
