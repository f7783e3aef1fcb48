#include "common/modal_dialog.h"

#include <wx/app.h>
#include <wx/button.h>
#include <wx/evtloop.h>
#include <wx/modalhook.h>
#include <wx/sizer.h>
#include <wx/statline.h>
#include <wx/utils.h>

#include <memory>

namespace glimmer {

/// Ends as soon as it is told to. What waits in the queue then is for the loop around it.
class ModalDialog::Loop : public wxGUIEventLoop {
public:
    explicit Loop(wxWindow* dialog) : others_(std::make_unique<wxWindowDisabler>(dialog)) {}

    [[nodiscard]] bool started() const { return IsInsideRun(); }
    /// Before the dialog is hidden: with all other windows disabled the system would activate another program's.
    void end() {
        others_.reset();
        ScheduleExit();
    }

protected:
    int DoRun() override {
        for (;;) {
            while (!m_shouldExit && !Pending() && ProcessIdle()) {
            }
            if (m_shouldExit) break;
            wxTheApp->ProcessPendingEvents();
            if (m_shouldExit || !Dispatch()) break;  // the latter: the thread is to end
        }
        return m_exitcode;
    }
    void OnExit() override {
        others_.reset();
        wxGUIEventLoop::OnExit();
    }

private:
    std::unique_ptr<wxWindowDisabler> others_;
};

int ModalDialog::ShowModal() {
    WX_HOOK_MODAL_DIALOG();
    Loop loop(this);
    loop_ = &loop;
    Show();
    // What happens on the way to the screen may end it already.
    if (loop_ != nullptr) loop.Run();
    loop_ = nullptr;
    return GetReturnCode();
}

void ModalDialog::EndModal(int code) {
    if (loop_ == nullptr) return;
    SetReturnCode(code);
    Hide();
}

bool ModalDialog::Show(bool show) {
    if (!show && loop_ != nullptr) {
        Loop* const loop = loop_;
        if (!loop->started()) loop_ = nullptr;
        loop->end();
    }
    return wxDialog::Show(show);
}

wxSizer* ModalDialog::newOkAndCancel() {
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    auto* ok = new wxButton(this, wxID_OK, "OK");
    auto* cancel = new wxButton(this, wxID_CANCEL, "Cancel");
    buttons->AddStretchSpacer();
    buttons->Add(ok);
    buttons->Add(cancel, 0, wxLEFT, FromDIP(8));
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(new wxStaticLine(this), 0, wxEXPAND | wxBOTTOM, FromDIP(10));
    all->Add(buttons, 0, wxEXPAND);
    ok->SetDefault();
    ok->SetFocus();
    return all;
}

}  // namespace glimmer
