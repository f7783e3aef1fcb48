#include "settings/dialog/options_dialog.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/clrpicker.h>
#include <wx/dcbuffer.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/listbox.h>
#include <wx/msw/wrapwin.h>
#include <wx/simplebook.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <utility>

#include "common/wx_bitmap.h"
#include "common/wx_text.h"
#include "settings/dialog/option_help.h"
#include "settings/dialog/options_page.h"
#include "settings/dialog/run_at_startup.h"
#include "settings/form_store.h"
#include "settings/hot_key.h"
#include "settings/hot_key_control.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

wxString& lastPage() {
    static wxString page;
    return page;
}

/// What the system holds is what it holds, whoever changed it since.
Options currentOptions() {
    Options options = OptionsHolder();
    options.setOn("chkRunAtStartup", runsAtStartup());
    return options;
}

/// The options in which the answers of questions and notices are kept: those of their page, and those that have no
/// control.
bool isRememberedAnswer(const Option& option) {
    return option.kind == OptionKind::Combo && (option.page == "Confirmations" || option.page.empty());
}

}  // namespace

TVistraneOptions::TVistraneOptions(wxWindow* parent, OptionsServices services)
    : ModalDialog(parent, wxID_ANY, "Options", wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      services_(std::move(services)),
      applied_(currentOptions()) {
    SetName("TVistraneOptions");
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* left = new wxBoxSizer(wxVERTICAL);
    left->Add(new wxStaticText(this, wxID_ANY, "&Pages"), 0, wxBOTTOM, FromDIP(4));
    pageList_ = new wxListBox(this, wxID_ANY);
    pageList_->SetName("lstPages");
    left->Add(pageList_, 1, wxEXPAND);
    row->Add(left, 0, wxEXPAND | wxRIGHT, FromDIP(16));
    book_ = new wxSimplebook(this);
    pages_ = makeOptionsPages(book_);
    for (OptionsPage* page : pages_) {
        book_->AddPage(page, page->GetName());
        pageList_->Append(page->GetName());
    }
    auto* right = new wxBoxSizer(wxVERTICAL);
    right->Add(book_, 1, wxEXPAND);
    right->Add(new wxStaticLine(this), 0, wxEXPAND | wxTOP, FromDIP(8));
    help_ = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, FromDIP(wxSize(480, 34)), wxST_NO_AUTORESIZE);
    help_->SetName("lblHelp");
    right->Add(help_, 0, wxEXPAND | wxTOP, FromDIP(8));
    row->Add(right, 1, wxEXPAND);
    column->Add(row, 1, wxEXPAND | wxALL, FromDIP(12));
    makeButtons(*column);
    SetSizer(column);

    showValues(applied_);
    bindHandlers();
    if (services_.program.empty()) FindWindow("chkRunAtStartup")->Disable();
    column->SetSizeHints(this);
    CentreOnParent();
    if (lastPage().empty() || !showPage(lastPage().utf8_string())) showPage("General");
}

void TVistraneOptions::makeButtons(wxBoxSizer& column) {
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->AddStretchSpacer();
    auto* ok = new wxButton(this, wxID_OK, "OK");
    auto* cancel = new wxButton(this, wxID_CANCEL, "Cancel");
    applyButton_ = new wxButton(this, wxID_APPLY, "&Apply");
    for (wxButton* button : {ok, cancel, applyButton_}) buttons->Add(button, 0, wxLEFT, FromDIP(8));
    column.Add(buttons, 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(12));
    ok->SetDefault();
}

