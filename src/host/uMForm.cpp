#include "host/uMForm.h"

#include <wx/app.h>
// clang-format off
#include <windows.h>
// clang-format on

#include <functional>

#include "capture/window_grab.h"
#include "common/boundary.h"
#include "common/system_library.h"
#include "host/delivery.h"
#include "host/host_state.h"
#include "host/hot_keys.h"
#include "host/own_capture.h"
#include "host/single_instance.h"
#include "host/start_rules.h"
#include "host/toolkit.h"
#include "host/tray_icon.h"
#include "host/uProgram.h"
#include "output/output_folders.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

TMForm* MForm = nullptr;

namespace {

/// A capture that the program takes itself: no address, no picture yet.
Delivery ownCapture(CaptureAction action) {
    Delivery delivery;
    delivery.action = static_cast<int32_t>(action);
    return delivery;
}

void captureScreen(CaptureAction action) {
    if (!ensureProgram()) return;
    deliver(ownCapture(action));
}

/// The system starts the program again after it was ended for an update or a restart, and it offers what was open.
/// After a crash or a hang it does not: the user does that.
void startAgainAfterRestart() {
    constexpr DWORD notAfterCrash = 1;
    constexpr DWORD notAfterHang = 2;
    using Register = HRESULT(WINAPI*)(PCWSTR, DWORD);
    const auto registerRestart = systemFunction<Register>(L"kernel32.dll", "RegisterApplicationRestart");
    if (registerRestart != nullptr) registerRestart(L"", notAfterCrash | notAfterHang);
}

void captureTopWindow() {
    if (!ensureProgram()) return;
    Rect area;
    Result<TBitmap> picture = takeWithoutOwnWindows([&area]() -> Result<TBitmap> {
        void* window = windowInFront();
        if (window == nullptr) return Failure{"There is no window to take a picture of."};
        area = visibleFrame(window);
        return grabWindow(window);
    });
    if (!picture) {
        showError(picture.message());
        return;
    }
    announceCapture(area);
    Delivery delivery = ownCapture(CaptureAction::Edit);
    delivery.bitmap = picture.take();
    deliver(std::move(delivery));
}

}  // namespace

TMForm::TMForm()
    : wxFrame(nullptr, wxID_ANY, "Glimmerpad", wxDefaultPosition, wxSize(200, 100), wxDEFAULT_FRAME_STYLE, "MForm") {
    // It is never seen, so it is a program that wants this one gone: quietly, as at the end of the session.
    Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) {
        if (event.CanVeto()) event.Veto();
        TProgram::prepareForSessionEnd();
        terminateApplication();
    });
}

TMForm::~TMForm() {
    if (MForm == this) MForm = nullptr;
}

/// The icon in the notification area and the hot keys.
void TMForm::takePlace() {
    trayIcon_ = std::make_unique<TrayIcon>(*this);
    hotKeys_ = std::make_unique<HotKeys>(GetHWND(),
                                         std::vector<HotKeys::Command>{
                                             {"hotCreateZK", [] { captureScreen(CaptureAction::Edit); }},
                                             {"hotContinueEditing", [this] { mnuContinueClick(); }},
                                             {"hotCaptureTopWindow", captureTopWindow},
                                             {"hotSilentCapture", [] { captureScreen(CaptureAction::Load); }},
                                         },
                                         // A balloon, which keeps nobody from working.
                                         [this](const std::string& text) {
                                             trayIcon_->ShowBalloon("Glimmerpad hot keys", wxString::FromUTF8(text), 0,
                                                                    wxICON_WARNING);
                                         });
}

void TMForm::start(const std::optional<std::string>& file) {
    CallAfter([this, file] {
        if (!ensureProgram()) {
            terminateApplication();
            return;
        }
        // Each by itself: a file that cannot be opened for want of memory must not leave a program without an icon.
        const std::function<void()> steps[] = {
            [&file] {
                if (file) pProgram->openFileInEditor(*file);
            },
            [this] { mnuContinueClick(); },
            [this] { takePlace(); },
            startAgainAfterRestart,
            [] { pProgram->offerRecovered(); },
            [this] { hotKeys_->reportTaken(); },
            cleanUpWorkingFolder,
        };
        for (const std::function<void()>& step : steps)
            if (pProgram) guarded(step);
    });
}

void TMForm::mnuContinueClick() {
    if (!ensureProgram()) return;
    pProgram->restoreApplication();
}

void TMForm::mnuNewCaptureClick() {
    expectFading();
    captureScreen(CaptureAction::Edit);
}

void TMForm::mnuOpenClick() {
    if (!ensureProgram()) return;
    pProgram->openFile();
}

void TMForm::suspendHotKeys(bool suspended) {
    if (hotKeys_) hotKeys_->suspend(suspended);
}

void TMForm::mnuOptionsClick() {
    if (!ensureProgram()) return;
    pProgram->showOptions();
}

void TMForm::mnuExitClick() {
    const bool capturesOpen = pProgram && pProgram->resumeAvailable();
    if (capturesOpen) {
        Message question;
        question.text = "There are captures in the editor.\nWould you like to exit?";
        question.caption = "Glimmerpad";
        question.icon = MessageIcon::Question;
        question.buttons = MessageButtons::YesNo;
        if (showRemembered("cmbConfirmExit", question) != MessageAnswer::Yes) return;
    }
    terminateApplication();
}

WXLRESULT TMForm::MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) {
    if (message == terminateMessage()) {
        guarded(terminateApplication);
        return 0;
    }
    if (message == restoreMessage()) {
        guarded([this] { restored(); });
        return 0;
    }
    if (message == WM_HOTKEY && hotKeys_) {
        guarded([this, wParam] { hotKeys_->pressed(static_cast<int>(wParam)); });
        return 0;
    }
    return wxFrame::MSWWindowProc(message, wParam, lParam);
}

void TMForm::restored() {
    const std::optional<std::string> text = takeHandedOver();
    if (text) {
        if (!ensureProgram() || !pProgram->openFileInEditor(handedOverFile(*text))) return;
    }
    mnuContinueClick();
}

}  // namespace glimmer
