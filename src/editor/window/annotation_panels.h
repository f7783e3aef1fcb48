#pragma once

#include <wx/panel.h>

#include <array>
#include <utility>
#include <vector>

#include "editor/annotations/styles.h"
#include "editor/annotations/uShapes.h"
#include "editor/document/gesture.h"

class wxCheckBox;
class wxChoice;
class wxSlider;
class wxStaticText;

namespace glimmer {

class ColourSwatch;
class EditingForm;
class ToolButton;

/// The panels of annotation mode: the settings of the selected annotation, which the next one receives too.
class AnnotationPanels : public wxPanel {
public:
    AnnotationPanels(EditingForm& form, wxWindow* parent);

    /// Brings every control to what the controller says.
    void showState();

private:
    using ColourOf = Colour& (*)(TShapeStyle&);

    wxPanel* makeStyle();
    wxPanel* makeShape();
    wxPanel* makeText();
    wxSizer* makeFont(wxWindow* panel);
    wxSizer* makeLooks(wxWindow* panel);
    wxPanel* makeLine();
    wxPanel* makeNumber();
    wxPanel* makeDelete();
    wxCheckBox* showBox(wxWindow* parent, const char* name, const wxString& caption, Part part);
    wxSizer* swatches(wxWindow* parent, std::initializer_list<std::tuple<const char*, const char*, ColourOf>> named);
    ToolButton* lineEndButton(wxWindow* parent, bool front);
    wxSlider* slider(wxWindow* parent, const char* name, int low, int high, const wxString& hint,
                     std::function<void(TShapeStyle&, int)> set);
    void change(const std::function<void(TShapeStyle&)>& setting);
    void chkShowObjectClick(Part part);
    void lblStyleClick();
    void lblFontNameClick();
    void showSettings(TShapeStyle settings);

    EditingForm& form_;
    std::array<wxCheckBox*, partCount> shows_{};
    std::vector<std::pair<ColourSwatch*, ColourOf>> swatches_;
    std::vector<std::pair<ToolButton*, bool TTextSettings::*>> looks_;
    std::vector<ToolButton*> kinds_;       ///< in the order of their tags
    std::vector<ToolButton*> alignments_;  ///< left, centre, right
    ToolButton* lineFront_ = nullptr;
    ToolButton* lineBack_ = nullptr;
    ToolButton* delete_ = nullptr;
    std::vector<ToolButton*> copies_;  ///< copy and cut
    wxStaticText* lblStyle_ = nullptr;
    wxStaticText* lblFontName_ = nullptr;
    wxChoice* cmbFontSize_ = nullptr;
    wxSlider* spnShapeOpacity_ = nullptr;
    wxSlider* spnLineWidth_ = nullptr;
    Gesture slide_;  ///< the thumb of a slider is held
};

}  // namespace glimmer
