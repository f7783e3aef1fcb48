#include "settings/form_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/clrpicker.h>
#include <wx/combobox.h>
#include <wx/frame.h>
#include <wx/msw/wrapwin.h>
#include <wx/panel.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

#include "settings/hot_key.h"
#include "settings/hot_key_control.h"
#include "settings/settings.h"
#include "settings/settings_path.h"
#include "support/windows/forms.h"

namespace glimmer {
namespace {

using testing::UnorderedElementsAre;

const wxString choices[] = {"one", "two", "three"};

/// A form with one control of each class, some of them inside a panel.
class Form : public wxFrame {
public:
    Form() : wxFrame(nullptr, wxID_ANY, "Form", wxPoint(40, 50), wxSize(400, 300)) {
        SetName("TestForm");
        auto* panel = new wxPanel(this);
        auto* column = new wxBoxSizer(wxVERTICAL);
        const auto add = [&](wxWindow* control, const char* name) {
            control->SetName(name);
            column->Add(control);
        };
        add(spin = new wxSpinCtrl(panel, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS, 1, 11,
                                  3),
            "spnWidth");
        add(slider = new wxSlider(panel, wxID_ANY, 40, 0, 100), "spnOpacity");
        add(check = new wxCheckBox(panel, wxID_ANY, "check"), "chkShow");
        add(first = new wxRadioButton(panel, wxID_ANY, "first", wxDefaultPosition, wxDefaultSize, wxRB_GROUP),
            "radFirst");
        add(second = new wxRadioButton(panel, wxID_ANY, "second"), "radSecond");
        add(choice = new wxChoice(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, 3, choices), "cmbChoice");
        add(combo = new wxComboBox(panel, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 3, choices),
            "cmbCombo");
        add(colour = new wxColourPickerCtrl(panel, wxID_ANY, *wxRED), "clrInk");
        add(hotKey = new THotKey(panel, wxID_ANY, hotKeyCtrl | 'D'), "hotContinue");
        add(new wxTextCtrl(panel, wxID_ANY, "text"), "edtText");
        column->Add(new wxCheckBox(panel, wxID_ANY, "nameless"));
        panel->SetSizer(column);
    }
    wxSpinCtrl* spin;
    wxSlider* slider;
    wxCheckBox* check;
    wxRadioButton* first;
    wxRadioButton* second;
    wxChoice* choice;
    wxComboBox* combo;
    wxColourPickerCtrl* colour;
    THotKey* hotKey;
};

/// As the system does it between two monitors: right of a border of this test's own everything is half as large again,
/// and a window that comes there gets another size on the way.
class FormBetweenMonitors : public wxFrame {
public:
    FormBetweenMonitors() : wxFrame(nullptr, wxID_ANY, "Form", wxPoint(40, 50), wxSize(300, 200)) {}
    WXLRESULT MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) override {
        const WXLRESULT result = wxFrame::MSWWindowProc(message, wParam, lParam);
        const bool there = message == WM_WINDOWPOSCHANGED && GetRect().x + GetRect().width / 2 > 600;
        if (there != there_ && message == WM_WINDOWPOSCHANGED) {
            there_ = there;
            const wxSize size = GetSize();
            SetSize(there ? size * 3 / 2 : size * 2 / 3);
        }
        return result;
    }

private:
    bool there_ = false;
};

constexpr const char* section = "\\Software\\Glimmerpad for Firefox\\TestForm";

class FormStore : public testing::Test {
protected:
    void SetUp() override { setSettingsPath(""); }
    void TearDown() override {
        form_->Destroy();
        test::pump();
    }
    Form* form_ = new Form;
};

TEST_F(FormStore, ControlsOfEveryClassComeBack) {
    form_->spin->SetValue(7);
    form_->slider->SetValue(55);
    form_->check->SetValue(true);
    form_->second->SetValue(true);
    form_->choice->SetSelection(2);
    form_->combo->SetSelection(1);
    form_->colour->SetColour(wxColour(1, 2, 3));
    form_->hotKey->setHotKey(hotKeyShift | 0x2C);
    saveForm(*form_);
    EXPECT_THAT(
        settings().readKeys(section),
        UnorderedElementsAre("spnWidth", "spnOpacity", "chkShow", "radFirst", "radSecond", "cmbChoice", "cmbCombo",
                             "clrInk", "hotContinue", "isMaximized", "Left", "Top", "Width", "Height"));
    EXPECT_EQ(settings().readInteger(section, "clrInk", 0), 0x030201);

    form_->Destroy();
    form_ = new Form;
    restoreForm(*form_);
    EXPECT_EQ(form_->spin->GetValue(), 7);
    EXPECT_EQ(form_->slider->GetValue(), 55);
    EXPECT_TRUE(form_->check->GetValue());
    EXPECT_TRUE(form_->second->GetValue());
    EXPECT_FALSE(form_->first->GetValue());
    EXPECT_EQ(form_->choice->GetSelection(), 2);
    EXPECT_EQ(form_->combo->GetSelection(), 1);
    EXPECT_EQ(form_->colour->GetColour(), wxColour(1, 2, 3));
    EXPECT_EQ(form_->hotKey->hotKey(), hotKeyShift | 0x2C);
}

TEST_F(FormStore, AMaximisedWindowKeepsItsNormalBounds) {
    form_->Show();
    test::pump();
    const wxRect normal = form_->GetRect();
    form_->Maximize();
    ASSERT_TRUE(test::pumpUntil([this] { return form_->IsMaximized(); }));
    saveForm(*form_);
    form_->Destroy();
    form_ = new Form;
    form_->SetSize(0, 0, 300, 200);
    restoreForm(*form_);
    form_->Show();
    ASSERT_TRUE(test::pumpUntil([this] { return form_->IsMaximized(); }));
    form_->Restore();
    ASSERT_TRUE(test::pumpUntil([this] { return !form_->IsMaximized(); }));
    EXPECT_EQ(form_->GetRect(), normal);
}

TEST_F(FormStore, AWindowOnTheOtherMonitorDoesNotGrowFromStartToStart) {
    for (const wxRect stored : {wxRect(640, 80, 420, 300), wxRect(400, 80, 420, 300)}) {
        saveGeometry(settings(), section, {{stored.x, stored.y, stored.GetRight() + 1, stored.GetBottom() + 1}}, true);
        auto* form = new FormBetweenMonitors;
        restoreGeometry(settings(), section, *form);
        EXPECT_EQ(form->GetRect(), stored);
        form->Destroy();
    }
}

TEST_F(FormStore, TheHotKeyBoxTakesWhatIsPressed) {
    int changes = 0;
    form_->hotKey->Bind(wxEVT_TEXT, [&changes](wxCommandEvent&) { ++changes; });
    ASSERT_TRUE(test::bringForward(*form_, form_->hotKey));
    test::pressKey('K', hotKeyCtrl | hotKeyShift);
    EXPECT_EQ(form_->hotKey->hotKey(), hotKeyCtrl | hotKeyShift | 'K');
    EXPECT_EQ(form_->hotKey->GetValue(), "Ctrl+Shift+K");
    test::pressKey(0x77, hotKeyAlt);  // Alt+F8 must not open a menu
    EXPECT_EQ(form_->hotKey->hotKey(), hotKeyAlt | 0x77);
    test::pressKey('A', hotKeyShift);  // no program could write this letter any more
    EXPECT_EQ(form_->hotKey->hotKey(), hotKeyAlt | 0x77);
    test::pressKey(0x2E);
    EXPECT_EQ(form_->hotKey->hotKey(), 0);
    EXPECT_EQ(form_->hotKey->GetValue(), "None");
    EXPECT_EQ(changes, 3);
}

}  // namespace
}  // namespace glimmer
