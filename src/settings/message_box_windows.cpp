// Message boxes for people. A plain one is the system's own, which works in any state of the process; one with a check
// box or with captions of its own is a dialog that looks the same way.

#include <wx/app.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/msw/wrapwin.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include <utility>
#include <vector>

#include "common/icons.h"
#include "common/modal_dialog.h"
#include "common/modal_scope.h"
#include "common/text.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

std::string withPlainLineEnds(const std::string& text) {
    return replaceAll(replaceAll(text, "\r\n", "\n"), "\r", "\n");
}

UINT systemFlags(const Message& message) {
    UINT flags = MB_TOPMOST | MB_SETFOREGROUND;
    switch (message.icon) {
        case MessageIcon::None:
            break;
        case MessageIcon::Information:
            flags |= MB_ICONINFORMATION;
            break;
        case MessageIcon::Question:
            flags |= MB_ICONQUESTION;
            break;
        case MessageIcon::Warning:
            flags |= MB_ICONWARNING;
            break;
        case MessageIcon::Error:
            flags |= MB_ICONERROR;
            break;
    }
    const bool no = message.standard == MessageAnswer::No;
    const bool cancel = message.standard == MessageAnswer::Cancel;
    switch (message.buttons) {
        case MessageButtons::Ok:
            return flags | MB_OK;
        case MessageButtons::OkCancel:
            return flags | MB_OKCANCEL | (cancel ? MB_DEFBUTTON2 : 0U);
        case MessageButtons::YesNo:
            return flags | MB_YESNO | (no ? MB_DEFBUTTON2 : 0U);
        case MessageButtons::YesNoCancel:
            return flags | MB_YESNOCANCEL | (no ? MB_DEFBUTTON2 : 0U) | (cancel ? MB_DEFBUTTON3 : 0U);
    }
    return flags;
}

MessageAnswer showPlain(const Message& message) {
    const HWND owner = GetActiveWindow();
    const UINT flags = systemFlags(message) | (owner == nullptr ? MB_TASKMODAL : 0U);
    const wxString text = wxString::FromUTF8(withPlainLineEnds(message.text));
    const ModalScope open;
    switch (MessageBoxW(owner, text.wc_str(), wxString::FromUTF8(message.caption).wc_str(), flags)) {
        case IDOK:
            return MessageAnswer::Ok;
        case IDYES:
            return MessageAnswer::Yes;
        case IDNO:
            return MessageAnswer::No;
        case IDCANCEL:
            // A box with only an OK button says so when it is closed by Esc.
            return closingAnswer(message.buttons);
        default:
            return closingAnswer(message.buttons);
    }
}

struct Button {
    MessageAnswer answer;
    int id;
    wxString caption;
};

std::vector<Button> buttonsOf(const Message& message) {
    const auto caption = [](const std::string& own, const char* usual) {
        return wxString::FromUTF8(own.empty() ? usual : own);
    };
    const Button ok{MessageAnswer::Ok, wxID_OK, "OK"};
    const Button yes{MessageAnswer::Yes, wxID_YES, caption(message.yes, "&Yes")};
    const Button no{MessageAnswer::No, wxID_NO, caption(message.no, "&No")};
    const Button cancel{MessageAnswer::Cancel, wxID_CANCEL, caption(message.cancel, "Cancel")};
    switch (message.buttons) {
        case MessageButtons::Ok:
            return {ok};
        case MessageButtons::OkCancel:
            return {ok, cancel};
        case MessageButtons::YesNo:
            return {yes, no};
        case MessageButtons::YesNoCancel:
            return {yes, no, cancel};
    }
    return {ok};
}

/// Our own drawings: the system's are not sharp on every screen.
wxBitmapBundle iconOf(MessageIcon which) {
    constexpr int side = 32;
    switch (which) {
        case MessageIcon::None:
            return {};
        case MessageIcon::Information:
            return icon("message-information", side);
        case MessageIcon::Question:
            return icon("message-question", side);
        case MessageIcon::Warning:
            return icon("message-warning", side);
        case MessageIcon::Error:
            return icon("message-error", side);
    }
    return {};
}

