#include "output/ways/wait_window.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/msw/wrapwin.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/timer.h>
#include <wx/utils.h>

#include <algorithm>

#include "common/modal_dialog.h"
#include "common/wx_text.h"

namespace glimmer {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds momentBeforeItAppears{250};
constexpr milliseconds timeBetweenLooks{40};
constexpr int timerPeriod = 30;  // milliseconds
constexpr int gaugeRange = 1000;

}  // namespace

/// What is to be seen of it. As a dialog it can be asked to end by whoever ends dialogs; that cancels, and the code
/// that waits ends it.
class WaitWindow::Dialog : public ModalDialog {
public:
    Dialog(const std::string& text, std::function<void()> cancel)
        : ModalDialog(nullptr, wxID_ANY, "Please wait", wxDefaultPosition, wxDefaultSize,
                      wxCAPTION | wxSTAY_ON_TOP | wxDIALOG_NO_PARENT, "WaitWindow"),
          cancel_(std::move(cancel)),
          activeBefore_(GetActiveWindow()) {
        auto* panel = new wxPanel(this);
        text_ = new wxStaticText(panel, wxID_ANY, wxText(text));
        text_->SetName("lblWait");
        gauge_ = new wxGauge(panel, wxID_ANY, gaugeRange, wxDefaultPosition, panel->FromDIP(wxSize(340, 18)));
        gauge_->SetName("pbProgress");
        button_ = new wxButton(panel, wxID_CANCEL, "Cancel");
        button_->SetName("btnCancel");
        Bind(
            wxEVT_BUTTON, [this](wxCommandEvent&) { cancel_(); }, wxID_CANCEL);
        auto* sizer = new wxBoxSizer(wxVERTICAL);
        const int gap = panel->FromDIP(14);
        sizer->Add(text_, 0, wxLEFT | wxRIGHT | wxTOP | wxEXPAND, gap);
        sizer->Add(gauge_, 0, wxLEFT | wxRIGHT | wxTOP | wxEXPAND, gap);
        sizer->Add(button_, 0, wxALL | wxALIGN_RIGHT, gap);
        panel->SetSizer(sizer);
        sizer->SetSizeHints(this);
        CentreOnScreen();
    }

    /// Above an operation on this thread, without a loop.
    void showAlone() {
        others_ = std::make_unique<wxWindowDisabler>(this);
        appear();
        Update();
    }

    bool wait(const std::function<bool()>& look, steady_clock::time_point appears) {
        const HWND focus = GetFocus();
        wxTimer timer(this);
        Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
            if (!IsShown() && steady_clock::now() >= appears) appear();
            if (over_ || !look()) return;
            over_ = true;
            timer.Stop();
            ModalDialog::EndModal(wxID_OK);
        });
        timer.Start(timerPeriod);
        hidden_ = true;
        ShowModal();
        timer.Stop();
        // A window that is disabled loses the keyboard, also when nothing came in front of it.
        if (IsWindow(focus) != FALSE && GetFocus() == nullptr && GetActiveWindow() == GetAncestor(focus, GA_ROOT))
            ::SetFocus(focus);
        return over_;
    }

    /// At the end. The others first: the system activates another program's window when all of ours are disabled.
    void goAway() {
        others_.reset();
        if (activeBefore_ != nullptr && IsShown()) SetActiveWindow(activeBefore_);
        hidden_ = false;
        Hide();
        Destroy();
    }

    void setText(const std::string& text) {
        if (text_->GetLabel() == wxText(text)) return;
        text_->SetLabel(wxText(text));
        text_->GetParent()->GetSizer()->SetSizeHints(this);
    }

    /// A bar of the themed kind runs after a value that grows and would never be seen full; one that falls it takes at
    /// once.
    void setDone(double all) {
        const int value = std::min(static_cast<int>(std::clamp(all, 0.0, 1.0) * gaugeRange), gaugeRange - 1);
        if (gauge_->GetValue() == value) return;
        gauge_->SetValue(value + 1);
        gauge_->SetValue(value);
    }

    void cancelling() { button_->Disable(); }

    /// Dispatches what was sent to this window and nothing else: the host's windows and the rest of ours stay as they
    /// are in the middle of the operation.
    void pump() {
        const auto window = static_cast<HWND>(GetHWND());
        MSG message;
        while (PeekMessageW(&message, window, 0, 0, PM_REMOVE) != FALSE) {
            if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) cancel_();
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    void EndModal(int /*code*/) override { cancel_(); }
    [[nodiscard]] bool IsModal() const override { return true; }
    bool Show(bool show) override { return show && hidden_ ? true : ModalDialog::Show(show); }

private:
    void appear() {
        hidden_ = false;
        Show(true);
        button_->SetFocus();
    }

    std::function<void()> cancel_;
    HWND activeBefore_;
    std::unique_ptr<wxWindowDisabler> others_;
    wxStaticText* text_ = nullptr;
    wxGauge* gauge_ = nullptr;
    wxButton* button_ = nullptr;
    bool hidden_ = false;  ///< waits, but is not to be seen yet
    bool over_ = false;
};

WaitWindow::WaitWindow(const std::string& text) : text_(text) {}

WaitWindow::~WaitWindow() {
    if (dialog_) dialog_.release()->goAway();
}

void WaitWindow::open() {
    dialog_ = std::make_unique<Dialog>(text_, [this] { cancel(); });
}

void WaitWindow::cancel() {
    cancelled_ = true;
    dialog_->cancelling();
}

void WaitWindow::setText(const std::string& text) {
    text_ = text;
    if (dialog_) dialog_->setText(text);
}

void WaitWindow::setPart(size_t index, size_t count) {
    partLength_ = 1.0 / static_cast<double>(std::max<size_t>(count, 1));
    partStart_ = partLength_ * static_cast<double>(index);
}

bool WaitWindow::progress(double done) {
    const auto now = steady_clock::now();
    if (!dialog_ && now - started_ >= momentBeforeItAppears) {
        open();
        dialog_->showAlone();
    }
    if (dialog_ && now - pumped_ >= timeBetweenLooks) {
        dialog_->setDone(partStart_ + std::clamp(done, 0.0, 1.0) * partLength_);
        dialog_->pump();
        pumped_ = now;
    }
    return !cancelled_;
}

bool WaitWindow::waitFor(const std::function<bool()>& look) {
    if (!dialog_) open();
    return dialog_->wait(look, started_ + momentBeforeItAppears);
}

void WaitWindow::setDone(double done) {
    if (dialog_) dialog_->setDone(done);
}

}  // namespace glimmer
