#include "settings/dialog/options_dialog.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/listbox.h>
#include <wx/msw/wrapwin.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <oleacc.h>
#include <set>

#include "settings/dialog/option_help.h"
#include "settings/dialog/run_at_startup.h"
#include "settings/form_store.h"
#include "settings/hot_key.h"
#include "settings/settings.h"
#include "settings/settings_path.h"
#include "support/recorded_messages.h"
#include "support/windows/forms.h"
#include "support/windows/own_registry.h"

namespace glimmer {
namespace {

/// What a screen reader is told by a window itself.
std::string accessibleName(HWND window) {
    IAccessible* object = nullptr;
    if (FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                          reinterpret_cast<void**>(&object))))
        return {};
    VARIANT self{};
    self.vt = VT_I4;
    BSTR name = nullptr;
    object->get_accName(self, &name);
    std::string text = name == nullptr ? std::string() : wxString(name).utf8_string();
    SysFreeString(name);
    object->Release();
    return text;
}

/// Fails for every control of the window that the Tab key reaches and that has no name. A button tells its own; for
/// the others the system takes the text that stands just before them.
void expectNames(HWND parent, const std::string& page, std::set<std::string>& names) {
    HWND before = nullptr;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (IsWindowVisible(child) == FALSE) continue;
        wchar_t name[40];
        GetClassNameW(child, name, 40);
        const std::wstring type = name;
        const bool stops = (GetWindowLongW(child, GWL_STYLE) & WS_TABSTOP) != 0;
        if (stops && type == L"Button") {
            EXPECT_FALSE(accessibleName(child).empty()) << page;
            names.insert(accessibleName(child));
        } else if (stops && (type == L"Edit" || type == L"ComboBox" || type == L"ListBox")) {
            wchar_t text[80] = L"";
            GetClassNameW(before, name, 40);
            GetWindowTextW(before, text, 80);
            EXPECT_TRUE(std::wstring(name) == L"Static" && *text != 0) << page << " after " << wxString(text);
        }
        if (type != L"ComboBox") expectNames(child, page, names);
        before = child;
    }
}

/// Remembers what it is asked, and refuses on demand.
class FakeAssociations : public FileAssociations {
public:
    Status associate(std::string_view extension, bool on) override {
        if (refuse) return Failure{"No right to do that."};
        asked.push_back(std::string(extension) + (on ? "+" : "-"));
        return {};
    }
    bool refuse = false;
    std::vector<std::string> asked;
};

class OptionsDialog : public testing::Test {
protected:
    void SetUp() override {
        setSettingsPath("");
        OptionsHolder() = Options();
        services_.associations = associations_;
        services_.program = "C:\\Program Files\\Glimmerpad\\glimmerpad.exe";
        open();
    }
    void TearDown() override {
        dialog_->Destroy();
        test::pump();
    }
    void open() {
        if (dialog_ != nullptr) dialog_->Destroy();
        dialog_ = new TVistraneOptions(nullptr, services_);
        dialog_->Show();
        test::pump();
    }
    template <class Control>
    Control* control(const std::string& name) {
        return test::find<Control>(*dialog_, name);
    }
    wxWindow* applyButton() { return dialog_->FindWindow(wxID_APPLY); }
    void apply() {
        ASSERT_TRUE(applyButton()->IsEnabled());
        test::click(*applyButton());
    }

    const test::OwnRegistry registry_;  // "run at startup" stands there
    test::RecordedMessages boxes_;
    std::shared_ptr<FakeAssociations> associations_ = std::make_shared<FakeAssociations>();
    OptionsServices services_;
    TVistraneOptions* dialog_ = nullptr;
};