void TVistraneOptions::bindHandlers() {
    const auto changed = [this](wxCommandEvent& event) {
        event.Skip();
        valueChanged();
    };
    Bind(wxEVT_CHECKBOX, changed);
    Bind(wxEVT_RADIOBUTTON, changed);
    Bind(wxEVT_CHOICE, changed);
    Bind(wxEVT_COMBOBOX, changed);
    Bind(wxEVT_TEXT, changed);
    Bind(wxEVT_CHILD_FOCUS, [this](wxChildFocusEvent& event) {
        event.Skip();
        showHelp(event.GetWindow());
    });
    Bind(wxEVT_CHAR_HOOK, &TVistraneOptions::FormKeyDown, this);
    Bind(wxEVT_SPINCTRL, [this](wxSpinEvent& event) {
        event.Skip();
        valueChanged();
    });
    Bind(wxEVT_COLOURPICKER_CHANGED, [this](wxColourPickerEvent& event) {
        event.Skip();
        valueChanged();
    });
    pageList_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { pageChanged(); });
    applyButton_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { apply(); });
    Bind(wxEVT_BUTTON, &TVistraneOptions::okClick, this, wxID_OK);
    const std::pair<const char*, void (TVistraneOptions::*)()> buttons[] = {
        {"btnBrowseWorkingFolder", &TVistraneOptions::btnBrowseWorkingFolderClick},
        {"btnBrowseWatermark", &TVistraneOptions::btnBrowseWatermarkClick},
        {"btnAskAgain", &TVistraneOptions::btnAskAgainClick},
        {"btnKeyboardSetting", &TVistraneOptions::btnKeyboardSettingClick},
    };
    for (const auto& [name, handler] : buttons)
        FindWindow(name)->Bind(wxEVT_BUTTON, [this, handler = handler](wxCommandEvent&) { (this->*handler)(); });
}

bool TVistraneOptions::showPage(const std::string& page) {
    const int index = pageList_->FindString(wxString::FromUTF8(page));
    if (index == wxNOT_FOUND) return false;
    pageList_->SetSelection(index);
    pageChanged();
    return true;
}

void TVistraneOptions::pageChanged() {
    const int index = pageList_->GetSelection();
    if (index == wxNOT_FOUND) return;
    book_->ChangeSelection(static_cast<size_t>(index));
    lastPage() = pageList_->GetString(static_cast<unsigned>(index));
    showHelp(book_->GetCurrentPage());
    valueChanged();
}

/// Help on a control, or on the page when the control has none of its own.
void TVistraneOptions::showHelp(const wxWindow* control) {
    if (control == pageList_) control = book_->GetCurrentPage();
    for (; control != nullptr && control != this; control = control->GetParent()) {
        const std::string_view help = optionHelp(control->GetName().utf8_string());
        if (help.empty()) continue;
        help_->SetLabelText(wxText(help));
        help_->Wrap(help_->GetSize().GetWidth());
        return;
    }
}

/// Ctrl with Tab or Page Down goes to the next page, with Shift+Tab or Page Up to the one before.
void TVistraneOptions::FormKeyDown(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    const bool up = key == WXK_PAGEUP || key == WXK_NUMPAD_PAGEUP;
    const bool turns = key == WXK_TAB || up || key == WXK_PAGEDOWN || key == WXK_NUMPAD_PAGEDOWN;
    // A hot key box takes the combination for itself; Ctrl+Tab leads out of it too.
    const bool taken = key != WXK_TAB && dynamic_cast<THotKey*>(FindFocus()) != nullptr;
    if (!event.ControlDown() || event.AltDown() || !turns || taken) {
        event.Skip();
        return;
    }
    const int count = static_cast<int>(pageList_->GetCount());
    const bool back = up || (key == WXK_TAB && event.ShiftDown());
    pageList_->SetSelection((pageList_->GetSelection() + (back ? count - 1 : 1)) % count);
    if (FindFocus() != nullptr && book_->IsDescendant(FindFocus())) pageList_->SetFocus();
    pageChanged();
}

void TVistraneOptions::showValues(const Options& options) {
    showing_ = true;
    for (const Option& option : optionTable()) {
        wxWindow* window = option.page.empty() ? nullptr : FindWindow(wxText(option.control));
        if (window == nullptr) continue;
        if (option.kind == OptionKind::Text) {
            const wxString value = wxString::FromUTF8(options.text(option.control));
            dynamic_cast<wxTextEntry&>(*window).ChangeValue(value);
        } else {
            formControl(window)->setValue(options.number(option.control));
        }
    }
    showing_ = false;
    valueChanged();
}

Options TVistraneOptions::shownValues() {
    Options options = applied_;
    for (const Option& option : optionTable()) {
        wxWindow* window = option.page.empty() ? nullptr : FindWindow(wxText(option.control));
        if (window == nullptr) {
            if (askAgain_ && isRememberedAnswer(option)) options.setNumber(option.control, 0);
        } else if (option.kind == OptionKind::Text) {
            options.setText(option.control, dynamic_cast<wxTextEntry&>(*window).GetValue().utf8_string());
        } else {
            options.setNumber(option.control, formControl(window)->value());
        }
    }
    return options;
}

