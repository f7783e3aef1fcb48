// The toolkit inside somebody else's process.
//
// The host owns the thread and its message loop, so the toolkit sees only what is dispatched to its windows. The rest
// of what a loop of its own would do is added here: a hook looks at each message as the host takes it from the queue
// and handles the keys that go to our windows, and a timer, which the system serves only when nothing else waits,
// does the idle work. Messages of the host's windows are never touched.

#include "host/program/toolkit.h"

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/msw/private.h>
// clang-format off
#include <windows.h>
// clang-format on

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "common/boundary.h"
#include "common/inside_modal.h"
#include "common/library_module.h"
#include "common/modal_scope.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

constexpr wchar_t idleWindowClass[] = L"GlimmerpadIdle";
constexpr UINT_PTR idleTimer = 1;
constexpr UINT_PTR cancelTimer = 2;
constexpr UINT cancelPeriod = 30;  // milliseconds

HHOOK messageHook = nullptr;
HWND idleWindow = nullptr;
bool idleWanted = false;
bool terminated = false;
std::function<bool()> cancelAttempt;
SessionEnd sessionEnd;

void wantIdle() {
    if (idleWanted || idleWindow == nullptr) return;
    idleWanted = SetTimer(idleWindow, idleTimer, USER_TIMER_MINIMUM, nullptr) != 0;
}

/// Idle work as a loop of the toolkit's own would do it; whether more is wanted.
bool runIdle() {
    wxGUIEventLoop loop;
    const wxEventLoopActivator activate(&loop);
    return loop.ProcessIdle();
}

void cancelAndAttempt() {
    guarded([] {
        if (cancelAttempt && !cancelAttempt()) {
            cancelModals();
            return;
        }
        KillTimer(idleWindow, cancelTimer);
        cancelAttempt = nullptr;
    });
}

LRESULT CALLBACK idleWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TIMER && wParam == cancelTimer) {
        cancelAndAttempt();
        return 0;
    }
    if (message != WM_TIMER || wParam != idleTimer) return DefWindowProcW(window, message, wParam, lParam);
    KillTimer(window, idleTimer);
    idleWanted = false;
    if (wxEventLoopBase::GetActive() != nullptr) return 0;  // a dialog's own loop does it
    guarded([] {
        if (runIdle()) wantIdle();
    });
    return 0;
}

bool isDialog(HWND window) {
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return std::wstring_view(name.data()) == L"#32770" && IsWindowVisible(window) != FALSE;
}

/// Whether a window is owned, at whatever distance, by one of ours: a dialog of the system that we opened.
bool ownedByUs(HWND window) {
    for (HWND owner = GetWindow(window, GW_OWNER); owner != nullptr; owner = GetWindow(owner, GW_OWNER))
        if (isOurWindow(owner)) return true;
    return false;
}

BOOL CALLBACK addOurDialog(HWND window, LPARAM list) {
    return guarded(FALSE, [=] {
        if (isDialog(window) && wxFindWinFromHandle(window) == nullptr && ownedByUs(window))
            reinterpret_cast<std::vector<void*>*>(list)->push_back(window);
        return TRUE;
    });
}

/// Presses what a user would who wants none of it. A box that only tells something is closed by its one button.
void cancelSystemDialog(HWND dialog) {
    if (!isDialog(dialog)) return;
    for (const int id : {IDCANCEL, IDNO, IDABORT, IDOK}) {
        const HWND button = GetDlgItem(dialog, id);
        if (button == nullptr) continue;
        PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
        return;
    }
    PostMessageW(dialog, WM_CLOSE, 0, 0);
}

LRESULT CALLBACK hookProc(int code, WPARAM removed, LPARAM lParam) {
    auto* message = reinterpret_cast<MSG*>(lParam);
    const bool taken = code == HC_ACTION && removed == PM_REMOVE;
    if (taken && message->message == WM_QUIT) passQuitOn(static_cast<int>(message->wParam));
    const bool mayAct = taken && wxEventLoopBase::GetActive() == nullptr;
    if (mayAct && isOurWindow(message->hwnd)) {
        wantIdle();
        if (message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST) {
            guarded([message] {
                wxGUIEventLoop loop;
                // A message that is taken reaches nobody else.
                if (loop.PreProcessMessage(message)) message->message = WM_NULL;
            });
        }
    }
    return CallNextHookEx(messageHook, code, removed, lParam);
}

