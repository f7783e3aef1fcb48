#pragma once

#include <wx/scrolwin.h>

#include <map>
#include <string>

#include "editor/document/document.h"

class wxCheckBox;
class wxChoice;
class wxSlider;
class wxStaticText;

namespace glimmer {

class ColourSwatch;
class TEditForm;
class ToolButton;

/// The panels beside the canvas: in annotation mode the settings of the selected annotation, which the next one
/// receives too; in free-drawing mode the pens; in capture mode its two buttons. These are sixty windows, and the
/// picture need not wait for them: the panels come up empty, in their width, and are filled when there is time.
class PropertyPanels : public wxScrolledWindow {
public:
    explicit PropertyPanels(TEditForm& form);

    /// Makes the controls, the first time; showState() does nothing before.
    void fill();
    /// Brings every control to what the controller says.
    void showState();

private:
    wxPanel* makePanel(const char* name, const char* title, int tag);
    wxPanel* makeStyle();
    wxPanel* makeShape();
    wxPanel* makeText();
    wxPanel* makeLine();
    wxPanel* makeNumber();
    wxPanel* makeDelete();
    wxPanel* makePens();
    wxPanel* makeCapturing();
    wxSizer* swatches(wxWindow* parent, std::initializer_list<std::pair<const char*, const char*>> named);
    wxCheckBox* showBox(wxWindow* parent, const char* name, const wxString& caption, int tag);
    ToolButton* button(wxWindow* parent, const char* name, const char* icon, const wxString& hint, int kind, int tag,
                       std::function<void()> pressed);
    ToolButton* lineEndButton(wxWindow* parent, bool front);
    wxSlider* slider(wxWindow* parent, const char* name, int low, int high, const wxString& hint,
                     std::function<void(TShapeStyle&, int)> set);

    void chkShowObjectClick(int tag);
    void showSettings(const TShapeStyle& settings);

    TEditForm& form_;
    wxPanel* annotation_ = nullptr;  ///< holds the panels of annotation mode
    wxPanel* pnlPens_ = nullptr;
    wxPanel* pnlCapturing_ = nullptr;
    std::map<std::string, ColourSwatch*> swatches_;
    std::map<std::string, ToolButton*> buttons_;
    std::map<int, wxCheckBox*> shows_;
    wxStaticText* lblStyle_ = nullptr;
    wxStaticText* lblFontName_ = nullptr;
    wxChoice* cmbFontSize_ = nullptr;
    wxChoice* cmbInkWidth_ = nullptr;
    wxSlider* spnShapeOpacity_ = nullptr;
    wxSlider* spnLineWidth_ = nullptr;
    Gesture slide_ = 0;
};

}  // namespace glimmer