/// The current options with what was changed here. The others may have changed since the dialog opened: a host's
/// timer can deliver a capture meanwhile, which takes a number.
Options TVistraneOptions::wantedOptions() {
    Options options = OptionsHolder();
    const Options shown = shownValues();
    for (const Option& option : optionTable()) {
        if (shown.number(option.control) != applied_.number(option.control))
            options.setNumber(option.control, shown.number(option.control));
        if (shown.text(option.control) != applied_.text(option.control))
            options.setText(option.control, shown.text(option.control));
    }
    return options;
}

void TVistraneOptions::valueChanged() {
    if (showing_) return;
    const Options options = shownValues();
    const auto enable = [this](bool on, std::initializer_list<const char*> controls) {
        for (const char* control : controls) FindWindow(control)->Enable(on);
    };
    enable(options.on("chkFolderCleanup"), {"spnFolderCleanupMax"});
    enable(options.on("chkPadNumber"), {"spnNumberPadding"});
    const bool watermark = options.on("chkWMDisplay");
    const bool fromText = options.on("radWMFromText");
    enable(watermark, {"radWMFromText", "radWMFromBitmap", "cmbWMPosition", "spnWMMargins"});
    enable(watermark && fromText, {"edtWMText", "cmbWMTextAlignment", "clrWMBackground", "spnWMBackgroundOpacity",
                                   "clrWMFrame", "spnWMFrameWidth"});
    enable(watermark && !fromText, {"edtWMBitmapFile", "btnBrowseWatermark", "spnWMBitmapOpacity"});
    const int32_t intensity = options.number("spnBlurIntensity");
    FindWindow("lblBlurRadius")
        ->SetLabel(wxString::Format("This is a radius of %d.%d pixels.", intensity / 10, intensity % 10));
    applyButton_->Enable(!(options == applied_));
    updatePreview();
    tellHotKeyTrouble(options);
}

/// Below the hot keys: which of them will not work, and why.
void TVistraneOptions::tellHotKeyTrouble(const Options& options) {
    wxWindow* text = FindWindow("lblHotKeyTrouble");
    if (!text->IsShownOnScreen() && text->GetLabel().empty() && book_->GetCurrentPage() != text->GetParent()) return;
    wxString trouble;
    bool kept = false;
    for (const Option& option : optionTable()) {
        if (option.kind != OptionKind::HotKey) continue;
        const int32_t hotKey = options.number(option.control);
        const std::string why = services_.hotKeyTrouble ? services_.hotKeyTrouble(option.control, hotKey) : "";
        if (!why.empty()) trouble += (trouble.empty() ? "" : "\n") + wxText(why);
        kept = kept || (services_.keptBySystem && services_.keptBySystem(hotKey));
    }
    if (text->GetLabel() != trouble) text->SetLabel(trouble);
    FindWindow("btnKeyboardSetting")->Show(kept);
}

void TVistraneOptions::btnKeyboardSettingClick() {
    if (services_.openKeptSetting) services_.openKeptSetting();
}

void TVistraneOptions::updatePreview() {
    wxWindow* panel = FindWindow("pnlWMPreview");
    if (!services_.watermarkPreview || !panel->IsShownOnScreen()) return;
    panel->Refresh();
    if (panel->GetBackgroundStyle() == wxBG_STYLE_PAINT) return;
    panel->SetBackgroundStyle(wxBG_STYLE_PAINT);
    panel->Bind(wxEVT_PAINT, [this, panel](wxPaintEvent&) {
        wxAutoBufferedPaintDC dc(panel);
        const wxSize size = panel->GetClientSize();
        Result<TBitmap> picture = services_.watermarkPreview(shownValues(), {size.x, size.y});
        if (picture) {
            dc.DrawBitmap(wxBitmapOf(*picture), 0, 0);
        } else {
            dc.SetBackground(panel->GetBackgroundColour());
            dc.Clear();
            dc.SetFont(panel->GetFont());
            RECT area{0, 0, size.x, size.y};
            SetBkMode(dc.GetHDC(), TRANSPARENT);
            DrawTextW(dc.GetHDC(), wxText(picture.message()).wc_str(), -1, &area, DT_WORDBREAK | DT_NOPREFIX);
        }
    });
}