TEST_F(OptionsDialog, HasAControlForEveryOptionOfItsPages) {
    auto* pages = control<wxListBox>("lstPages");
    std::set<std::string> listed;
    for (unsigned i = 0; i < pages->GetCount(); ++i) listed.insert(pages->GetString(i).utf8_string());
    for (const Option& option : optionTable()) {
        const std::string name(option.control);
        if (option.page.empty()) {
            EXPECT_EQ(dialog_->FindWindow(wxString::FromUTF8(name)), nullptr) << name;
            continue;
        }
        EXPECT_FALSE(optionHelp(option.page).empty()) << option.page;
        EXPECT_TRUE(listed.count(std::string(option.page))) << name;
        wxWindow* window = test::findControl(*dialog_, name);
        ASSERT_NE(window, nullptr);
        EXPECT_FALSE(optionHelp(name).empty()) << name;
        // On the page that the table says.
        wxWindow* parent = window->GetParent();
        while (parent != nullptr && listed.count(parent->GetName().utf8_string()) == 0) parent = parent->GetParent();
        ASSERT_NE(parent, nullptr) << name;
        EXPECT_EQ(parent->GetName().utf8_string(), option.page) << name;
        if (option.kind == OptionKind::Text) continue;
        const std::unique_ptr<FormControl> state = formControl(window);
        ASSERT_TRUE(state) << name;
        EXPECT_EQ(state->value(), option.standard) << name;
        if (option.kind == OptionKind::Spin) {
            EXPECT_EQ(state->least(), option.least) << name;
            EXPECT_EQ(state->most(), option.most) << name;
        }
    }
    EXPECT_EQ(control<wxTextCtrl>("edtFilenameTemplate")->GetValue(), "ZK Screen Capture #%n");
    EXPECT_EQ(control<wxChoice>("cmbAnnotationPlacement")->GetString(0), "Top Left ");
    EXPECT_FALSE(applyButton()->IsEnabled());
}

TEST_F(OptionsDialog, ApplyMakesTheShownValuesCurrent) {
    dialog_->showPage("Capturing");
    test::click(*control<wxCheckBox>("chkAddURL"));
    control<wxTextCtrl>("edtFilenameTemplate")->SetValue("%t");
    dialog_->showPage("Watermarking");
    test::click(*control<wxCheckBox>("chkWMDisplay"));
    test::click(*control<wxRadioButton>("radWMFromBitmap"));
    EXPECT_TRUE(control<wxSpinCtrl>("spnWMBitmapOpacity")->IsEnabled());
    EXPECT_FALSE(control<wxTextCtrl>("edtWMText")->IsEnabled());
    EXPECT_FALSE(OptionsHolder().on("chkAddURL"));
    int told = 0;
    const OptionsListener listener([&told] { ++told; });
    apply();
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(OptionsHolder().on("chkAddURL"));
    EXPECT_EQ(OptionsHolder().text("edtFilenameTemplate"), "%t");
    EXPECT_TRUE(OptionsHolder().on("radWMFromBitmap"));
    EXPECT_FALSE(OptionsHolder().on("radWMFromText"));
    EXPECT_FALSE(applyButton()->IsEnabled());
    EXPECT_TRUE(settings().readBool(settingsSection(group::general), "chkAddURL", false));
    open();
    EXPECT_TRUE(control<wxCheckBox>("chkAddURL")->GetValue());
    EXPECT_TRUE(control<wxRadioButton>("radWMFromBitmap")->GetValue());
}

TEST_F(OptionsDialog, KeepsWhatChangedBehindIt) {
    dialog_->showPage("Capturing");
    test::click(*control<wxCheckBox>("chkAddURL"));
    OptionsHolder().setNumber("spnNextNum", 17);  // a host's timer delivered a capture
    apply();
    EXPECT_TRUE(OptionsHolder().on("chkAddURL"));
    EXPECT_EQ(OptionsHolder().number("spnNextNum"), 17);
    EXPECT_EQ(control<wxSpinCtrl>("spnNextNum")->GetValue(), 17);
}

TEST_F(OptionsDialog, TakesWhatIsTypedAsANumberInItsRange) {
    dialog_->showPage("General");
    test::click(*control<wxCheckBox>("chkFolderCleanup"));
    auto* days = control<wxSpinCtrl>("spnFolderCleanupMax");
    HWND edit = days->MSWGetFocusHWND();
    const struct {
        const wchar_t* typed;
        int value;
    } cases[] = {{L"12", 12}, {L"", 12}, {L"99999", 32767}, {L"soon", 32767}, {L"-3", 0}, {L"7", 7}, {L" ", 7}};
    for (const auto& typed : cases) {
        days->SetFocus();
        SetWindowTextW(edit, typed.typed);  // sends the edit's own notification, as typing and pasting do
        EXPECT_EQ(days->GetValue(), typed.value) << wxString(typed.typed);
        control<wxListBox>("lstPages")->SetFocus();
        EXPECT_EQ(days->GetTextValue(), wxString::Format("%d", typed.value)) << wxString(typed.typed);
    }
    apply();
    EXPECT_EQ(OptionsHolder().number("spnFolderCleanupMax"), 7);
}

TEST_F(OptionsDialog, CancelChangesNothing) {
    const Options before = OptionsHolder();
    const test::NextModal answer([this](wxDialog&) {
        dialog_->showPage("Display");
        test::click(*control<wxCheckBox>("chkDisplayShadows"));
        test::click(*dialog_->FindWindow(wxID_CANCEL));
    });
    dialog_->Hide();
    EXPECT_EQ(dialog_->ShowModal(), wxID_CANCEL);
    EXPECT_EQ(OptionsHolder(), before);
}

