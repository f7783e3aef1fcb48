#include "host/program/uMForm.h"

#include <wx/app.h>
// clang-format off
#include <windows.h>
// clang-format on

#include <functional>
#include <utility>
#include <vector>

#include "capture/own_capture.h"
#include "common/boundary.h"
#include "common/inside_modal.h"
#include "common/library_module.h"
#include "common/system_library.h"
#include "host/program/capture_answer.h"
#include "host/program/host_state.h"
#include "host/program/hot_keys.h"
#include "host/program/print_screen.h"
#include "host/program/screen_commands.h"
#include "host/program/single_instance.h"
#include "host/program/toolkit.h"
#include "host/program/tray_icon.h"
#include "main_window/notice_bar.h"
#include "main_window/uMainEditor.h"
#include "output/places/output_folders.h"
#include "output/ways/mail.h"
#include "settings/dialog/run_at_startup.h"
#include "settings/hot_key.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

TMForm* MForm = nullptr;

namespace {

/// The option that is on until the user was asked for Ctrl+D.
constexpr const char* unaskedKey = "chkAskForContinueKey";
constexpr const char* printScreenBar = "barPrintScreen";
constexpr const char* continueKeyBar = "barContinueKey";

void captureScreen(CaptureAction action) {
    if (!ensureProgram()) return;
    Delivery delivery;  // no address, no picture yet
    delivery.action = action;
    pProgram->HandleCapture(std::move(delivery));
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

}  // namespace

TMForm::TMForm()
    : wxFrame(nullptr, wxID_ANY, "Glimmerpad", wxDefaultPosition, wxSize(200, 100), wxDEFAULT_FRAME_STYLE, "MForm") {
    markReceiver(GetHWND());
    hostState().home = this;
    // It is never seen, so it is a program that wants this one gone: quietly, as at the end of the session.
    Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) {
        if (event.CanVeto()) event.Veto();
        TProgram::prepareForSessionEnd();
        terminateApplication();
    });
}

TMForm::~TMForm() {
    if (MForm == this) MForm = nullptr;
    hostState().home = nullptr;
}

/// The icon in the notification area and the hot keys.
void TMForm::takePlace() {
    trayIcon_ = std::make_unique<TrayIcon>(std::vector<TrayItem>{
        {"&Continue Editing", [this] { mnuContinueClick(); }},
        {"&New Screenshot", [this] { mnuNewCaptureClick(); }},
        {"C&apture", {}, false, captureItems},
        {"&Open Project or File...", [this] { mnuOpenClick(); }},
        {"O&ptions...", [this] { mnuOptionsClick(); }},
        {"E&xit", [this] { mnuExitClick(); }, true},
    });
    // A balloon, which keeps nobody from working.
    const auto report = [this](const std::string& text) {
        trayIcon_->ShowBalloon("Glimmerpad hot keys", wxString::FromUTF8(text), 0, wxICON_WARNING);
    };
    hotKeys_ = std::make_unique<HotKeys>(GetHWND(),
                                         std::vector<HotKeys::Command>{
                                             {"hotCreateZK", [] { captureScreen(CaptureAction::Edit); }},
                                             {"hotContinueEditing", [this] { mnuContinueClick(); }, unaskedKey},
                                             {"hotCaptureTopWindow", [] { runCapture({CaptureKind::Window}); }},
                                             {"hotSilentCapture", [] { captureScreen(CaptureAction::Load); }},
                                             {"hotCaptureRegion", [] { runCapture({}); }},
                                         },
                                         report);
    presetKeys_ = std::make_unique<PresetKeys>(GetHWND(), report);
}

void TMForm::start(const std::optional<std::string>& file, bool inTray) {
    CallAfter([this, file, inTray] {
        if (!ensureProgram()) {
            terminateApplication();
            return;
        }
        recoveredDue_ = true;
        const bool shows = file || !inTray;
        // Each by itself: a file that cannot be opened for want of memory must not leave a program without an icon.
        const std::function<void()> steps[] = {
            [&file] {
                if (file) pProgram->openFileInEditor(*file);
            },
            [shows] {
                if (shows) pProgram->restoreApplication();
            },
            [this] { takePlace(); },
            startAgainAfterRestart,
            [this, shows] {
                if (shows) mnuContinueClick();
            },
            [this] { hotKeys_->reportTaken(); },
            [this] { presetKeys_->reportTaken(); },
            cleanUpWorkingFolder,
            [] { renewRunAtStartup(moduleFile(nullptr)); },
        };
        for (const std::function<void()>& step : steps)
            if (pProgram) guarded(step);
    });
}

void TMForm::mnuContinueClick() {
    if (!ensureProgram()) return;
    pProgram->restoreApplication();
    if (hotKeys_ == nullptr) return;  // the rest comes after the start
    showNotices();
    if (std::exchange(recoveredDue_, false)) pProgram->offerRecovered();
}

/// Bars of the window, one at a time: a balloon is not seen by who does not want to be disturbed.
void TMForm::showNotices() {
    if (pMainEditor == nullptr || !hotKeys_) return;
    const Options& options = OptionsHolder();
    const bool printScreen = options.on("chkTellOfPrintScreen") && hotKeys_->printScreenKept();
    if (!printScreen) closeNoticeBar(*pMainEditor, printScreenBar);
    const bool ask = !printScreen && hotKeys_->waitsForConsent("hotContinueEditing");
    if (!ask) closeNoticeBar(*pMainEditor, continueKeyBar);
    if (printScreen) tellOfPrintScreen();
    if (ask) askForContinueKey();
}