bool TVistraneOptions::refuse(std::string_view page, std::string_view control, const std::string& why) {
    showPage(std::string(page));
    showError(why);
    FindWindow(wxText(control))->SetFocus();
    // The message took the mark of the default button away.
    dynamic_cast<wxButton&>(*FindWindow(wxID_OK)).SetDefault();
    return false;
}

/// Where a path without a drive leads depends on the folder that the program happens to be in.
bool TVistraneOptions::folderIsComplete(const Options& options) {
    const wxString folder = wxText(options.text("edtWorkingFolderPath"));
    if (folder.empty() || wxFileName::DirName(folder).IsAbsolute()) return true;
    return refuse("General", "edtWorkingFolderPath", "The working folder needs its full path,\nsuch as C:\\Captures.");
}

bool TVistraneOptions::hotKeysDiffer(const Options& options) {
    std::vector<const Option*> keys;
    for (const Option& option : optionTable()) {
        if (option.kind != OptionKind::HotKey || options.number(option.control) == 0) continue;
        for (const Option* other : keys) {
            if (options.number(other->control) != options.number(option.control)) continue;
            return refuse("Hotkeys", option.control,
                          "The hot key " + hotKeyText(options.number(option.control)) + " is used twice:\n" +
                              std::string(other->caption) + "\n" + std::string(option.caption));
        }
        keys.push_back(&option);
    }
    return true;
}

bool TVistraneOptions::apply() {
    Options options = wantedOptions();
    if (!folderIsComplete(options) || !hotKeysDiffer(options)) return false;
    // What the system refuses goes back to what it was; everything else is kept.
    Status associated = applyAssociations(*services_.associations, applied_, options);
    if (!associated) {
        for (const Option& option : optionTable())
            if (option.page == "Associations") options.setNumber(option.control, applied_.number(option.control));
        showError(associated.message());
    }
    const bool start = shownValues().on("chkRunAtStartup");
    options.setOn("chkRunAtStartup", start);
    if (start != runsAtStartup() && !services_.program.empty()) {
        if (const Status done = setRunAtStartup(start, services_.program); !done) {
            options.setOn("chkRunAtStartup", !start);
            showError(done.message());
        }
    }
    OptionsHolder() = options;
    saveOptions();
    applied_ = options;
    askAgain_ = false;
    // The button is disabled now; the keyboard must not be left with nobody.
    if (applyButton_->HasFocus()) FindWindow(wxID_OK)->SetFocus();
    showValues(applied_);
    return true;
}

/// Looks for an access key in the whole dialog. Left to themselves, the box and the page around a control would each
/// look only inside, and keep the key from the others.
bool TVistraneOptions::MSWTranslateMessage(WXMSG* message) {
    if (message->message == WM_SYSCHAR && IsDialogMessageW(GetHWND(), message) != FALSE) return true;
    return ModalDialog::MSWTranslateMessage(message);
}

void TVistraneOptions::btnBrowseWorkingFolderClick() {
    auto* path = dynamic_cast<wxTextCtrl*>(FindWindow("edtWorkingFolderPath"));
    wxDirDialog dialog(this, "Working folder", path->GetValue(), wxDD_DEFAULT_STYLE);
    if (dialog.ShowModal() == wxID_OK) path->SetValue(dialog.GetPath());
}

void TVistraneOptions::btnBrowseWatermarkClick() {
    auto* path = dynamic_cast<wxTextCtrl*>(FindWindow("edtWMBitmapFile"));
    wxFileDialog dialog(this, "Watermark", wxString(), path->GetValue(),
                        "Pictures (*.png;*.jpg;*.jpeg;*.gif;*.bmp)|*.png;*.jpg;*.jpeg;*.gif;*.bmp",
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dialog.ShowModal() == wxID_OK) path->SetValue(dialog.GetPath());
}

void TVistraneOptions::btnAskAgainClick() {
    askAgain_ = true;
    for (const Option& option : optionTable())
        if (option.page == "Confirmations") formControl(FindWindow(wxText(option.control)))->setValue(0);
    valueChanged();
}

void TVistraneOptions::okClick(wxCommandEvent& /*event*/) {
    if (shownValues() == applied_ || apply()) EndModal(wxID_OK);
}

void showOptionsDialog(wxWindow* parent, OptionsServices services) {
    TVistraneOptions dialog(parent, std::move(services));
    dialog.ShowModal();
}

}  // namespace glimmer