/// The message on the window's background, the check box and the buttons on a strip below it.
class MessageDialog : public ModalDialog {
public:
    explicit MessageDialog(const Message& message)
        : ModalDialog(nullptr, wxID_ANY, wxString::FromUTF8(message.caption), wxDefaultPosition, wxDefaultSize,
                      wxDEFAULT_DIALOG_STYLE | wxSTAY_ON_TOP) {
        SetName("MessageDialog");
        auto* column = new wxBoxSizer(wxVERTICAL);
        column->Add(newMessagePanel(message), 1, wxEXPAND);
        if (!message.checkBox.empty()) {
            checkBox_ = new wxCheckBox(this, wxID_ANY, wxString::FromUTF8(message.checkBox));
            checkBox_->SetName("chkRemember");
            column->Add(checkBox_, 0, wxLEFT | wxRIGHT | wxTOP, FromDIP(12));
        }
        auto* strip = new wxBoxSizer(wxHORIZONTAL);
        strip->AddStretchSpacer();
        const std::vector<Button> buttons = buttonsOf(message);
        wxButton* standard = nullptr;
        for (const Button& button : buttons) {
            auto* control = new wxButton(this, button.id, button.caption);
            control->Bind(wxEVT_BUTTON, [this, button](wxCommandEvent&) { answer(button.answer); });
            strip->Add(control, 0, wxLEFT, FromDIP(8));
            if (standard == nullptr || button.answer == message.standard) standard = control;
            if (button.answer == closingAnswer(message.buttons)) SetEscapeId(button.id);
        }
        column->Add(strip, 0, wxEXPAND | wxALL, FromDIP(12));
        SetSizerAndFit(column);
        if (standard != nullptr) {
            standard->SetDefault();
            standard->SetFocus();
        }
        Centre();
    }

    [[nodiscard]] bool checked() const { return checkBox_ != nullptr && checkBox_->GetValue(); }
    void setChecked(bool checked) {
        if (checkBox_ != nullptr) checkBox_->SetValue(checked);
    }
    [[nodiscard]] MessageAnswer answer() const { return answer_; }

private:
    wxWindow* newMessagePanel(const Message& message) {
        auto* panel = new wxPanel(this);
        panel->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
        panel->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
        auto* row = new wxBoxSizer(wxHORIZONTAL);
        const wxBitmapBundle picture = iconOf(message.icon);
        if (picture.IsOk()) row->Add(new wxStaticBitmap(panel, wxID_ANY, picture), 0, wxRIGHT, FromDIP(12));
        auto* text = new wxStaticText(panel, wxID_ANY, wxString());
        text->SetLabelText(wxString::FromUTF8(trimmed(withPlainLineEnds(message.text))));
        text->SetName("lblMessage");
        text->Wrap(FromDIP(420));
        row->Add(text, 1, wxALIGN_CENTRE_VERTICAL);
        auto* frame = new wxBoxSizer(wxVERTICAL);
        frame->Add(row, 1, wxEXPAND | wxALL, FromDIP(18));
        frame->SetMinSize(FromDIP(wxSize(320, 0)));
        panel->SetSizer(frame);
        return panel;
    }

    void answer(MessageAnswer answer) {
        answer_ = answer;
        EndModal(wxID_OK);
    }

    wxCheckBox* checkBox_ = nullptr;
    MessageAnswer answer_ = MessageAnswer::Cancel;
};

class SystemMessageBoxes : public MessageBoxes {
public:
    MessageAnswer show(const Message& message, bool* checked) override {
        const bool plain =
            message.checkBox.empty() && message.yes.empty() && message.no.empty() && message.cancel.empty();
        if (plain || wxTheApp == nullptr) return showPlain(message);
        MessageDialog dialog(message);
        if (checked != nullptr) dialog.setChecked(*checked);
        // Ended by somebody else (the program closes): as if it had been closed.
        if (dialog.ShowModal() != wxID_OK) return closingAnswer(message.buttons);
        if (checked != nullptr) *checked = dialog.checked();
        return dialog.answer();
    }
};

}  // namespace

MessageBoxes& systemMessageBoxes() {
    static SystemMessageBoxes boxes;
    return boxes;
}

}  // namespace glimmer