TEST_F(OptionsDialog, TellsTheSystemWhatChanged) {
    dialog_->showPage("Associations");
    test::click(*control<wxCheckBox>("chkJPEGAssociation"));
    test::click(*control<wxCheckBox>("chkGMPAssociation"));
    dialog_->showPage("General");
    test::click(*control<wxCheckBox>("chkRunAtStartup"));
    apply();
    EXPECT_EQ(associations_->asked, (std::vector<std::string>{".jpg+", ".jpeg+", ".gmp-"}));
    EXPECT_TRUE(runsAtStartup());
    // The user may switch it off in the system's own list, which keeps the entry.
    const BYTE off[12] = {3};
    const wchar_t* approved = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, approved, L"Glimmerpad", REG_BINARY, off, sizeof off), ERROR_SUCCESS);
    EXPECT_FALSE(runsAtStartup());
    ASSERT_TRUE(setRunAtStartup(true, services_.program).ok());
    EXPECT_TRUE(runsAtStartup());
    test::click(*control<wxCheckBox>("chkRunAtStartup"));
    apply();
    EXPECT_FALSE(runsAtStartup());
    // Another program may write and remove the entry too.
    ASSERT_TRUE(setRunAtStartup(true, "C:\\x.exe").ok());
    open();
    EXPECT_TRUE(control<wxCheckBox>("chkRunAtStartup")->GetValue());
    EXPECT_FALSE(applyButton()->IsEnabled());

    associations_->refuse = true;
    dialog_->showPage("Associations");
    test::click(*control<wxCheckBox>("chkPNGAssociation"));
    apply();
    ASSERT_EQ(boxes_.messages.size(), 1U);
    EXPECT_EQ(boxes_.messages[0].text, "No right to do that.");
    EXPECT_FALSE(control<wxCheckBox>("chkPNGAssociation")->GetValue());
    EXPECT_FALSE(OptionsHolder().on("chkPNGAssociation"));
}

TEST_F(OptionsDialog, RefusesOneHotKeyForTwoCommands) {
    formControl(control<wxWindow>("hotSilentCapture"))->setValue(hotKeyCtrl | 'D');
    dialog_->showPage("Hotkeys");
    apply();
    ASSERT_EQ(boxes_.messages.size(), 1U);
    EXPECT_NE(boxes_.messages[0].text.find("Ctrl+D"), std::string::npos);
    EXPECT_NE(OptionsHolder().number("hotSilentCapture"), hotKeyCtrl | 'D');
}

TEST_F(OptionsDialog, RefusesAWorkingFolderThatLiesAnywhere) {
    auto* folder = control<wxTextCtrl>("edtWorkingFolderPath");
    for (const char* path : {"captures", "\\captures", "..\\captures"}) {
        boxes_.messages.clear();
        folder->SetValue(path);
        apply();
        EXPECT_EQ(boxes_.messages.size(), 1U) << path;
        EXPECT_EQ(OptionsHolder().text("edtWorkingFolderPath"), "") << path;
    }
    for (const char* path : {"C:\\captures", "\\\\server\\share\\captures"}) {
        folder->SetValue(path);
        apply();
        EXPECT_EQ(OptionsHolder().text("edtWorkingFolderPath"), path);
    }
    EXPECT_EQ(boxes_.messages.size(), 1U);
}

TEST_F(OptionsDialog, AnswersAreAskedForAgain) {
    OptionsHolder().setNumber("cmbConfirmExit", 2);
    OptionsHolder().setNumber("cmbShowWelcomeMessage", 1);
    OptionsHolder().setNumber("cmbHideBeforeNavigation", 2);  // has no control
    open();
    dialog_->showPage("Confirmations");
    test::click(*control<wxButton>("btnAskAgain"));
    apply();
    EXPECT_EQ(OptionsHolder().number("cmbConfirmExit"), 0);
    EXPECT_EQ(OptionsHolder().number("cmbShowWelcomeMessage"), 0);
    EXPECT_EQ(OptionsHolder().number("cmbHideBeforeNavigation"), 0);
}

