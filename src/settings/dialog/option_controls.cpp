#include "settings/dialog/option_controls.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/clrpicker.h>
#include <wx/combobox.h>
#include <wx/dcmemory.h>
#include <wx/fontenum.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

#include "common/accessible_name.h"
#include "common/wx_text.h"
#include "settings/hot_key_control.h"

namespace glimmer {

namespace {

// Device-independent pixels.
constexpr int numberWidth = 76;
constexpr int choiceWidth = 170;
const wxSize colourSize(numberWidth, 22);
const wxSize swatchSize(56, 10);

wxArrayString fontNames() {
    wxArrayString names = wxFontEnumerator::GetFacenames();
    names.Sort();
    // Faces that stand upright; the others are the same ones turned for vertical text.
    for (size_t i = names.size(); i-- > 0;)
        if (names[i].StartsWith("@")) names.RemoveAt(i);
    return names;
}

/// A number's box. What is no number leaves it at the value that it held before.
class NumberBox : public wxSpinCtrl {
public:
    NumberBox(wxWindow* parent, const Option& option)
        : wxSpinCtrl(parent, wxID_ANY, wxString(), wxDefaultPosition, parent->FromDIP(wxSize(numberWidth, -1)),
                     wxSP_ARROW_KEYS, option.least, option.most, option.standard),
          held_(option.standard) {}
    using wxSpinCtrl::SetValue;
    void SetValue(int value) override {
        held_ = value;
        wxSpinCtrl::SetValue(value);
    }
    int GetValue() const override {
        long number = 0;
        return GetTextValue().ToLong(&number) ? wxSpinCtrl::GetValue() : held_;
    }

private:
    int held_;
};

/// The button of a colour box. The toolkit's own swatch grows with the square of the screen's density and covers the
/// mark of the focus.
class ColourButton : public wxColourPickerWidget {
public:
    explicit ColourButton(wxWindow* parent) { Create(parent, wxID_ANY); }

protected:
    void UpdateColour() override {
        wxBitmap swatch(swatchSize);
        wxMemoryDC dc(swatch);
        dc.SetBackground(GetColour());
        dc.Clear();
        dc.SelectObject(wxNullBitmap);
        SetBitmapLabel(swatch);
    }
};

class ColourBox : public wxColourPickerCtrl {
public:
    ColourBox(wxWindow* parent, const wxString& name) {
        CreateBase(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator,
                   wxColourPickerCtrlNameStr);
        auto* button = new ColourButton(this);
        setAccessibleName(*button, name);
        SetPickerCtrl(button);
        PostCreation();
        button->Bind(wxEVT_COLOURPICKER_CHANGED, &ColourBox::OnColourChange, this);
        SetInitialSize(FromDIP(colourSize));
    }
};

wxWindow* makeText(wxWindow* parent, const Option& option) {
    const wxSize ofFont = parent->FromDIP(wxSize(choiceWidth, -1));
    if (option.control == "cmbAnnotationCtlFont")
        return new wxComboBox(parent, wxID_ANY, wxString(), wxDefaultPosition, ofFont, fontNames());
    const bool isFont = option.control == "edtFontName";
    auto* edit = new wxTextCtrl(parent, wxID_ANY, wxString(), wxDefaultPosition, isFont ? ofFont : wxDefaultSize);
    if (isFont) edit->AutoComplete(fontNames());
    return edit;
}

}  // namespace

wxWindow* makeOptionControl(wxWindow* parent, const Option& option, const wxString& caption, long style) {
    const wxSize choice = parent->FromDIP(wxSize(choiceWidth, -1));
    switch (option.kind) {
        case OptionKind::Check:
            return new wxCheckBox(parent, wxID_ANY, caption);
        case OptionKind::Radio:
            return new wxRadioButton(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, style);
        case OptionKind::Combo: {
            wxArrayString items;
            for (const std::string_view item : option.texts) items.Add(wxText(item));
            return new wxChoice(parent, wxID_ANY, wxDefaultPosition, choice, items);
        }
        case OptionKind::Spin:
            return new NumberBox(parent, option);
        case OptionKind::Colour:
            return new ColourBox(parent, wxText(option.caption));
        case OptionKind::HotKey: {
            auto* box = new THotKey(parent, wxID_ANY);
            box->SetInitialSize(choice);
            return box;
        }
        case OptionKind::Text:
            return makeText(parent, option);
    }
    return nullptr;
}

}  // namespace glimmer
