#include "output/ways/wait_window.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/utils.h>
#include <wx/weakref.h>

#include <windows.h>

#include <algorithm>

namespace glimmer {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds momentBeforeItAppears{250};
constexpr milliseconds timeBetweenLooks{40};
constexpr int gaugeRange = 1000;

wxString shown(const std::string& text) { return wxString::FromUTF8(text.data(), text.size()); }

}  // namespace

struct WaitWindow::Windows {
    wxFrame* frame = nullptr;
    wxStaticText* text = nullptr;
    wxGauge* gauge = nullptr;
    HWND activeBefore = nullptr;
    std::unique_ptr<wxWindowDisabler> others;
};

WaitWindow::WaitWindow(const std::string& text) : text_(text) {}

WaitWindow::~WaitWindow() {
    if (!windows_) return;
    // The others first: the system activates another program's window when all of ours are disabled.
    windows_->others.reset();
    if (windows_->activeBefore != nullptr) SetActiveWindow(windows_->activeBefore);
    windows_->frame->Hide();
    windows_->frame->Destroy();
}

void WaitWindow::setText(const std::string& text) {
    text_ = text;
    if (windows_) windows_->text->SetLabel(shown(text));
}

void WaitWindow::setPart(size_t index, size_t count) {
    partLength_ = 1.0 / static_cast<double>(std::max<size_t>(count, 1));
    partStart_ = partLength_ * static_cast<double>(index);
}

bool WaitWindow::progress(double done) {
    const auto now = steady_clock::now();
    if (!windows_ && now - started_ >= momentBeforeItAppears) open();
    if (windows_ && now - pumped_ >= timeBetweenLooks) {
        const double part = std::clamp(done, 0.0, 1.0);
        show(partStart_ + part * partLength_);
        pump();
        pumped_ = now;
    }
    return !cancelled_;
}

/// A bar of the themed kind runs after a value that grows and would never be seen full; one that falls it takes at
/// once.
void WaitWindow::show(double all) {
    const int value = std::min(static_cast<int>(all * gaugeRange), gaugeRange - 1);
    windows_->gauge->SetValue(value + 1);
    windows_->gauge->SetValue(value);
}

void WaitWindow::open() {
    windows_ = std::make_unique<Windows>();
    windows_->activeBefore = GetActiveWindow();
    windows_->frame = new wxFrame(nullptr, wxID_ANY, "Please wait", wxDefaultPosition, wxDefaultSize,
                                  wxCAPTION | wxSTAY_ON_TOP | wxFRAME_NO_TASKBAR);
    windows_->frame->SetName("WaitWindow");
    auto* panel = new wxPanel(windows_->frame);
    windows_->text = new wxStaticText(panel, wxID_ANY, shown(text_));
    windows_->text->SetName("lblWait");
    windows_->gauge = new wxGauge(panel, wxID_ANY, gaugeRange, wxDefaultPosition, panel->FromDIP(wxSize(340, 18)));
    windows_->gauge->SetName("pbProgress");
    auto* cancel = new wxButton(panel, wxID_CANCEL, "Cancel");
    cancel->SetName("btnCancel");
    cancel->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { cancelled_ = true; });
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    const int gap = panel->FromDIP(14);
    sizer->Add(windows_->text, 0, wxLEFT | wxRIGHT | wxTOP | wxEXPAND, gap);
    sizer->Add(windows_->gauge, 0, wxLEFT | wxRIGHT | wxTOP | wxEXPAND, gap);
    sizer->Add(cancel, 0, wxALL | wxALIGN_RIGHT, gap);
    panel->SetSizer(sizer);
    sizer->SetSizeHints(windows_->frame);
    windows_->frame->CentreOnScreen();
    windows_->others = std::make_unique<wxWindowDisabler>(windows_->frame);
    windows_->frame->Show();
    cancel->SetFocus();
    windows_->frame->Update();
}

/// Dispatches what was sent to this window and nothing else: the host's windows and the rest of ours stay as they are
/// in the middle of the operation.
void WaitWindow::pump() {
    const auto window = static_cast<HWND>(windows_->frame->GetHWND());
    MSG message;
    while (PeekMessageW(&message, window, 0, 0, PM_REMOVE) != FALSE) {
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) cancelled_ = true;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace glimmer