TEST_F(OptionsDialog, CanBeUsedWithTheKeyboard) {
    dialog_->showPage("Display");
    ASSERT_TRUE(test::bringForward(*dialog_, control<wxListBox>("lstPages")));
    test::pressKey(0x09);
    EXPECT_TRUE(control<wxCheckBox>("chkDisplayAnnotations")->HasFocus());
    EXPECT_EQ(control<wxStaticText>("lblHelp")->GetLabelText(), "New objects show their text.");
    test::pressKey(0x20);
    EXPECT_FALSE(control<wxCheckBox>("chkDisplayAnnotations")->GetValue());
    // Access keys differ within each page.
    std::set<std::pair<wxWindow*, wxChar>> used;
    const std::function<void(wxWindow&, wxWindow&)> look = [&](wxWindow& page, wxWindow& parent) {
        for (wxWindow* child : parent.GetChildren()) {
            const wxString label = child->GetLabel();
            const int at = label.Find('&');
            if (at != wxNOT_FOUND && label[static_cast<size_t>(at) + 1] != '&') {
                const wxChar key = wxToupper(label[static_cast<size_t>(at) + 1]);
                EXPECT_TRUE(used.insert({&page, key}).second) << page.GetName() << " " << label;
            }
            look(page, *child);
        }
    };
    auto* pages = control<wxListBox>("lstPages");
    std::set<std::string> names;
    for (unsigned i = 0; i < pages->GetCount(); ++i) {
        wxWindow* page = dialog_->FindWindow(pages->GetString(i));
        look(*page, *page);
        dialog_->showPage(pages->GetString(i).utf8_string());
        expectNames(dialog_->GetHWND(), page->GetName().utf8_string(), names);
    }
    EXPECT_GT(used.size(), 40U);
    EXPECT_TRUE(names.count("Background") == 1 && names.count("Frame") == 1 && names.count("Selection colour") == 1);
    // They lead to the control behind the caption.
    const struct {
        const char* page;
        const char* from;
        char key;
        const char* to;
    } accesses[] = {{"General", "lstPages", 'W', "edtWorkingFolderPath"},
                    {"General", "edtWorkingFolderPath", 'D', "chkShowToolbar"},
                    {"General", "chkShowToolbar", 'F', "chkFolderCleanup"},
                    {"Confirmations", "cmbConfirmExit", 'D', "cmbDeleteCaptures"},
                    {"Watermarking", "lstPages", 'D', "chkWMDisplay"},
                    {"Annotation Control", "edtFontName", 'S', "spnAnnotationCtlFontSize"},
                    {"Annotation Control", "spnAnnotationCtlFontSize", 'P', "lstPages"}};
    for (const auto& access : accesses) {
        dialog_->showPage(access.page);
        ASSERT_TRUE(test::bringForward(*dialog_, control<wxWindow>(access.from)));
        test::pressKey(static_cast<uint8_t>(access.key), hotKeyAlt);
        EXPECT_TRUE(control<wxWindow>(access.to)->HasFocus()) << access.page << access.key;
    }
    ASSERT_TRUE(test::bringForward(*dialog_, control<wxWindow>("spnAnnotationCtlFontSize")));
    test::pressKey('A', hotKeyAlt);
    EXPECT_FALSE(OptionsHolder().on("chkDisplayAnnotations"));
    EXPECT_FALSE(applyButton()->IsEnabled());
    dialog_->showPage("Display");
    test::click(*control<wxCheckBox>("chkDisplayNumbers"));
    ASSERT_TRUE(test::bringForward(*dialog_, applyButton()));
    test::pressKey(0x20);
    EXPECT_FALSE(applyButton()->IsEnabled());
    EXPECT_TRUE(dialog_->FindWindow(wxID_OK)->HasFocus());
    // A hot key box takes them for itself.
    dialog_->showPage("Hotkeys");
    ASSERT_TRUE(test::bringForward(*dialog_, control<wxWindow>("hotSilentCapture")));
    test::pressKey('N', hotKeyAlt);
    EXPECT_TRUE(control<wxWindow>("hotSilentCapture")->HasFocus());
    EXPECT_EQ(control<wxTextCtrl>("hotSilentCapture")->GetValue(), "Alt+N");
    // Ctrl+Page Down and Ctrl+Shift+Tab turn the pages, round the end too.
    dialog_->showPage("Annotation Control");
    ASSERT_TRUE(test::bringForward(*dialog_, control<wxTextCtrl>("edtFontName")));
    test::pressKey(0x22, hotKeyCtrl);
    EXPECT_EQ(pages->GetStringSelection(), "General");
    EXPECT_TRUE(control<wxCheckBox>("chkShowToolbar")->IsShownOnScreen());
    test::pressKey(0x09, hotKeyCtrl | hotKeyShift);
    EXPECT_EQ(pages->GetStringSelection(), "Annotation Control");
}

}  // namespace
}  // namespace glimmer