void TMForm::tellOfPrintScreen() {
    // Whatever is pressed, it was read.
    const auto read = [this](const std::function<void(Options&)>& change) {
        Options& options = OptionsHolder();
        options.setOn("chkTellOfPrintScreen", false);
        if (change) change(options);
        saveOptions();
        showNotices();
    };
    std::vector<NoticeButton> buttons;
    buttons.push_back({"btnPrintScreenSetting", "Windows settings...", [read] {
                           read(nullptr);
                           openPrintScreenSetting();
                       }});
    if (const std::optional<int32_t> key = hotKeys_->freeKey())
        buttons.push_back({"btnPrintScreenOther", "Use " + hotKeyText(*key), [read, key = *key] {
                               read([key](Options& options) {
                                   for (const Option& option : optionTable())
                                       if (option.kind == OptionKind::HotKey &&
                                           isPlainPrintScreen(options.number(option.control)))
                                           options.setNumber(option.control, key);
                               });
                           }});
    buttons.push_back({"btnPrintScreenLeave", "Leave it", [read] { read(nullptr); }});
    showNoticeBar(*pMainEditor, printScreenBar, "Windows keeps Print Screen for its own screen capture.",
                  std::move(buttons));
}

void TMForm::askForContinueKey() {
    const auto answer = [this](bool take) {
        Options& options = OptionsHolder();
        options.setOn(unaskedKey, false);
        if (!take) options.setNumber("hotContinueEditing", 0);
        saveOptions();
        showNotices();
    };
    const std::string key = hotKeyText(OptionsHolder().number("hotContinueEditing"));
    showNoticeBar(*pMainEditor, continueKeyBar,
                  "Shall " + key + " bring this window back from everywhere? Other programs no longer get it then.",
                  {{"btnContinueKeyYes", "Use " + key, [answer] { answer(true); }},
                   {"btnContinueKeyNo", "No hot key", [answer] { answer(false); }}});
}

void TMForm::editorHidden() {
    if (!trayIcon_ || exiting_ || !OptionsHolder().on("chkTellOfTrayIcon")) return;
    OptionsHolder().setOn("chkTellOfTrayIcon", false);
    saveOptions();
    trayIcon_->ShowBalloon("Glimmerpad goes on",
                           "It waits here for its hot keys. A click on this icon brings the editor back; the icon's "
                           "menu has \"Exit\".",
                           0, wxICON_INFORMATION);
}

void TMForm::mnuNewCaptureClick() {
    expectFading();
    captureScreen(CaptureAction::Edit);
}

void TMForm::mnuOpenClick() {
    if (!ensureProgram()) return;
    pProgram->openFile();
}

void TMForm::mnuOptionsClick() {
    if (!ensureProgram()) return;
    pProgram->showOptions();
}

void TMForm::mnuExitClick() {
    if (mailIsOpen()) {
        Message question;
        question.text =
            "A message is still open in the e-mail program, and exiting may close it.\nWould you like to exit?";
        question.caption = "Glimmerpad";
        question.icon = MessageIcon::Question;
        question.buttons = MessageButtons::YesNo;
        question.standard = MessageAnswer::No;
        if (showMessage(question) != MessageAnswer::Yes) return;
    }
    // Whatever answer is remembered, it is none to the question for captures that are not saved.
    exiting_ = true;
    const bool stays = pMainEditor != nullptr && !pMainEditor->closeSession();
    exiting_ = false;
    if (!stays) terminateApplication();
}

WXLRESULT TMForm::MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) {
    if (message == terminateMessage()) {
        guarded([] {
            TProgram::prepareForSessionEnd();  // nobody was asked, so nothing is lost
            terminateApplication();
        });
        return 0;
    }
    if (message == restoreMessage()) {
        guarded([this] { restored(); });
        return 0;
    }
    if (message == WM_SETTINGCHANGE || (message == WM_ACTIVATEAPP && wParam != FALSE))
        guarded([this] { systemChanged(); });
    if (message == WM_HOTKEY && hotKeys_) {
        const int id = static_cast<int>(wParam);
        guarded([this, id] {
            if (id < PresetKeys::firstId) hotKeys_->pressed(id);
            if (id >= PresetKeys::firstId && presetKeys_) presetKeys_->pressed(id);
        });
        return 0;
    }
    return wxFrame::MSWWindowProc(message, wParam, lParam);
}

/// A key may be free now. Back from the system's settings is a good moment to look, too.
void TMForm::systemChanged() {
    if (!hotKeys_) return;
    hotKeys_->retry();
    if (pMainEditor != nullptr && pMainEditor->IsShown() && !insideModal()) showNotices();
}

void TMForm::restored() {
    if (applicationTerminates()) return;  // the text stays for the next one
    const std::optional<std::string> text = takeHandedOver();
    if (const std::optional<HandedCapture> capture = text ? handedCapture(*text) : std::nullopt) {
        // The start waits; the broadcast is not to wait as well.
        CallAfter([capture] {
            CaptureOutcome outcome = CaptureOutcome::Failed;
            guarded([&] { outcome = runCapture(capture->request); });
            answerCapture(capture->answerTo, outcome);
        });
        return;
    }
    if (text) {
        if (!ensureProgram() || !pProgram->openFileInEditor(handedOverFile(*text))) return;
    }
    mnuContinueClick();
}

}  // namespace glimmer
