// The toolkit inside somebody else's process.
//
// The host owns the thread and its message loop, so the toolkit sees only what is dispatched to its windows. The rest
// of what a loop of its own would do is added here: a hook looks at each message as the host takes it from the queue
// and handles the keys that go to our windows, and a timer, which the system serves only when nothing else waits,
// does the idle work. Messages of the host's windows are never touched.

#include "host/toolkit.h"

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/msw/private.h>
// clang-format off
#include <windows.h>
// clang-format on

#include "common/library_module.h"
#include "host/boundary.h"

namespace glimmer {

namespace {

constexpr wchar_t idleWindowClass[] = L"GlimmerpadIdle";
constexpr UINT_PTR idleTimer = 1;

HHOOK messageHook = nullptr;
HWND idleWindow = nullptr;
bool idleWanted = false;
bool terminated = false;

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

LRESULT CALLBACK idleWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_TIMER || wParam != idleTimer) return DefWindowProcW(window, message, wParam, lParam);
    KillTimer(window, idleTimer);
    idleWanted = false;
    if (wxEventLoopBase::GetActive() != nullptr) return 0;  // a dialog's own loop does it
    guarded([] {
        if (runIdle()) wantIdle();
    });
    return 0;
}

/// Whether a message goes to one of our windows. The root decides: the toolkit's own search would climb from a system
/// dialog to the window that owns it.
bool isOurs(HWND window) { return window != nullptr && wxFindWinFromHandle(GetAncestor(window, GA_ROOT)) != nullptr; }

LRESULT CALLBACK hookProc(int code, WPARAM removed, LPARAM lParam) {
    auto* message = reinterpret_cast<MSG*>(lParam);
    const bool mayAct = code == HC_ACTION && removed == PM_REMOVE && wxEventLoopBase::GetActive() == nullptr;
    if (mayAct && isOurs(message->hwnd)) {
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
        return true;
    }

    bool OnExceptionInMainLoop() override {
        reportCurrentException();
        return true;
    }
    void OnUnhandledException() override { reportCurrentException(); }

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

void runDeferredWork() {
    if (wxTheApp == nullptr) return;
    wxTheApp->ProcessPendingEvents();  // and then deletes what waits for it
}

void runMessageLoop() {
    if (!terminated) wxTheApp->OnRun();
}

void terminateApplication() {
    terminated = true;
    if (wxTheApp == nullptr) return;
    for (wxWindow* window : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<wxDialog*>(window);
        if (dialog != nullptr && dialog->IsModal()) dialog->EndModal(wxID_CANCEL);
    }
    // Not ExitMainLoop(), which only ends the innermost loop.
    if (wxEventLoopBase* loop = wxTheApp->GetMainLoop()) loop->ScheduleExit();
}

}  // namespace glimmer