class GlimmerApp : public wxApp {
public:
    bool OnInit() override {
        // The process's command line belongs to the host; nothing of it is parsed.
        SetExitOnFrameDelete(false);
        // Neither vetoed nor passed on.
        Bind(wxEVT_QUERY_END_SESSION, [](wxCloseEvent&) {
            if (sessionEnd.asked) sessionEnd.asked();
        });
        Bind(wxEVT_END_SESSION, [](wxCloseEvent&) {
            if (sessionEnd.ended) sessionEnd.ended();
        });
        return true;
    }

    bool OnExceptionInMainLoop() override {
        reportCurrentException();
        return true;
    }
    void OnUnhandledException() override { reportCurrentException(); }

    // The one door between the toolkit's window procedures, which a host's loop calls, and our handlers.
    void CallEventHandler(wxEvtHandler* handler, wxEventFunctor& functor, wxEvent& event) const override {
        const OwnSurroundings ours;
        wxApp::CallEventHandler(handler, functor, event);
    }

    void finishPendingWork() {
        ProcessPendingEvents();
        // Without posted events the call above leaves closed windows for later.
        DeletePendingObjects();
    }

    void WakeUpIdle() override {
        if (wxEventLoopBase::GetActive() != nullptr) {
            wxApp::WakeUpIdle();
        } else {
            wantIdle();
        }
    }
};

wxAppConsole* makeApp() { return new GlimmerApp; }  // owned by the toolkit

bool start() {
    const auto instance = static_cast<HINSTANCE>(libraryModule());
    wxApp::SetInitializerFunction(makeApp);
    wxDisableAsserts();
    watchModalDialogs();
    if (!wxEntryStart(instance, nullptr, nullptr, SW_SHOWNORMAL) || !wxTheApp->CallOnInit()) return false;

    // Unloading a library with a running toolkit brings the process down at its end.
    HMODULE pinned = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&start), &pinned);

    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = idleWindowProc;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = idleWindowClass;
    RegisterClassW(&windowClass);
    idleWindow = CreateWindowExW(0, idleWindowClass, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, instance, nullptr);
    messageHook = SetWindowsHookExW(WH_GETMESSAGE, hookProc, nullptr, GetCurrentThreadId());
    return idleWindow != nullptr && messageHook != nullptr;
}

}  // namespace

bool startToolkit() {
    static const bool running = start();
    return running;
}

bool toolkitRuns() { return wxTheApp != nullptr; }

void setSessionEnd(SessionEnd action) { sessionEnd = std::move(action); }

void runDeferredWork() {
    if (wxTheApp == nullptr) return;
    static_cast<GlimmerApp*>(wxTheApp)->finishPendingWork();
}

void runMessageLoop() {
    if (!terminated) wxTheApp->OnRun();
}

bool applicationTerminates() { return terminated; }

void cancelModals() {
    std::vector<void*> systemDialogs = ModalScope::windows();
    // No dialog, but something is carried with the mouse: its loop takes this as a key.
    if (ModalScope::any() && systemDialogs.empty() && GetCapture() != nullptr)
        PostMessageW(GetCapture(), WM_KEYDOWN, VK_ESCAPE, 1);
    if (wxTheApp != nullptr) {
        EnumThreadWindows(GetCurrentThreadId(), addOurDialog, reinterpret_cast<LPARAM>(&systemDialogs));
        if (insideSystemLoop()) {
            EndMenu();
            GUITHREADINFO state{};
            state.cbSize = sizeof state;
            GetGUIThreadInfo(GetCurrentThreadId(), &state);
            if (state.hwndMoveSize != nullptr) SendMessageW(state.hwndMoveSize, WM_CANCELMODE, 0, 0);
        }
        for (wxWindow* window : wxTopLevelWindows) {
            auto* dialog = dynamic_cast<wxDialog*>(window);
            if (dialog != nullptr && dialog->IsModal()) dialog->EndModal(wxID_CANCEL);
        }
    }
    for (void* dialog : systemDialogs) cancelSystemDialog(static_cast<HWND>(dialog));
}

void cancelModalsUntil(std::function<bool()> attempt) {
    cancelAttempt = std::move(attempt);
    if (idleWindow != nullptr) SetTimer(idleWindow, cancelTimer, cancelPeriod, nullptr);
    cancelModals();
}

void terminateApplication() {
    terminated = true;
    setMessageBoxes(nullptr);
    if (wxTheApp == nullptr) return;
    cancelModalsUntil([] { return false; });  // what is still to come, too, until the loop has ended
    // Not ExitMainLoop(), which only ends the innermost loop.
    if (wxEventLoopBase* loop = wxTheApp->GetMainLoop()) loop->ScheduleExit();
}

}  // namespace glimmer
